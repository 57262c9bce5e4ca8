// Handlers of measurement, session and general options, and of the help.
#include <vector>

#include "common/CliFault.h"
#include "common/CliOptionApply.h"
#include "common/CliOptionHandlers.h"
#include "common/CliProperties.h"
#include "common/CommonUtils.h"
#include "common/ProcessExit.h"

namespace zorvane::pubsub {

namespace {
using P = CliProperties;
}  // namespace

void CliOptionHandlers::bothOrderChecks(CliOptionCall& call) {
    // First-to-last latency pairs messages by their order ids.
    call.props.setBooleanProperty(P::WANT_ORDER_CHECK_PUBLISHER_STREAM_NUMBER, true);
    call.props.setBooleanProperty(P::WANT_ORDER_CHECK_TOPIC_SEQUENCE_NUMBER, true);
}

void CliOptionHandlers::latencyBuckets(CliOptionCall& call) {
    // "-lb" alone keeps the bucket count; "-lb=" sets it.
    if (!call.value.empty()) {
        if (call.value.front() != '=') {
            cliFault("ERROR: Invalid format for -lb option");
        }
        const INT32 buckets = cliIntValue(call.value.substr(1));
        if (buckets < 16 || buckets > 4096) {
            cliFault("ERROR: Invalid # of buckets, (16..4096) is valid: ", std::to_string(buckets));
        }
        call.props.numLatencyBuckets_m = static_cast<UINT32>(buckets);
    }
    call.props.setBooleanProperty(P::WANT_LATENCY_MEASUREMENT, true);
}

void CliOptionHandlers::latencyGranularity(CliOptionCall& call) {
    const INT32 granularity = cliIntValue(call.value);
    if (granularity < 1 || granularity > 34) {
        cliFault("ERROR: Invalid latency granularity factor, (1..34) is valid: ",
                 std::to_string(granularity));
    }
    call.props.latencyGranularity_m = static_cast<UINT32>(granularity);
    call.props.setBooleanProperty(P::WANT_LATENCY_MEASUREMENT, true);
}

void CliOptionHandlers::minMaxTopicSeq(CliOptionCall& call) {
    call.props.parseMinMaxTopicSeq(call.value.c_str());
}

void CliOptionHandlers::attachJitter(CliOptionCall& call) {
    // Given in percent, kept as a fraction.
    call.props.setDoubleProperty(P::RANDOMIZATION_ATTACHMENT_SIZE_JITTER_FACTOR,
                                 std::strtod(call.value.c_str(), nullptr) * 0.01);
}

void CliOptionHandlers::queueBrowserDelete(CliOptionCall& call) {
    call.props.parseQBDelete(call.value.c_str());
}

void CliOptionHandlers::extraProps(CliOptionCall& call) {
    // A second "-epl=" adds to the first instead of replacing it.
    std::vector<std::string> tokens;
    CommonUtils::tokenizeString(call.value, tokens, ",");
    std::vector<std::string> list = call.props.getVectorProperty(P::EXTRA_PROPS_LIST);
    list.insert(list.end(), tokens.begin(), tokens.end());
    call.props.setVectorProperty(P::EXTRA_PROPS_LIST, list);
}

void CliOptionHandlers::shortHelp(CliOptionCall& call) {
    call.props.printHelp();
    processExit(PROCESS_EXIT_FAULT);
}

void CliOptionHandlers::moreHelp(CliOptionCall& call) {
    call.props.printMoreHelp();
    processExit(PROCESS_EXIT_FAULT);
}

void CliOptionHandlers::exampleHelp(CliOptionCall& call) {
    call.props.printExampleHelp();
    processExit(PROCESS_EXIT_FAULT);
}

}  // namespace zorvane::pubsub
