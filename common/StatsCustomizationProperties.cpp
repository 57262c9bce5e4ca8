#include "common/StatsCustomizationProperties.h"

#include <sstream>

#include "common/CliProperties.h"
#include "common/DiskUtils.h"

namespace zorvane::pubsub {

StatsCustomizationProperties::StatsCustomizationProperties()
    : wantLatency_m(false),
      firstLastLatencyFanout_m(0),
      wantPayloadCheck_m(false),
      wantOrderCheckPublisherStreamNumber_m(false),
      wantOrderCheckTopicSequenceNumber_m(false),
      wantOrderMemory_m(false),
      wantPerPriorityStats_m(false),
      wantPriorityStats_m(false),
      wantCidStats_m(false),
      wantFullMsgInspection_m(false),
      latencyNumBuckets_m(0),
      latencyGranularityFactor_m(0),
      thruputRateStatsInterval_m(1),
      latencyWarmupSecs_m(0.0),
      wantUD_m(false),
      wantResponseCheck_m(false),
      wantStructMsgCheck_m(false),
      sdmPropsList_m(),
      wantCacheMsgStats_m(false),
      wantDIStats_m(false),
      wantLatencyPerMsg_m(false),
      wantUniqueBinaryAttachments_m(false),
      wantPerMessageDetails_m(false),
      perMessageDetailsQueueDepth_m(0) {}

StatsCustomizationProperties::StatsCustomizationProperties(const CliProperties& cli)
    : wantLatency_m(cli.getBooleanProperty(CliProperties::WANT_LATENCY_MEASUREMENT)),
      firstLastLatencyFanout_m(cli.getIntegerProperty(CliProperties::LATENCY_FIRST_TO_LAST_FANOUT)),
      wantPayloadCheck_m(cli.getBooleanProperty(CliProperties::WANT_PAYLOAD_CHECK)),
      wantOrderCheckPublisherStreamNumber_m(
          cli.getBooleanProperty(CliProperties::WANT_ORDER_CHECK_PUBLISHER_STREAM_NUMBER)),
      wantOrderCheckTopicSequenceNumber_m(
          cli.getBooleanProperty(CliProperties::WANT_ORDER_CHECK_TOPIC_SEQUENCE_NUMBER)),
      wantOrderMemory_m(cli.getBooleanProperty(CliProperties::WANT_ORDER_MEMORY)),
      wantPerPriorityStats_m(cli.getBooleanProperty(CliProperties::WANT_PER_PRI_THRU_STATS)),
      wantPriorityStats_m(cli.getBooleanProperty(CliProperties::WANT_PRIORITY_STATS)),
      wantCidStats_m(cli.getBooleanProperty(CliProperties::WANT_CID_STATS)),
      wantFullMsgInspection_m(cli.getBooleanProperty(CliProperties::WANT_FULL_MSG_INSPECTION)),
      // The histogram shape lives in plain fields of the store, not in keys.
      latencyNumBuckets_m(cli.getNumLatencyBuckets()),
      latencyGranularityFactor_m(cli.getLatencyGranularity()),
      thruputRateStatsInterval_m(cli.getIntegerProperty(CliProperties::SUB_RATE_INTERVAL)),
      latencyWarmupSecs_m(cli.getDoubleProperty(CliProperties::LATENCY_WARMUP_IN_SEC)),
      wantUD_m(cli.getBooleanProperty(CliProperties::WANT_UD)),
      wantResponseCheck_m(cli.getBooleanProperty(CliProperties::WANT_RESPONSE_CHECK)),
      wantStructMsgCheck_m(false),
      sdmPropsList_m(),
      // Cache statistics have no option of their own: naming a cache is
      // enough to want them.
      wantCacheMsgStats_m(!cli.getStringProperty(CliProperties::CACHE_PROP_NAME).empty()),
      wantDIStats_m(cli.getBooleanProperty(CliProperties::WANT_DI_STATS)),
      wantLatencyPerMsg_m(cli.getBooleanProperty(CliProperties::WANT_LATENCY_PRINT_PER_MSG)),
      wantUniqueBinaryAttachments_m(
          cli.getBooleanProperty(CliProperties::WANT_UNIQUE_BINARY_ATTACH)),
      wantPerMessageDetails_m(false),
      perMessageDetailsQueueDepth_m(0) {
    // Files of descriptions always mean checking against them; without files
    // the automatic flag of "-sdm" alone decides, so "-sdm" with an empty
    // list still checks.
    const std::vector<std::string> sdmFiles = cli.getVectorProperty(CliProperties::SDM_FILE_LIST);
    if (!sdmFiles.empty()) {
        wantStructMsgCheck_m = true;
        sdmPropsList_m = DiskUtils::genSdmPropsListFromFiles(sdmFiles);
    } else {
        wantStructMsgCheck_m = cli.getBooleanProperty(CliProperties::SDM_AUTO_GEN_FLAG);
    }
}

std::unique_ptr<StatsCustomizationProperties> StatsCustomizationProperties::clone() const {
    return std::make_unique<StatsCustomizationProperties>(*this);
}

std::string StatsCustomizationProperties::toString() const {
    std::ostringstream out;
    out << "{\n"
        << "  Want Latency           = " << wantLatency_m << "\n"
        << "  First Last Lat Fanout  = " << firstLastLatencyFanout_m << "\n"
        << "  Want Payload Check     = " << wantPayloadCheck_m << "\n"
        << "  Order Check Pub Stream = " << wantOrderCheckPublisherStreamNumber_m << "\n"
        << "  Order Check Topic Seq  = " << wantOrderCheckTopicSequenceNumber_m << "\n"
        << "  Want Order Memory      = " << wantOrderMemory_m << "\n"
        << "  Want Per Pri Thru Stats= " << wantPerPriorityStats_m << "\n"
        << "  Want Priority Stats    = " << wantPriorityStats_m << "\n"
        << "  Want CID Stats         = " << wantCidStats_m << "\n"
        << "  Want Full Msg Inspect  = " << wantFullMsgInspection_m << "\n"
        << "  Latency Num Buckets    = " << latencyNumBuckets_m << "\n"
        << "  Latency Granularity    = " << latencyGranularityFactor_m << "\n"
        << "  Rate Stats Interval    = " << thruputRateStatsInterval_m << "\n"
        << "  Latency Warmup (sec)   = " << latencyWarmupSecs_m << "\n"
        << "  Want UD                = " << wantUD_m << "\n"
        << "  Want Response Check    = " << wantResponseCheck_m << "\n"
        << "  Want Struct Msg Check  = " << wantStructMsgCheck_m << "\n"
        << "  SDM Props List Size    = " << sdmPropsList_m.size() << "\n"
        << "  Want Cache Msg Stats   = " << wantCacheMsgStats_m << "\n"
        << "  Want DI Stats          = " << wantDIStats_m << "\n"
        << "  Want Latency Per Msg   = " << wantLatencyPerMsg_m << "\n"
        << "  Want Unique Bin Attach = " << wantUniqueBinaryAttachments_m << "\n"
        << "  Want Per Msg Details   = " << wantPerMessageDetails_m << "\n"
        << "  Per Msg Details Depth  = " << perMessageDetailsQueueDepth_m << "\n"
        << "}";
    return out.str();
}

}  // namespace zorvane::pubsub
