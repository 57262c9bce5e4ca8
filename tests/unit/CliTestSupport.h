// Helpers for tests that run the command-line parser: the process-exit hook
// is replaced by one that throws, so that a fault or help can be checked
// for its status and its output without the test process ending.
#pragma once

#include <gtest/gtest.h>

#include <sstream>
#include <string>
#include <vector>

#include "common/CliProperties.h"
#include "common/ProcessExit.h"

namespace zorvane::pubsub::test {

struct ExitCalled {
    int status;
};

// What one parse did: the exit status (-1 when parseOptions returned) and
// what it wrote.
struct ParseOutcome {
    int status = -1;
    std::string out;
    std::string err;
};

class ScopedExitHook {
  public:
    ScopedExitHook()
        : previous_m(setProcessExitHook([](int status) { throw ExitCalled{status}; })) {}
    ~ScopedExitHook() { setProcessExitHook(previous_m); }
    ScopedExitHook(const ScopedExitHook&) = delete;
    ScopedExitHook& operator=(const ScopedExitHook&) = delete;

  private:
    ProcessExitHook previous_m;
};

// Runs body with the throwing hook and both streams captured.
template <typename Body>
ParseOutcome runCaptured(Body body) {
    ScopedExitHook hook;
    ParseOutcome outcome;
    ::testing::internal::CaptureStdout();
    ::testing::internal::CaptureStderr();
    try {
        body();
    } catch (const ExitCalled& exit) {
        outcome.status = exit.status;
    }
    outcome.out = ::testing::internal::GetCapturedStdout();
    outcome.err = ::testing::internal::GetCapturedStderr();
    return outcome;
}

// parseOptions over the given arguments (the program name is added).
inline ParseOutcome parseLine(CliProperties& props, std::vector<std::string> args) {
    args.insert(args.begin(), "vexload_c");
    std::vector<char*> argV;
    for (std::string& arg : args) {
        argV.push_back(arg.data());
    }
    argV.push_back(nullptr);
    return runCaptured([&] { props.parseOptions(static_cast<int>(args.size()), argV.data()); });
}

namespace detail {
template <typename List>
std::string join(const List& list, const char* sep) {
    std::ostringstream out;
    for (size_t i = 0; i < list.size(); ++i) {
        out << (i == 0 ? "" : sep) << list[i];
    }
    return out.str();
}
inline std::string joinGroups(const std::vector<std::vector<std::string>>& groups) {
    std::string text;
    for (size_t i = 0; i < groups.size(); ++i) {
        text += (i == 0 ? "" : ";") + join(groups[i], ",");
    }
    return text;
}
}  // namespace detail

// A store value as text, by the type of its key: flags "1"/"0", lists
// joined by ",", groups by ";", maps as k@v. The plain fields are read by
// the names msgType, buckets, granularity, topics, queues, dtes, selectors.
inline std::string valueOf(const CliProperties& props, const std::string& key) {
    using detail::join;
    if (key == "msgType")
        return std::to_string(props.getMsgType());
    if (key == "buckets")
        return std::to_string(props.getNumLatencyBuckets());
    if (key == "granularity")
        return std::to_string(props.getLatencyGranularity());
    if (key == "topics")
        return detail::joinGroups(props.getTopics());
    if (key == "queues")
        return detail::joinGroups(props.getQueues());
    if (key == "dtes")
        return detail::joinGroups(props.getDTEs());
    if (key == "selectors")
        return detail::joinGroups(props.getSelectors());
    const CliPropertyKey* row = CliProperties::findKey(key);
    if (row == nullptr)
        return "<no such key>";
    std::ostringstream out;
    switch (row->type_m) {
        case CliPropertyType::BOOLEAN:
            out << props.getBooleanProperty(key);
            break;
        case CliPropertyType::INTEGER:
            out << props.getIntegerProperty(key);
            break;
        case CliPropertyType::INT64:
            out << props.getInt64Property(key);
            break;
        case CliPropertyType::DOUBLE:
            out << props.getDoubleProperty(key);
            break;
        case CliPropertyType::STRING:
            out << props.getStringProperty(key);
            break;
        case CliPropertyType::VECTOR:
            out << join(props.getVectorProperty(key), ",");
            break;
        case CliPropertyType::VECTOR_VECTOR:
            out << detail::joinGroups(props.getVectorVectorProperty(key));
            break;
        case CliPropertyType::INT_VECTOR:
            out << join(props.getIntVectorProperty(key), ",");
            break;
        case CliPropertyType::DOUBLE_VECTOR:
            out << join(props.getDoubleVectorProperty(key), ",");
            break;
        case CliPropertyType::VECTOR_DOUBLE_VECTOR: {
            const auto groups = props.getVectorDoubleVectorProperty(key);
            for (size_t i = 0; i < groups.size(); ++i)
                out << (i ? ";" : "") << join(groups[i], ",");
            break;
        }
        case CliPropertyType::VECTOR_MAP_INT32_UINT64: {
            const auto groups = props.getVectorMapInt32Uint64Property(key);
            for (size_t i = 0; i < groups.size(); ++i) {
                out << (i ? ";" : "");
                for (const auto& [k, v] : groups[i])
                    out << k << '@' << v << ',';
            }
            break;
        }
        case CliPropertyType::MAP_INT_INT:
            for (const auto& [k, v] : props.getMapIntIntProperty(key))
                out << k << '@' << v << ',';
            break;
    }
    return out.str();
}

}  // namespace zorvane::pubsub::test
