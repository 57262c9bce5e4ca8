// Checks that need the whole command line, run after the held-back lists
// are spread. The first fault ends the process; warnings let the run go on.
#include <string>
#include <vector>

#include "common/CliFault.h"
#include "common/CliProperties.h"

namespace zorvane::pubsub {

namespace {

bool anyWeightIsNotOne(const std::vector<double>& weights) {
    for (const double weight : weights) {
        if (weight != 1.0) {
            return true;
        }
    }
    return false;
}

}  // namespace

void CliProperties::runCrossChecks() const {
    const std::string useLine = "Use " + toolNameStr_m + " -h to get all the options";

    // A reflecting client needs a topic to reflect to and neither publishes
    // nor requests by itself.
    if (getStringProperty(CLIENT_MODE) == CLIENT_MODE_REFLECT &&
        (getVectorVectorProperty(PUB_TOPICS_ARRAY).empty() ||
         getInt64Property(NUM_MSGS_TO_PUBLISH) != 0 || getInt64Property(CACHE_NUM_REQ) != 0)) {
        cliFaultLines({"ERROR: In client mode reflect, must specify at least one topic ",
                       "       and cannot specify cache request or publish messages ", useLine});
    }

    const bool randomOrder = getBooleanProperty(RANDOMIZATION_MESSAGE_ORDER_FLAG);
    if (getIntegerProperty(PUB_SEND_VECTOR) != 0 && randomOrder) {
        cliFaultLines({"ERROR: Cannot use publish send vectors with randomization. ", useLine});
    }

    // Weights only steer the random choice of the next message.
    if (!randomOrder) {
        bool weighted = anyWeightIsNotOne(getDoubleVectorProperty(PUB_QUEUES_WEIGHTS_LIST)) ||
                        anyWeightIsNotOne(getDoubleVectorProperty(BINARY_ATTACH_SIZE_WEIGHTS_LIST));
        for (const std::vector<double>& group :
             getVectorDoubleVectorProperty(PUB_TOPICS_WEIGHTS_ARRAY)) {
            weighted = weighted || anyWeightIsNotOne(group);
        }
        if (weighted) {
            cliWarningLines(
                {"WARNING: Using probability weights for ptl, ptf, pql, pqf or msa requires ",
                 "         the -rmo flag to be set. Otherwise we can still proceed but ",
                 "         those weights are ignored."});
        }
    }

    const double jitter = getDoubleProperty(RANDOMIZATION_ATTACHMENT_SIZE_JITTER_FACTOR);
    if (jitter < 0.0 || jitter > 1.0) {
        cliWarningLines({"WARNING: The value specified to -rjit is not between [0.0, 100.0].",
                         "         Any resulting message attachment size values that would ",
                         "         be less than 1 byte will be brought back to 1 byte."});
    }

    if (!getVectorProperty(PUBLISH_ATTACH_LIST).empty()) {
        if (!getIntVectorProperty(BINARY_ATTACH_SIZE_LIST).empty()) {
            cliFaultLines({"ERROR: Cannot combine -pal with either -msa or -msas.",
                           "       -pal uses a given file for the attachments and",
                           "       -msa or -msas generate the attachments instead."});
        }
        if (getBooleanProperty(RANDOMIZATION_MESSAGE_ATTACHMENT_CONTENTS)) {
            cliFaultLines({"ERROR: Cannot combine -pal with -rmac.",
                           "       -pal uses a given file for the attachments and",
                           "       -rmac wants to make the attachments' contents random."});
        }
    }

    const size_t described = getVectorMapInt32Uint64Property(SUB_ORDER_OFFSETS).size();
    const INT32 numClients = getIntegerProperty(NUM_CLIENTS);
    if (described > 0 && described != static_cast<size_t>(numClients)) {
        cliFaultLines({"ERROR: When specifying the -soo option, there needs to",
                       "       be a match between the number of clients described",
                       "       in the -soo option and the client count -cc option.",
                       "       For reference, we have " + std::to_string(numClients) +
                           " actual clients requested",
                       "       and " + std::to_string(described) +
                           " clients described in the -soo argument."});
    }
}

}  // namespace zorvane::pubsub
