// Option rows, fourth part: subscribing, client acknowledgement and endpoint
// provisioning, in matching order.
#include "common/CliOptionHandlers.h"
#include "common/CliProperties.h"

namespace zorvane::pubsub {

namespace {

using P = CliProperties;
using G = CliHelpGroup;
using H = CliOptionHandlers;

constexpr CliOption SUBSCRIBE_OPTIONS_s[] = {
    customOpt("-stl=", &H::holdTopicList)
        .help(G::SHORT_SUBSCRIBE, 3, "-stl=list",
              "List of topics to subscribe to, spread over the clients in\n"
              "turn.  Add <TOPIC_END/>DA=1 to a topic to deliver always"),
    customOpt("-stp=", &H::holdTopicPrefix)
        .help(G::LONG_SUBSCRIBE, 5, "-stp=string",
              "Prefix of generated subscription topics, used with -stc.\n"
              "Ignored with -stl"),
    customOpt("-stc=", &H::holdTopicCount)
        .help(G::LONG_SUBSCRIBE, 6, "-stc=number",
              "Number of generated subscription topics (default 1)"),
    customOpt("-stf=", &H::topicFiles)
        .help(G::LONG_SUBSCRIBE, 3, "-stf=list",
              "List of files of topics, one file per client, each as\n"
              "file or file:count to read at most count lines"),
    customOpt("-sql=", &H::holdQueueList)
        .help(G::SHORT_SUBSCRIBE, 1, "-sql=list",
              "List of queues to receive from, spread over the clients"),
    customOpt("-sqf=", &H::queueFiles)
        .help(G::LONG_SUBSCRIBE, 1, "-sqf=list",
              "List of files of queues, one file per client (file[:count])"),
    customOpt("-sdl=", &H::holdDteList)
        .help(G::SHORT_SUBSCRIBE, 2, "-sdl=list",
              "List of durable topic endpoints, spread over the clients"),
    customOpt("-sdf=", &H::dteFiles)
        .help(G::LONG_SUBSCRIBE, 2, "-sdf=list",
              "List of files of durable topic endpoints, one file per\n"
              "client (file[:count])"),
    intOpt("-tte=", P::NUM_TEMP_TOPIC_ENDPOINTS)
        .also(P::WANT_ADD_SUBSCRIPTIONS)
        .help(G::SHORT_SUBSCRIBE, 5, "-tte=number", "Temporary topic endpoints per client"),
    intOpt("-tqe=", P::NUM_TEMP_QUEUE_ENDPOINTS)
        .also(P::WANT_ADD_SUBSCRIPTIONS)
        .help(G::SHORT_SUBSCRIBE, 6, "-tqe=number", "Temporary queue endpoints per client"),
    intOpt("-sd=", P::SLOW_SUB_DELAY_IN_MS)
        .help(G::LONG_SUBSCRIBE, 7, "-sd=number", "Slow subscriber: delay per message in ms"),
    intOpt("-sdc=", P::SLOW_SUB_DELAY_COUNT)
        .help(G::LONG_SUBSCRIBE, 8, "-sdc=number",
              "Messages to stay slow for; -1 for ever (default)"),
    customOpt("-sri=", &H::subRateInterval)
        .help(G::LONG_SUBSCRIBE, 9, "-sri=number",
              "Subscriber rate interval: -1, or 1 or more (default 1)"),
    customOpt("-soo=", &H::subscriberOrderOffsets)
        .help(G::LONG_SUBSCRIBE, 10, "-soo=offsets",
              "Expected order offsets per subscriber, groups of\n"
              "stream@offset pairs separated by ;, e.g. 1@10,2@10;1@11,2@10.\n"
              "Prints the argument to resume with at exit"),
    flagOpt("-nsr", P::WANT_REMOVE_SUBSCRIBER)
        .stores(0)
        .help(G::SHORT_SUBSCRIBE, 7, "-nsr", "Do not remove subscriptions on exit"),
    flagOpt("-nsm", P::WANT_SUBSCRIPTION_MEMORY)
        .stores(0)
        .help(G::LONG_SUBSCRIBE, 11, "-nsm", "Do not add subscriptions again on reconnect"),
    checkedOpt("-skm=", P::SUB_MSG_QUEUE_DEPTH, 0, CLI_NO_MAX,
               "ERROR: Invalid value for sub keep message, (>= 0) is valid: ")
        .help(G::LONG_SUBSCRIBE, 12, "-skm=number", "Keep this many received messages"),
    flagOpt("-ca", P::WANT_CLIENT_ACK)
        .help(G::LONG_CLIENT_ACK, 1, "-ca", "Client ack for all guaranteed messages"),
    flagOpt("-cat", P::WANT_CLIENT_ACK_THREAD)
        .also(P::WANT_CLIENT_ACK)
        .help(G::LONG_CLIENT_ACK, 7, "-cat", "Do the client acks in a thread of their own"),
    checkedOpt("-cask=", P::CLIENT_ACK_SKIP_NUM, 0, CLI_NO_MAX,
               "ERROR: Invalid value for -cask, (>= 0) is valid: ")
        .also(P::WANT_CLIENT_ACK)
        .help(G::LONG_CLIENT_ACK, 2, "-cask=number", "Skip acking this many messages"),
    checkedOpt("-caq=", P::SUB_MSG_QUEUE_DEPTH, 0, CLI_NO_MAX,
               "ERROR: Invalid value for -caq, (>= 0) is valid: ")
        .also(P::WANT_CLIENT_ACK)
        .help(G::LONG_CLIENT_ACK, 3, "-caq=number", "Size of the queue of messages awaiting ack"),
    flagOpt("-caf", P::WANT_SUB_MSG_QUEUE_FLUSH)
        .also(P::WANT_CLIENT_ACK)
        .help(G::LONG_CLIENT_ACK, 4, "-caf", "When the queue is full, ack all of it"),
    flagOpt("-cafr", P::SUB_MSG_QUEUE_REVERSE)
        .also(P::WANT_CLIENT_ACK)
        .help(G::LONG_CLIENT_ACK, 5, "-cafr", "As -caf, in reverse order"),
    checkedOpt("-car=", P::CLIENT_ACK_RANDOM_DEPTH, 0, CLI_NO_MAX,
               "ERROR: Invalid value for -car, (>= 0) is valid: ")
        .also(P::WANT_CLIENT_ACK)
        .help(G::LONG_CLIENT_ACK, 6, "-car=number",
              "Ack a message picked at random up to this depth"),
    checkedOpt("-carl=", P::CLIENT_ACK_RATE_LIMIT, 1, CLI_NO_MAX,
               "ERROR: Invalid value for -carl, (> 0) is valid: ")
        .also(P::WANT_CLIENT_ACK)
        .then(&H::ackRateLimitDepth)
        .help(G::LONG_CLIENT_ACK, 8, "-carl=number", "Ack at most this many messages per second"),
    textOpt("-sp=", P::SETTLEMENT_PATTERN)
        .also(P::WANT_CLIENT_ACK)
        .help(G::LONG_CLIENT_ACK, 9, "-sp=pattern",
              "Settlement pattern, repeated: letters a (accepted),\n"
              "r (rejected) and f (failed), e.g. -sp=aar"),
    textOpt("-rsp=", P::REQUIRED_SETTLEMENTS)
        .help(G::LONG_CLIENT_ACK, 10, "-rsp=letters",
              "Settlements to enable on each flow, letters a, r, f"),
    customOpt("-ssl=", &H::holdSelectorList)
        .help(G::SHORT_SUBSCRIBE, 4, "-ssl=list",
              "List of selectors on flows, spread over the clients"),
    customOpt("-ssf=", &H::selectorFiles)
        .help(G::LONG_SUBSCRIBE, 4, "-ssf=list", "List of files of selectors, one file per client"),
    flagOpt("-pe", P::WANT_PROVISIONED_ENDPOINT)
        .help(G::LONG_SUBSCRIBE, 15, "-pe", "Provision endpoints and remove them at the end"),
    textOpt("-pep=", P::PE_PERMISSION)
        .also(P::WANT_PROVISIONED_ENDPOINT)
        .help(G::LONG_SUBSCRIBE, 16, "-pep=letter",
              "Permission of provisioned endpoints: n, r, c, m or d"),
    checkedOpt("-pea=", P::PE_ACCESS_TYPE, 0, 1,
               "ERROR: Invalid value for provision endpoint access type, (0,1) is valid: ")
        .also(P::WANT_PROVISIONED_ENDPOINT)
        .help(G::LONG_SUBSCRIBE, 17, "-pea=number", "Access type: 0 non-exclusive, 1 exclusive"),
    textOpt("-peq=", P::PE_QUOTA_MB)
        .also(P::WANT_PROVISIONED_ENDPOINT)
        .help(G::LONG_SUBSCRIBE, 18, "-peq=number", "Quota of provisioned endpoints in MB"),
    checkedOpt("-pem=", P::PE_MAXMSG_SIZE, 1, CLI_NO_MAX,
               "ERROR: Invalid value for provision endpoint max message, (> 0) is valid: ")
        .also(P::WANT_PROVISIONED_ENDPOINT)
        .help(G::LONG_SUBSCRIBE, 19, "-pem=number", "Maximum message size in bytes"),
    checkedOpt("-pemr=", P::PE_MAX_MSG_REDELIVERY, 0, CLI_NO_MAX,
               "ERROR: Invalid value for provision endpoint max message redelivery, (>= 0) is "
               "valid: ")
        .also(P::WANT_PROVISIONED_ENDPOINT)
        .help(G::LONG_SUBSCRIBE, 20, "-pemr=number", "Maximum redeliveries; 0 retries for ever"),
    flagOpt("-per", P::PE_RESPECT_TTL)
        .help(G::LONG_SUBSCRIBE, 21, "-per", "Provisioned endpoints respect time to live"),
    customOpt("-pedn=", &H::discardNotifySender)
        .help(G::LONG_SUBSCRIBE, 22, "-pedn=on|off",
              "Notify senders of messages the endpoint discards"),
    textOpt("-scn=", P::SUBSCRIPTION_CLIENT_NAME)
        .help(G::LONG_SUBSCRIBE, 23, "-scn=string",
              "Add subscriptions on behalf of this client name"),
    flagOpt("-fct", P::WANT_CUT_THROUGH_PERSISTENCE)
        .help(G::LONG_SUBSCRIBE, 24, "-fct", "Cut-through persistence on subscriber flows"),
};

}  // namespace

std::span<const CliOption> cliSubscribeOptions() {
    return SUBSCRIBE_OPTIONS_s;
}

}  // namespace zorvane::pubsub
