// Option rows, second part: message control, in matching order. "-mdt=" and
// "-mdts" stand before "-md", which takes every other argument that begins
// with it.
#include "common/CliOptionHandlers.h"
#include "common/CliProperties.h"

namespace zorvane::pubsub {

namespace {

using P = CliProperties;
using G = CliHelpGroup;
using H = CliOptionHandlers;

constexpr const char* RATE_TARGET_WORDS_s[] = {MSG_RATE_TARGET_AVG, MSG_RATE_TARGET_MAX, nullptr};
constexpr const char* MSG_TYPE_WORDS_s[] = {MSG_TYPE_DIRECT, MSG_TYPE_NON_PERSISTENT,
                                            MSG_TYPE_PERSISTENT, nullptr};
constexpr const char* ACK_EVENT_MODE_WORDS_s[] = {AD_ACK_EVENT_MODE_PER_MESSAGE,
                                                  AD_ACK_EVENT_MODE_WINDOWED, nullptr};

constexpr CliStrictFaults NUM_MSGS_FAULTS_s = {
    "ERROR: Error parsing -mn value.  Number out of range of 64 bit int",
    "ERROR: Error parsing -mn value. errno = ",
    " in # msgs to publish: ",
};
constexpr CliStrictFaults TTL_FAULTS_s = {
    "ERROR: Error parsing TTL value.  Number out of range of 64 bit int",
    "ERROR: Error parsing TTL value.  errno = ",
    " in TTL: ",
};

constexpr CliOption MESSAGE_OPTIONS_s[] = {
    doubleOpt("-mr=", P::PUBLISH_RATE)
        .help(G::SHORT_MESSAGE, 1, "-mr=number",
              "Publishing rate (msg/sec per client) (default 1)"),
    customOpt("-mrt=", &H::rateTarget)
        .choice(RATE_TARGET_WORDS_s,
                "ERROR: Invalid message rate target: ", ".  See help for valid values. ")
        .help(G::LONG_MESSAGE, 1, "-mrt=target",
              "Whether -mr is an average ({MSG_RATE_TARGET_AVG}, default) or a maximum "
              "({MSG_RATE_TARGET_MAX})\n"
              "that is never exceeded, even to catch up"),
    number64Opt("-mn=", P::NUM_MSGS_TO_PUBLISH)
        .strict(&NUM_MSGS_FAULTS_s)
        .range(0, CLI_NO_MAX, "ERROR: Invalid # msgs to publish, (0..) is valid: ")
        .help(G::SHORT_MESSAGE, 2, "-mn=number",
              "Total number of messages to publish across all clients"),
    customOpt("-msx=", &H::xmlSizes)
        .help(G::SHORT_MESSAGE, 3, "-msx=list",
              "Comma separated list of xml payload sizes in bytes,\n"
              "each 8 or more (0 for none)"),
    customOpt("-msa=", &H::attachSizes)
        .help(G::SHORT_MESSAGE, 4, "-msa=list",
              "Comma separated list of binary attachment sizes in bytes,\n"
              "each with an optional weight (CPW), e.g. 100:99.9,100000:0.1"),
    customOpt("-msxs=", &H::xmlSizeSweep)
        .help(G::LONG_MESSAGE, 2, "-msxs=s,st,e",
              "Xml payload sizes as a sweep: start,step,end in bytes"),
    customOpt("-msas=", &H::attachSizeSweep)
        .help(G::LONG_MESSAGE, 3, "-msas=s,st,e",
              "Binary attachment sizes as a sweep: start,step,end in bytes"),
    customOpt("-msar=", &H::randomAttachRange)
        .help(G::LONG_MESSAGE, 4, "-msar=min-max",
              "Random binary attachment sizes from min to max bytes"),
    customOpt("-mt=", &H::messageType)
        .choice(MSG_TYPE_WORDS_s,
                "ERROR: Invalid message type: ", ".  See help for valid message types. ")
        .help(
            G::SHORT_MESSAGE, 5, "-mt=string",
            "Message type: {MSG_TYPE_DIRECT}, {MSG_TYPE_NON_PERSISTENT} or {MSG_TYPE_PERSISTENT}\n"
            "(default {MSG_TYPE_DIRECT})"),
    textOpt("-aem=", P::AD_ACK_EVENT_MODE)
        .choice(ACK_EVENT_MODE_WORDS_s,
                "ERROR: Invalid ack event mode: ", ".  See help for valid ack event modes. ")
        .help(G::LONG_AD, 12, "-aem=mode",
              "Ack event mode of guaranteed publishing: {AD_ACK_EVENT_MODE_PER_MESSAGE} or\n"
              "{AD_ACK_EVENT_MODE_WINDOWED}.  Default leaves it to the API"),
    checkedOpt("-aii=", P::AD_ACK_IMMEDIATELY_INTERVAL, 0, CLI_NO_MAX,
               "ERROR: Invalid value for ACK Immediately Interval: ")
        .help(G::LONG_AD, 13, "-aii=number",
              "Ask for an immediate ack every this many messages; 0 is off"),
    checkedOpt("-atrl=", P::TRANSACTION_REDELIVERY_LIMIT, 0, CLI_NO_MAX,
               "ERROR: Invalid value for Transaction Redelivery Limit: ")
        .help(G::LONG_AD, 14, "-atrl=number",
              "Redeliveries of a rolled back publish transaction before\n"
              "giving up.  Default -1 retries for ever"),
    customOpt("-sdm=", &H::structuredMessages)
        .help(G::LONG_MESSAGE, 5, "-sdm=list",
              "Structured messages: a comma separated list of description\n"
              "files, or empty for the canned ones.  Not with -psv"),
    prefixFlagOpt("-mdq", P::MSG_DMQ_ELIGIBLE)
        .help(G::LONG_MESSAGE, 6, "-mdq", "Mark messages eligible for the dead message queue"),
    number64Opt("-mtl=", P::MSG_TTL)
        .strict(&TTL_FAULTS_s)
        .range(0, CLI_NO_MAX, "ERROR: Invalid TTL, (0..) is valid: ")
        .help(G::LONG_MESSAGE, 7, "-mtl=number", "Time to live of messages in ms"),
    checkedOpt("-mdt=", P::MSG_DUMP_BUFFER_SIZE, 0, CLI_NO_MAX,
               "ERROR: Invalid message dump buffer size: ")
        .also(P::WANT_MSG_DUMP)
        .help(G::SHORT_MESSAGE, 7, "-mdt=number",
              "Dump received messages, each cut to this many bytes"),
    prefixFlagOpt("-mdts", P::WANT_MSG_DUMP_TIME_STAMP)
        .also(P::WANT_MSG_DUMP)
        .help(G::SHORT_MESSAGE, 8, "-mdts", "Dump received messages with a time stamp"),
    // The dump size goes back to whole messages, also after "-mdt=".
    prefixFlagOpt("-md", P::MSG_DUMP_BUFFER_SIZE)
        .stores(0)
        .also(P::WANT_MSG_DUMP)
        .help(G::SHORT_MESSAGE, 6, "-md", "Dump all received messages to the screen"),
    prefixFlagOpt("-mee", P::MSG_ELIDING_ELIGIBLE)
        .help(G::LONG_MESSAGE, 8, "-mee", "Mark messages eligible for eliding"),
    prefixFlagOpt("-mua", P::WANT_UNIQUE_BINARY_ATTACH)
        .help(G::LONG_MESSAGE, 9, "-mua", "A unique binary attachment in each message"),
    textOpt("-mot=", P::MSG_OBJ_TYPE_PATTERN)
        .help(G::LONG_MESSAGE, 10, "-mot=pattern",
              "Message object types to publish in turn, letters b (bytes),\n"
              "t (text), s (stream) and m (map), e.g. -mot=bbtm"),
    prefixFlagOpt("-motc", P::MSG_OBJ_TYPE_CHECK)
        .help(G::LONG_MESSAGE, 11, "-motc", "Check the object type of received messages"),
};

}  // namespace

std::span<const CliOption> cliMessageOptions() {
    return MESSAGE_OPTIONS_s;
}

}  // namespace zorvane::pubsub
