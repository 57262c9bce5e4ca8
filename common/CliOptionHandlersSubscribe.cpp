// Handlers of subscribing and client-acknowledgement options.
#include <limits>
#include <vector>

#include "common/CliFault.h"
#include "common/CliOptionApply.h"
#include "common/CliOptionHandlers.h"
#include "common/CliParseState.h"
#include "common/CliProperties.h"
#include "common/CommonUtils.h"

namespace zorvane::pubsub {

namespace {

using P = CliProperties;

// "file[:count],...": one outer entry per file, at most count lines of it.
void loadFiles(CliProperties& props, std::vector<std::vector<std::string>>& outer,
               const std::string& value) {
    std::vector<std::string> items;
    CommonUtils::tokenizeString(value, items, ",");
    for (const std::string& item : items) {
        const size_t colon = item.find(':');
        const int num = colon == std::string::npos ? -1 : cliIntValue(item.substr(colon + 1));
        props.loadSubscriptionsFromFile(outer, item.substr(0, colon), num);
        props.setBooleanProperty(P::WANT_ADD_SUBSCRIPTIONS, true);
    }
}

}  // namespace

void CliOptionHandlers::holdTopicList(CliOptionCall& call) {
    call.state.stlStr = call.value;
}

void CliOptionHandlers::holdTopicPrefix(CliOptionCall& call) {
    call.state.stpStr = call.value;
}

void CliOptionHandlers::holdTopicCount(CliOptionCall& call) {
    call.state.stc = cliIntValue(call.value);
}

void CliOptionHandlers::holdQueueList(CliOptionCall& call) {
    call.state.sqlStr = call.value;
}

void CliOptionHandlers::holdDteList(CliOptionCall& call) {
    call.state.sdlStr = call.value;
}

void CliOptionHandlers::holdSelectorList(CliOptionCall& call) {
    call.state.sslStr = call.value;
}

void CliOptionHandlers::topicFiles(CliOptionCall& call) {
    loadFiles(call.props, call.props.topicsVector_m, call.value);
}

void CliOptionHandlers::queueFiles(CliOptionCall& call) {
    loadFiles(call.props, call.props.queuesVector_m, call.value);
}

void CliOptionHandlers::dteFiles(CliOptionCall& call) {
    loadFiles(call.props, call.props.dtesVector_m, call.value);
}

void CliOptionHandlers::selectorFiles(CliOptionCall& call) {
    // Selectors are no subscriptions of their own: they ride on the flows
    // of the queues and endpoints.
    std::vector<std::string> files;
    CommonUtils::tokenizeString(call.value, files, ",");
    call.props.selectorFile_m = true;
    for (const std::string& file : files) {
        call.props.loadSubscriptionsFromFile(call.props.selectorVector_m, file, -1);
    }
}

void CliOptionHandlers::subRateInterval(CliOptionCall& call) {
    const INT32 interval = cliIntValue(call.value);
    if (interval != -1 && interval < 1) {
        cliFault("ERROR: Invalid value for sub rate interval, (-1, >0) is valid: ",
                 std::to_string(interval));
    }
    call.props.setIntegerProperty(P::SUB_RATE_INTERVAL, interval);
}

void CliOptionHandlers::subscriberOrderOffsets(CliOptionCall& call) {
    call.props.setBooleanProperty(P::SUB_ORDER_OFFSETS_PRINT_RESUMING_ARG_AT_EXIT, true);
    // A blank value only asks for the resume argument at exit.
    if (CommonUtils::isBlankOrTabs(call.value)) {
        return;
    }
    const std::vector<std::map<INT32, UINT64>> offsets =
        CommonUtils::parseFullArgumentForSubscriberOrderOffsets(call.value);
    if (offsets.empty()) {
        cliFaultLines({"ERROR: Invalid value for subcriber order offset.",
                       "       It has to be of the form   1@10,2@10;1@11,2@10",
                       "       Note the absence of semi-colon after the last sequence.", ""});
    }
    call.props.setVectorMapInt32Uint64Property(P::SUB_ORDER_OFFSETS, offsets);
}

void CliOptionHandlers::ackRateLimitDepth(CliOptionCall& call) {
    // With a rate limit the ack queue must never fill up and force acks.
    call.props.setIntegerProperty(P::SUB_MSG_QUEUE_DEPTH, std::numeric_limits<INT32>::max());
}

void CliOptionHandlers::discardNotifySender(CliOptionCall& call) {
    INT32 setting = -1;
    if (call.value == "on") {
        setting = 1;
    } else if (call.value == "off") {
        setting = 2;
    }
    call.props.setIntegerProperty(P::PE_DISCARD_NOTIFY_SENDER, setting);
}

}  // namespace zorvane::pubsub
