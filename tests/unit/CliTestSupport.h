// Helpers for tests that run the command-line parser: the process-exit hook
// is replaced by one that throws, so that a fault or help can be checked
// for its status and its output without the test process ending.
#pragma once

#include <gtest/gtest.h>

#include <map>
#include <sstream>
#include <string>
#include <type_traits>
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

// The store of a bare command line.
inline CliProperties defaultStore() {
    return CliProperties(CliProperties::VEX_LOAD, "1.0.0");
}

// The store a run makes of args, which must parse.
inline CliProperties parsedStore(std::vector<std::string> args) {
    CliProperties props = defaultStore();
    const ParseOutcome outcome = parseLine(props, std::move(args));
    EXPECT_EQ(outcome.status, -1) << outcome.err;
    return props;
}

// Values as text: lists joined by ",", lists of lists by ";", maps as k@v.
template <typename T>
std::string text(const T& value) {
    std::ostringstream out;
    out << value;
    return out.str();
}
template <typename K, typename V>
std::string text(const std::map<K, V>& map) {
    std::string result;
    for (const auto& [key, value] : map) {
        result += text(key) + "@" + text(value) + ",";
    }
    return result;
}
template <typename T>
std::string text(const std::vector<T>& list) {
    constexpr bool nested = !std::is_arithmetic_v<T> && !std::is_same_v<T, std::string>;
    std::string result;
    for (size_t i = 0; i < list.size(); ++i) {
        result += (i == 0 ? "" : nested ? ";" : ",") + text(list[i]);
    }
    return result;
}

// A store value as text, by the type of its key (flags "1"/"0"). The plain
// fields are read by the names msgType, buckets, granularity, topics,
// queues, dtes and selectors.
inline std::string valueOf(const CliProperties& props, const std::string& key) {
    if (key == "msgType")
        return text(props.getMsgType());
    if (key == "buckets")
        return text(props.getNumLatencyBuckets());
    if (key == "granularity")
        return text(props.getLatencyGranularity());
    if (key == "topics")
        return text(props.getTopics());
    if (key == "queues")
        return text(props.getQueues());
    if (key == "dtes")
        return text(props.getDTEs());
    if (key == "selectors")
        return text(props.getSelectors());
    using T = CliPropertyType;
    const CliPropertyKey* row = CliProperties::findKey(key);
    switch (row == nullptr ? T::BOOLEAN : row->type_m) {
        case T::BOOLEAN:
            return row == nullptr ? "<no such key>" : text(props.getBooleanProperty(key));
        case T::INTEGER:
            return text(props.getIntegerProperty(key));
        case T::INT64:
            return text(props.getInt64Property(key));
        case T::DOUBLE:
            return text(props.getDoubleProperty(key));
        case T::STRING:
            return props.getStringProperty(key);
        case T::VECTOR:
            return text(props.getVectorProperty(key));
        case T::VECTOR_VECTOR:
            return text(props.getVectorVectorProperty(key));
        case T::INT_VECTOR:
            return text(props.getIntVectorProperty(key));
        case T::DOUBLE_VECTOR:
            return text(props.getDoubleVectorProperty(key));
        case T::VECTOR_DOUBLE_VECTOR:
            return text(props.getVectorDoubleVectorProperty(key));
        case T::VECTOR_MAP_INT32_UINT64:
            return text(props.getVectorMapInt32Uint64Property(key));
        case T::MAP_INT_INT:
            return text(props.getMapIntIntProperty(key));
    }
    return "";
}

}  // namespace zorvane::pubsub::test
