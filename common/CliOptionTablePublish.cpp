// Option rows, third part: publishing, replay and binding, in matching order.
#include "common/CliOptionHandlers.h"
#include "common/CliProperties.h"

namespace zorvane::pubsub {

namespace {

using P = CliProperties;
using G = CliHelpGroup;
using H = CliOptionHandlers;

constexpr CliOption PUBLISH_OPTIONS_s[] = {
    listOpt("-pfl=", P::PUBLISH_FILE_LIST)
        .help(G::SHORT_PUBLISH, 1, "-pfl=list", "List of xml data files to publish"),
    listOpt("-pal=", P::PUBLISH_ATTACH_LIST)
        .then(&H::attachFileWeights)
        .help(G::SHORT_PUBLISH, 2, "-pal=list", "List of binary attachment files to publish"),
    customOpt("-ptl=", &H::publishTopicList)
        .help(G::SHORT_PUBLISH, 3, "-ptl=list",
              "List of topics to publish on, each with an optional weight\n"
              "(CPW), e.g. a:60,b:40.  Groups of topics are separated by ;"),
    customOpt("-ptp=", &H::publishTopicPrefix)
        .help(G::LONG_PUBLISH, 3, "-ptp=string",
              "Prefix of generated publish topics, used with -ptc"),
    customOpt("-ptc=", &H::publishTopicCount)
        .help(G::LONG_PUBLISH, 4, "-ptc=number",
              "Number of generated publish topics: prefix000001 and up\n"
              "(default 1)"),
    doubleOpt("-bd=", P::BURST_DURATION)
        .help(G::LONG_PUBLISH, 11, "-bd=number",
              "Burst duration in seconds; enables bursty publishing"),
    // Any argument that begins with "-ibd" is this option.
    doubleOpt("-ibd=", P::INTER_BURST_DURATION)
        .matchBy(CliMatch::FIRST_FOUR)
        .help(G::LONG_PUBLISH, 12, "-ibd=number", "Time between bursts in seconds"),
    flagOpt("-psm", P::WANT_SMOOTH_PUB_CALC_LAT)
        .help(G::SHORT_PUBLISH, 6, "-psm",
              "Smooth publishers: space messages evenly, for latency tests",
              CliHelpTools::VEX_LOAD_ONLY),
    customOpt("-ptf=", &H::publishTopicFiles)
        .help(G::LONG_PUBLISH, 1, "-ptf=list",
              "List of files of publish topics, one topic per line, each\n"
              "with an optional weight (CPW)"),
    customOpt("-pql=", &H::publishQueueList)
        .help(G::SHORT_PUBLISH, 4, "-pql=list",
              "List of queues to publish to, each with an optional weight\n"
              "(CPW)"),
    customOpt("-pqf=", &H::publishQueueFiles)
        .help(G::LONG_PUBLISH, 2, "-pqf=list",
              "List of files of publish queues, one queue per line, each\n"
              "with an optional weight (CPW)"),
    flagOpt("-soe", P::WANT_STOP_ON_ERROR)
        .help(G::SHORT_GENERAL_FLAGS, 1, "-soe", "Stop connections or publishing on errors"),
    flagOpt("-tod", nullptr)
        .then(&H::timeOfDay)
        .help(G::LONG_GENERAL_FLAGS, 1, "-tod",
              "Measure time by the time of day instead of clock ticks"),
    checkedOpt("-ped=", P::PUBLISH_END_DELAY_IN_SEC, 0, CLI_NO_MAX,
               "ERROR: Invalid publsh end delay, (0..) is valid: ")
        .help(G::LONG_PUBLISH, 5, "-ped=number",
              "Seconds to wait after the last message is published\n"
              "(default 2)"),
    checkedOpt("-psv=", P::PUB_SEND_VECTOR, 0, 50,
               "ERROR: Invalid send vector size. (0..50) is valid: ")
        .then(&H::sendVector)
        .help(G::SHORT_PUBLISH, 5, "-psv=number",
              "Configure pub send vector.  Default is 0, meaning disabled.  Max is 50"),
    checkedOpt("-rci=", P::RATE_CHECK_INTERVAL, 1, 200000,
               "ERROR: Invalid value for rate check interval, (1..200000) is valid: ")
        .help(G::LONG_PUBLISH, 6, "-rci=number",
              "Messages between checks of the publish rate (default 10)"),
    checkedOpt("-cos=", P::PUB_COS, 0, 3, "ERROR: Invalid value for cos, (0..3) is valid: ")
        .help(G::LONG_PUBLISH, 7, "-cos=int",
              "The cos value to use in publishing.  Valid range (1..3) or\n"
              "0 to leave it to the API (default 1)"),
    prefixFlagOpt("-pto", P::PUB_TO_ONE)
        .help(G::LONG_PUBLISH, 8, "-pto", "Set deliver-to-one on published messages"),
    checkedOpt("-pso=", P::PUB_STREAM_ID_OFFSET, 0, CLI_NO_MAX,
               "ERROR: Invalid value for stream Id, (0..) is valid: ")
        .help(G::LONG_PUBLISH, 9, "-pso=number", "Offset of the stream ids of published messages"),
    customOpt("-poo=", &H::publisherOrderOffsets)
        .help(G::LONG_PUBLISH, 10, "-poo=offsets",
              "Offset added to the message ids, as one number for all\n"
              "streams (-poo=3) or stream@offset pairs (-poo=1@10,3@11)"),
    flagOpt("-prt", P::WANT_REPLY_TOPIC)
        .help(G::LONG_PUBLISH, 13, "-prt", "Add a reply-to topic to each message"),
    textOpt("-prp=", P::PUB_REPLY_POSTFIX)
        .also(P::WANT_REPLY_TOPIC)
        .help(G::LONG_PUBLISH, 14, "-prp=string",
              "Reply-to topic is the publish topic plus this postfix"),
    flagOpt("-pmix", P::WANT_MIX_MSGS_PROPS)
        .help(G::LONG_PUBLISH, 15, "-pmix", "Publish all combinations of topics and sizes"),
    flagOpt("-mps", P::WANT_PRIORITY_STATS)
        .help(G::LONG_SUBSCRIBE, 25, "-mps", "Track message priority stats"),
    flagOpt("-fr", P::AD_WANT_REPLAY)
        .help(G::LONG_SUBSCRIBE, 26, "-fr", "Request replay from the start of the replay log"),
    textOpt("-fdr=", P::AD_REPLAY_DATE)
        .also(P::AD_WANT_REPLAY)
        .then(&H::replayConflict)
        .help(G::LONG_SUBSCRIBE, 27, "-fdr=date",
              "Request replay from a date, e.g. 2018-07-30T10:00:00-04:00"),
    textOpt("-fmidr=", P::AD_REPLAY_MSG_ID)
        .also(P::AD_WANT_REPLAY)
        .then(&H::replayConflict)
        .help(G::LONG_SUBSCRIBE, 28, "-fmidr=id",
              "Request replay from a replication group message id"),
    intOpt("-frc=", P::AD_FLOW_RECONNECT_ATTEMPTS)
        .help(G::LONG_SUBSCRIBE, 29, "-frc=number",
              "Flow reconnect tries; -1 for ever (default), 0 none"),
    intOpt("-fri=", P::AD_FLOW_RECONNECT_INTERVAL_IN_MSECS)
        .help(G::LONG_SUBSCRIBE, 30, "-fri=number", "Ms between flow reconnect tries"),
    intOpt("-br=", P::BIND_RATE)
        .help(G::LONG_SUBSCRIBE, 31, "-br=number", "Rate of binding endpoints; 0 is off"),
    prefixFlagOpt("-wnbb", P::WANT_NON_BLOCKING_BIND)
        .help(G::LONG_SUBSCRIBE, 32, "-wnbb", "Bind without blocking; only with -br"),
    intOpt("-ffc=", P::FLOW_FLAP_COUNT)
        .help(G::LONG_SUBSCRIBE, 33, "-ffc=number", "Bind and unbind the list this many times"),
    prefixFlagOpt("-wab", P::WAIT_AFTER_BIND)
        .help(G::LONG_SUBSCRIBE, 34, "-wab",
              "Leave the receivers in their last state when binding ends"),
    flagOpt("-pmp", nullptr)
        .also(P::WANT_PRIORITY_STATS)
        .then(&H::defaultPriorities)
        .help(G::LONG_PUBLISH, 16, "-pmp", "Random message priority, 10% each of 0 to 9"),
    customOpt("-pmpl=", &H::priorityList)
        .help(G::LONG_PUBLISH, 17, "-pmpl=list",
              "Message priorities as priority,percentage pairs,\n"
              "e.g. 0,50,9,50"),
    listOpt("-pkl=", P::PARTITION_KEY_LIST)
        .help(G::LONG_PUBLISH, 18, "-pkl=list", "Partition keys, used in turn when publishing"),
    textOpt("-httpce=", P::HTTP_CONTENT_ENCODING)
        .help(G::LONG_PUBLISH, 19, "-httpce=string", "HTTP content encoding of messages"),
    textOpt("-httpct=", P::HTTP_CONTENT_TYPE)
        .help(G::LONG_PUBLISH, 20, "-httpct=string", "HTTP content type of messages"),
    listOpt("-cpl=", P::CUSTOM_PROPERTIES_LIST)
        .help(G::LONG_PUBLISH, 21, "-cpl=list",
              "Custom properties as type,name,value triples, e.g.\n"
              "Boolean,PropName,true.  Types: boolean, string, short, int,\n"
              "long, float"),
};

}  // namespace

std::span<const CliOption> cliPublishOptions() {
    return PUBLISH_OPTIONS_s;
}

}  // namespace zorvane::pubsub
