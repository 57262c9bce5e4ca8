// Handlers of message-content and publishing options.
#include <fstream>
#include <vector>

#include "common/CliFault.h"
#include "common/CliOptionApply.h"
#include "common/CliOptionHandlers.h"
#include "common/CliParseState.h"
#include "common/CliProperties.h"
#include "common/CommonUtils.h"
#include "common/OS.h"

namespace zorvane::pubsub {

namespace {

using P = CliProperties;

std::vector<std::string> commaTokens(const std::string& value) {
    std::vector<std::string> tokens;
    CommonUtils::tokenizeString(value, tokens, ",");
    return tokens;
}

// Every line of every file of the comma list, in order, blank lines too.
std::vector<std::string> linesOfFiles(const std::string& value, const char* cannotOpenText) {
    std::vector<std::string> lines;
    for (const std::string& filename : commaTokens(value)) {
        std::ifstream file(filename);
        if (!file.is_open()) {
            cliFault(cannotOpenText, filename);
        }
        std::string line;
        while (std::getline(file, line)) {
            lines.push_back(line);
        }
    }
    return lines;
}

void storeWeightedTopics(CliProperties& props, const std::vector<std::vector<std::string>>& groups,
                         const std::vector<std::vector<double>>& weights) {
    props.setVectorVectorProperty(P::PUB_TOPICS_ARRAY, groups);
    props.setVectorDoubleVectorProperty(P::PUB_TOPICS_WEIGHTS_ARRAY, weights);
}

void storeWeightedQueues(CliProperties& props, const std::vector<std::string>& in) {
    std::vector<std::string> names;
    std::vector<double> weights;
    CommonUtils::processWeightedStringList(in, names, weights, true);
    props.setVectorProperty(P::PUB_QUEUES_LIST, names);
    props.setDoubleVectorProperty(P::PUB_QUEUES_WEIGHTS_LIST, weights);
}

}  // namespace

void CliOptionHandlers::rateTarget(CliOptionCall& call) {
    call.props.setBooleanProperty(P::MSG_RATE_IS_MAX, call.value == MSG_RATE_TARGET_MAX);
}

void CliOptionHandlers::xmlSizes(CliOptionCall& call) {
    std::vector<INT32> sizes;
    for (const std::string& token : commaTokens(call.value)) {
        const INT32 size = cliIntValue(token);
        // Smaller payloads cannot hold the xml the tool wraps them in.
        if (size != 0 && size < 8) {
            cliFault("ERROR: Minumum xml msg size is 8 bytes.  Found (" + std::to_string(size) +
                     ")");
        }
        sizes.push_back(size);
    }
    call.props.setIntVectorProperty(P::XML_PAYLOAD_SIZE_LIST, sizes);
}

void CliOptionHandlers::attachSizes(CliOptionCall& call) {
    std::vector<int> sizes;
    std::vector<double> weights;
    CommonUtils::processWeightedIntList(commaTokens(call.value), sizes, weights, true);
    call.props.setIntVectorProperty(P::BINARY_ATTACH_SIZE_LIST, sizes);
    call.props.setDoubleVectorProperty(P::BINARY_ATTACH_SIZE_WEIGHTS_LIST, weights);
}

void CliOptionHandlers::xmlSizeSweep(CliOptionCall& call) {
    std::vector<int> sizes;
    CommonUtils::getSizeListFromSweep(
        call.value, sizes, "ERROR: Must specify start,step,end in bytes for msxs", "-msxs");
    call.props.setIntVectorProperty(P::XML_PAYLOAD_SIZE_LIST, sizes);
}

void CliOptionHandlers::attachSizeSweep(CliOptionCall& call) {
    std::vector<int> sizes;
    std::vector<double> weights;
    CommonUtils::getAttachmentSizeListFromAttachmentSizeSweep(call.value, sizes, weights);
    call.props.setIntVectorProperty(P::BINARY_ATTACH_SIZE_LIST, sizes);
    call.props.setDoubleVectorProperty(P::BINARY_ATTACH_SIZE_WEIGHTS_LIST, weights);
}

void CliOptionHandlers::randomAttachRange(CliOptionCall& call) {
    std::vector<std::string> parts;
    CommonUtils::tokenizeString(call.value, parts, "-");
    if (parts.size() != 2) {
        cliFault("ERROR: Must specify msar in the form -msar=min-max");
    }
    call.props.setInt64Property(P::RANDOM_ATTACH_SIZE_MIN, cliIntValue(parts[0]));
    call.props.setInt64Property(P::RANDOM_ATTACH_SIZE_MAX, cliIntValue(parts[1]));
}

void CliOptionHandlers::messageType(CliOptionCall& call) {
    if (call.value == MSG_TYPE_PERSISTENT) {
        call.props.setMsgType(PUBSUB_MSG_TYPE_PERSISTENT);
    } else if (call.value == MSG_TYPE_NON_PERSISTENT) {
        call.props.setMsgType(PUBSUB_MSG_TYPE_NON_PERSISTENT);
    } else {
        call.props.setMsgType(PUBSUB_MSG_TYPE_DIRECT);
    }
}

void CliOptionHandlers::structuredMessages(CliOptionCall& call) {
    // An empty list asks for the canned structured messages.
    if (call.value.empty()) {
        call.props.setBooleanProperty(P::SDM_AUTO_GEN_FLAG, true);
    } else {
        call.props.setVectorProperty(P::SDM_FILE_LIST, commaTokens(call.value));
    }
    call.state.sdmFlag = true;
    if (call.state.psvFlag) {
        cliFault(
            "ERROR: Invalid combination. Cannot perform structured messaging with send vectors.");
    }
}

void CliOptionHandlers::sendVector(CliOptionCall& call) {
    call.state.psvFlag = true;
    if (call.state.sdmFlag) {
        cliFault(
            "ERROR: Invalid combination. Cannot perform structured messaging with send vectors.");
    }
}

void CliOptionHandlers::attachFileWeights(CliOptionCall& call) {
    const size_t files = call.props.getVectorProperty(P::PUBLISH_ATTACH_LIST).size();
    call.props.setDoubleVectorProperty(P::BINARY_ATTACH_SIZE_WEIGHTS_LIST,
                                       std::vector<double>(files, 1.0));
}

void CliOptionHandlers::publishTopicList(CliOptionCall& call) {
    std::vector<std::string> groupTexts;
    CommonUtils::tokenizeString(call.value, groupTexts, ";");
    std::vector<std::vector<std::string>> groups;
    std::vector<std::vector<double>> weights;
    for (const std::string& groupText : groupTexts) {
        std::vector<std::string> names;
        std::vector<double> groupWeights;
        CommonUtils::processWeightedStringList(commaTokens(groupText), names, groupWeights, true);
        groups.push_back(std::move(names));
        weights.push_back(std::move(groupWeights));
    }
    storeWeightedTopics(call.props, groups, weights);
}

void CliOptionHandlers::publishTopicPrefix(CliOptionCall& call) {
    call.state.ptpStr = call.value;
}

void CliOptionHandlers::publishTopicCount(CliOptionCall& call) {
    call.state.ptc = cliIntValue(call.value);
}

void CliOptionHandlers::publishTopicFiles(CliOptionCall& call) {
    const std::vector<std::string> lines =
        linesOfFiles(call.value, "Cannot open the topics file: ");
    std::vector<std::string> names;
    std::vector<double> weights;
    CommonUtils::processWeightedStringList(lines, names, weights, true);
    storeWeightedTopics(call.props, {names}, {weights});
}

void CliOptionHandlers::publishQueueList(CliOptionCall& call) {
    storeWeightedQueues(call.props, commaTokens(call.value));
}

void CliOptionHandlers::publishQueueFiles(CliOptionCall& call) {
    storeWeightedQueues(call.props, linesOfFiles(call.value, "Cannot open the queues file: "));
}

void CliOptionHandlers::timeOfDay(CliOptionCall&) {
    OS::configureClockCyclesCheck(false);
}

void CliOptionHandlers::publisherOrderOffsets(CliOptionCall& call) {
    bool error = false;
    const std::map<INT32, INT32> offsets =
        CommonUtils::parseFullArgumentForPublisherOrderOffsets(call.value, error);
    if (!error) {
        call.props.setMapIntIntProperty(P::PUB_ORDER_OFFSETS, offsets);
        call.props.setIntegerProperty(P::PUB_ORDER_OFFSET, 0);
        return;
    }
    // Not the pair form: one offset for every stream.
    const INT32 offset = cliIntValue(call.value);
    if (offset < 0) {
        cliFaultLines({"ERROR: Invalid value for publisher order offset. ",
                       "       Valid values are either a single non-negative integer,",
                       "       or a comma-separated list of pairs of non-negative integers",
                       "       with a '@' between the values in a given pair.", "", "       -poo=3",
                       "       -poo=1@10,3@11,2@10", ""});
    }
    call.props.setIntegerProperty(P::PUB_ORDER_OFFSET, offset);
}

void CliOptionHandlers::replayConflict(CliOptionCall& call) {
    const char* other = std::string_view(call.option.key_mp) == P::AD_REPLAY_DATE
                            ? P::AD_REPLAY_MSG_ID
                            : P::AD_REPLAY_DATE;
    if (!call.props.getStringProperty(other).empty()) {
        cliFault("ERROR: Cannot specify both replay from date and replication group message id");
    }
}

void CliOptionHandlers::defaultPriorities(CliOptionCall& call) {
    // Priorities 0 to 9, 10 percent each.
    std::vector<INT32> pairs;
    for (INT32 priority = 0; priority <= 9; ++priority) {
        pairs.push_back(priority);
        pairs.push_back(10);
    }
    call.props.setIntVectorProperty(P::PUB_PRIORITY_LIST, pairs);
}

void CliOptionHandlers::priorityList(CliOptionCall& call) {
    const std::vector<std::string> tokens = commaTokens(call.value);
    if (tokens.size() % 2 != 0) {
        cliFault("ERROR: List of priorities must be dividable by two.");
    }
    std::vector<INT32> pairs;
    for (const std::string& token : tokens) {
        pairs.push_back(cliIntValue(token));
    }
    call.props.setIntVectorProperty(P::PUB_PRIORITY_LIST, pairs);
    call.props.setBooleanProperty(P::WANT_PRIORITY_STATS, true);
}

}  // namespace zorvane::pubsub
