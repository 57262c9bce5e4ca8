// DiskUtils::genMsgArray: the ready-made message lists of a run.
//
// A message is made of up to five parts, each taken from a list: bodies,
// attachments, topics (of one group), queues and structured message
// descriptions. An empty list takes no part. How many messages a list gets
// and which parts go together depends on the mixing flag ("-pmix"):
// without it the parts advance in step, with it they count like an
// odometer so that every combination occurs once.
#include <algorithm>
#include <array>
#include <exception>
#include <string>
#include <utility>
#include <vector>

#include "common/DiskUtils.h"
#include "common/Log.h"
#include "common/PubSubException.h"
#include "common/PublishProperties.h"

namespace zorvane::pubsub {

namespace {

// Canned structured messages that cannot be sent as part of a list.
bool isSkippedCannedSdmId(int id) {
    return id == 5 || id == 10 || id == 16 || id == 17;
}

void checkWeights(const PublishProperties& publishProps) {
    const auto& topicsArray = publishProps.getTopicsArray();
    const auto& weightsArray = publishProps.getTopicsWeightsArray();
    const std::size_t commonCount = std::min(topicsArray.size(), weightsArray.size());
    for (std::size_t index = 0; index < commonCount; ++index) {
        if (topicsArray[index].size() != weightsArray[index].size()) {
            LOG_WARNING(
                "GenMsgList: List size mismatch at index %u; topic list size %u; weight "
                "list size %u",
                static_cast<unsigned>(index), static_cast<unsigned>(topicsArray[index].size()),
                static_cast<unsigned>(weightsArray[index].size()));
            throw PubSubException(
                "Mismatch between the number of topics and the number of topics probability "
                "weights.");
        }
    }
    if (topicsArray.size() != weightsArray.size()) {
        LOG_WARNING("GenMsgList: Different number of topic lists (%i) than weight lists (%i)",
                    static_cast<int>(topicsArray.size()), static_cast<int>(weightsArray.size()));
        throw PubSubException(
            "Mismatch between the number of topic lists and number of weights lists.");
    }
    const auto& queues = publishProps.getQueuesList();
    const auto& queueWeights = publishProps.getQueuesWeightsList();
    if (!queues.empty() && !queueWeights.empty() && queues.size() != queueWeights.size()) {
        throw PubSubException(
            "Mismatch between the number of queues and the number of queues probability weights.");
    }
}

std::vector<SdmProperties> collectSdmDescriptions(const PublishProperties& publishProps) {
    std::vector<SdmProperties> descriptions;
    if (publishProps.getSdmAutoGenFlag()) {
        for (int id = PUBSUB_SDM_ID_MIN; id <= PUBSUB_SDM_ID_MAX; ++id) {
            if (isSkippedCannedSdmId(id)) {
                LOG_DEBUG("GenMsgList: Skipping unsupported SDM msg Id in list gen: %i", id);
                continue;
            }
            SdmProperties canned;
            canned.setSdmMsgId(id);
            descriptions.push_back(canned);
        }
    }
    if (!publishProps.getSdmFileList().empty()) {
        descriptions = DiskUtils::genSdmPropsListFromFiles(publishProps.getSdmFileList());
    }
    if (!publishProps.getSdmAsStringList().empty()) {
        descriptions.clear();
        descriptions.push_back(
            DiskUtils::genSdmPropsListFromString(publishProps.getSdmAsStringList()));
    }
    return descriptions;
}

// Contents of the files if any are named, else one generated content per
// size.
std::vector<std::string> collectContents(const std::vector<std::string>& files,
                                         const std::vector<INT32>& sizes,
                                         std::string (*generate)(INT32)) {
    std::vector<std::string> contents;
    if (!files.empty()) {
        for (const std::string& file : files) {
            contents.push_back(DiskUtils::readFile(file));
        }
    } else {
        for (INT32 size : sizes) {
            contents.push_back(generate(size));
        }
    }
    return contents;
}

// The weight of element index of a list, or 1.0 with a notice when the
// list has none for it.
double weightOrDefault(const std::vector<double>& weights, std::size_t index, const char* what) {
    if (index < weights.size()) {
        return weights[index];
    }
    LOG_NOTICE(
        "Missing probability weight value for message %s. This message should NOT be displayed, "
        "but it's a better alternative to a segmentation fault.",
        what);
    return 1.0;
}

// The parts of one message list, in the order they count: each walks its
// own list and wraps at its end.
enum Part { BODIES, ATTACHMENTS, TOPICS, QUEUES, SDMS, NUM_PARTS };

struct Cursor {
    std::size_t size = 0;
    std::size_t index = 0;
};

std::size_t countDistinctMessages(const std::array<Cursor, NUM_PARTS>& cursors, bool wantToMix,
                                  int minMsgsListSize) {
    std::size_t count = cursors[BODIES].size > 0 ? cursors[BODIES].size : 1;
    for (int part = ATTACHMENTS; part < NUM_PARTS; ++part) {
        const std::size_t size = cursors[part].size;
        // Without mixing, lists of the same length as the count so far pair
        // up one to one; other lengths multiply, so that each element of
        // the longer list still comes round.
        if (size > 0 && (wantToMix || size != count)) {
            count *= size;
        }
    }
    // A vectored send takes several messages at once and needs that many
    // in the list.
    if (minMsgsListSize >= 0) {
        for (int doubling = 0; doubling < 10 && count <= static_cast<std::size_t>(minMsgsListSize);
             ++doubling) {
            count *= 2;
        }
    }
    return count;
}

void advance(std::array<Cursor, NUM_PARTS>& cursors, bool wantToMix) {
    for (Cursor& cursor : cursors) {
        if (cursor.size == 0) {
            continue;
        }
        cursor.index = (cursor.index + 1) % cursor.size;
        // Mixing counts like an odometer: the next part moves only when this
        // one went round.
        if (wantToMix && cursor.index != 0) {
            return;
        }
    }
}

struct ListParts {
    const std::vector<std::string>& bodies;
    const std::vector<std::string>& attachments;
    const std::vector<std::string>& topics;
    const std::vector<double>& topicWeights;
    const std::vector<SdmProperties>& sdmDescriptions;
};

std::vector<MsgProperties> buildList(const PublishProperties& publishProps, const ListParts& parts,
                                     int minMsgsListSize) {
    const std::vector<std::string>& queues = publishProps.getQueuesList();
    const bool wantToMix = publishProps.getWantToMixMessagePropertiesCollection();
    std::array<Cursor, NUM_PARTS> cursors;
    cursors[BODIES].size = parts.bodies.size();
    cursors[ATTACHMENTS].size = parts.attachments.size();
    cursors[TOPICS].size = parts.topics.size();
    cursors[QUEUES].size = queues.size();
    cursors[SDMS].size = parts.sdmDescriptions.size();

    const std::size_t count = countDistinctMessages(cursors, wantToMix, minMsgsListSize);
    std::vector<MsgProperties> list;
    list.reserve(count);
    for (std::size_t made = 0; made < count; ++made) {
        MsgProperties msg;
        if (cursors[BODIES].size > 0) {
            msg.setMsgBody(parts.bodies[cursors[BODIES].index]);
        }
        if (cursors[ATTACHMENTS].size > 0) {
            const std::size_t index = cursors[ATTACHMENTS].index;
            msg.setAttachment(parts.attachments[index]);
            msg.setWantRandomNoiseAttachmentContents(
                publishProps.getWantRandomNoiseAttachmentContents());
            msg.setWantUniqueAttachmentContents(publishProps.getWantUniqueAttachmentContents());
            msg.setOriginalAttachmentSize(static_cast<INT32>(parts.attachments[index].size()));
            msg.setAttachmentProbabilityWeight(weightOrDefault(
                publishProps.getAttachmentSizeWeightsList(), index, "attachment size list"));
        }
        if (cursors[TOPICS].size > 0) {
            const std::size_t index = cursors[TOPICS].index;
            msg.setTopic(parts.topics[index]);
            msg.setTopicProbabilityWeight(
                index < parts.topicWeights.size() ? parts.topicWeights[index] : 1.0);
        }
        if (cursors[QUEUES].size > 0) {
            const std::size_t index = cursors[QUEUES].index;
            msg.setQueue(queues[index]);
            msg.setQueueProbabilityWeight(
                weightOrDefault(publishProps.getQueuesWeightsList(), index, "queues list"));
        }
        if (cursors[SDMS].size > 0) {
            msg.setSdmMsgProps(parts.sdmDescriptions[cursors[SDMS].index]);
        }
        list.push_back(std::move(msg));
        advance(cursors, wantToMix);
    }
    return list;
}

}  // namespace

void DiskUtils::genMsgArray(const PublishProperties& publishProps,
                            std::vector<std::vector<MsgProperties>>& msgsToPublish,
                            int minMsgsListSize) {
    msgsToPublish.clear();
    try {
        checkWeights(publishProps);
        const std::vector<SdmProperties> sdmDescriptions = collectSdmDescriptions(publishProps);
        const std::vector<std::string> bodies =
            collectContents(publishProps.getXmlList(), publishProps.getXmlPayloadSizeList(),
                            &DiskUtils::generateXmlBody);
        const std::vector<std::string> attachments =
            collectContents(publishProps.getAttachmentList(), publishProps.getAttachmentSizeList(),
                            &DiskUtils::generateAttachment);
        const auto& topicsArray = publishProps.getTopicsArray();
        const auto& weightsArray = publishProps.getTopicsWeightsArray();
        for (std::size_t group = 0; group < topicsArray.size(); ++group) {
            const ListParts parts{bodies, attachments, topicsArray[group], weightsArray[group],
                                  sdmDescriptions};
            msgsToPublish.push_back(buildList(publishProps, parts, minMsgsListSize));
        }
    } catch (const std::exception& cause) {
        // Half a set of lists would publish something other than what was
        // asked for.
        msgsToPublish.clear();
        throw PubSubException("Error reading documents to publish.", cause);
    }
}

}  // namespace zorvane::pubsub
