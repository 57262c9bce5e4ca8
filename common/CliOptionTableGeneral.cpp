// Option rows, last part: randomization, queue browsing, tool specific and
// general options, and help, in matching order.
#include "common/CliOptionHandlers.h"
#include "common/CliProperties.h"

namespace zorvane::pubsub {

namespace {

using P = CliProperties;
using G = CliHelpGroup;
using H = CliOptionHandlers;
constexpr CliHelpTools TOOL_NAMES = CliHelpTools::VEX_LOAD_OR_QUAD_MIX;

constexpr CliStrictFaults SEED_FAULTS_s = {
    "ERROR: Error parsing RSEED value.  Number out of range of 64 bit int",
    "ERROR: Error parsing RSEED value.  errno = ",
    " in  RSEED: ",
};

constexpr CliOption GENERAL_OPTIONS_s[] = {
    flagOpt("-rmo", P::RANDOMIZATION_MESSAGE_ORDER_FLAG)
        .help(G::LONG_RANDOM, 3, "-rmo",
              "Set this flag to enable the publishing of messages in\n"
              "random order.  Probability weights (CPW) count only with it"),
    number64Opt("-rseed=", P::RANDOMIZATION_SEED)
        .strict(&SEED_FAULTS_s)
        .help(G::LONG_RANDOM, 1, "-rseed=number",
              "Seed of the random generators; 0 (default) seeds from the\n"
              "clock"),
    customOpt("-rjit=", &H::attachJitter)
        .help(G::LONG_RANDOM, 2, "-rjit=number",
              "Percentage (0..100) by which to vary attachment sizes at\n"
              "random"),
    flagOpt("-rmac", P::RANDOMIZATION_MESSAGE_ATTACHMENT_CONTENTS)
        .help(G::LONG_RANDOM, 4, "-rmac",
              "Random attachment contents instead of counting patterns"),
    flagOpt("-qb", P::WANT_QUEUE_BROWSER)
        .help(G::LONG_SUBSCRIBE, 13, "-qb", "Browse the queues of -sql instead of consuming"),
    customOpt("-qbd=", &H::queueBrowserDelete)
        .help(G::LONG_SUBSCRIBE, 14, "-qbd=F[,B]",
              "Browser deletes every Fth message, with a buffer of B\n"
              "messages"),
    intOpt("-rc=", P::RETRY_COUNT)
        .help(G::LONG_TOOL, 2, "-rc=number",
              "Times the API retries a failed connection (default 3)"),
    intOpt("-rrw=", P::RECONNECT_INTERVAL)
        .help(G::LONG_TOOL, 3, "-rrw=number", "Ms between reconnect tries (default 3000)"),
    textOpt("-rfa=", P::RECONNECT_FAIL_ACTION)
        .help(G::LONG_TOOL, 4, "-rfa=action",
              "What to do when guaranteed delivery cannot be restored after\n"
              "a reconnect: AUTO_RETRY or DISCONNECT"),
    intOpt("-srb=", P::SOCKET_RCV_BUF_SIZE)
        .help(G::LONG_TOOL, 5, "-srb=number",
              "Socket receive buffer size; 0 leaves it to the system"),
    intOpt("-ssb=", P::SOCKET_SND_BUF_SIZE)
        .help(G::LONG_TOOL, 6, "-ssb=number", "Socket send buffer size; 0 leaves it to the system"),
    intOpt("-sbs=", P::SESSION_BUF_SIZE)
        .help(G::LONG_TOOL, 7, "-sbs=number", "Session buffer size"),
    intOpt("-dbq=", P::GLOBAL_DBQUANTA0_SIZE)
        .help(G::LONG_TOOL, 8, "-dbq=number", "Smallest data block size of the API"),
    intOpt("-bwt=", P::BLOCK_WRITE_TIMEOUT)
        .help(G::LONG_TOOL, 9, "-bwt=number", "Blocking write timeout in ms"),
    intOpt("-ka=", P::KEEP_ALIVE_INT_MS)
        .help(G::SHORT_TOOL, 1, "-ka=number", "Keepalive interval in ms (default -1)", TOOL_NAMES),
    intOpt("-kal=", P::KEEP_ALIVE_LIMIT)
        .help(G::SHORT_TOOL, 2, "-kal=number", "Keepalive limit (default 10)", TOOL_NAMES),
    intOpt("-z=", P::COMPRESSION_LEVEL)
        .help(G::SHORT_TOOL, 3, "-z=number", "Compression level (1..9)", TOOL_NAMES),
    intOpt("-pz=", P::PAYLOAD_COMPRESSION_LEVEL)
        .help(G::SHORT_TOOL, 4, "-pz=number", "Payload compression level (1..9)", TOOL_NAMES),
    intOpt("-cdr=", P::CHURN_DISCONNECT_RATE)
        .help(G::LONG_CLIENT, 9, "-cdr=number", "Client churn disconnect rate"),
    intOpt("-cdi=", P::CHURN_DISCONNECT_INTERVAL)
        .help(G::LONG_CLIENT, 10, "-cdi=number", "Client churn disconnect interval"),
    customOpt("-epl=", &H::extraProps)
        .help(G::SHORT_TOOL, 5, "-epl=list",
              "Extra properties as key,value pairs passed to the API as\n"
              "they are, e.g. -epl=SESSION_MAX_FLOWS,501",
              TOOL_NAMES),
    listOpt("-jdfl=", P::JSON_DOC_FILE_LIST),
    flagOpt("-d", P::WANT_VERBOSE).help(G::LONG_DEBUG, 1, "-d", "Print debug information"),
    number64Opt("-dki=", P::WANT_KERNEL_INTERRUPTS_DEBUG)
        .help(G::LONG_DEBUG, 2, "-dki=number",
              "Spin this many loops and report their latency instead of a\n"
              "run"),
    textOpt("-log=", P::LOG_LEVEL)
        .help(G::SHORT_GENERAL_PARAMS, 1, "-log=level",
              "Log level: debug, info, notice, warning, error or critical"),
    textOpt("-logf=", P::LOG_FILE)
        .help(G::SHORT_GENERAL_PARAMS, 2, "-logf=file", "Write the logs to this file"),
    prefixFlagOpt("-stat", P::WANT_API_STATS)
        .help(G::SHORT_GENERAL_PARAMS, 3, "-stat", "Print all API stats at the end"),
    checkedOpt("-alm=", P::SIGALRM_INTERVAL_IN_US, 0, CLI_NO_MAX,
               "ERROR: Invalid value for alarm interval, (0..) is valid: ")
        .help(G::LONG_GENERAL_PARAMS, 1, "-alm=number",
              "Interval of the alarm signal in microseconds; 0 is off"),
    flagOpt("-afs", P::WANT_SIGALRM_SESSION_ACTION)
        .help(G::LONG_GENERAL_PARAMS, 2, "-afs", "Drop a session on each alarm signal"),
    intOpt("-tac=", P::CONTEXT_AFFINITY_MASK)
        .help(G::LONG_GENERAL_PARAMS, 3, "-tac=mask", "CPU affinity mask of the context thread"),
    intOpt("-tap=", P::PUBTHREAD_AFFINITY_MASK)
        .help(G::LONG_GENERAL_PARAMS, 4, "-tap=mask", "CPU affinity mask of publisher threads"),
    intOpt("-tam=", P::SMOOTHTHREAD_AFFINITY_MASK)
        .help(G::LONG_GENERAL_PARAMS, 5, "-tam=mask",
              "CPU affinity mask of the smooth feeder thread"),
    prefixFlagOpt("-tdc", P::WANT_TRACE_DECODE_CHECK)
        .help(G::LONG_TRACE, 1, "-tdc", "Trace decode properties on published messages"),
    prefixFlagOpt("-cct", P::WANT_CONTEXT_CREATE_THREAD)
        .help(G::LONG_GENERAL_PARAMS, 6, "-cct", "The API creates the context thread"),
    textOpt("-ctal=", P::CONTEXT_THREAD_AFFINITY_LIST)
        .help(G::LONG_GENERAL_PARAMS, 7, "-ctal=list", "CPU list of the API's context thread"),
    // Only noted here: the entry point prints the version once the whole
    // line has been read and checked.
    flagOpt("-v", P::PRINT_VERSION_AND_EXIT)
        .help(G::SHORT_GENERAL_FLAGS, 2, "-v", "Show the version and stop"),
    flagOpt("-q", P::WANT_QUIET).help(G::LONG_GENERAL_FLAGS, 2, "-q", "Quiet mode"),
    flagOpt("-h", nullptr)
        .noTwin()
        .then(&H::shortHelp)
        .help(G::SHORT_GENERAL_FLAGS, 3, "-h", "Show this help"),
    flagOpt("-?", nullptr)
        .noTwin()
        .then(&H::shortHelp)
        .help(G::SHORT_GENERAL_FLAGS, 4, "-?", "Show this help"),
    flagOpt("-hm", nullptr)
        .noTwin()
        .then(&H::moreHelp)
        .help(G::SHORT_GENERAL_FLAGS, 5, "-hm", "Show more help: the advanced options"),
    flagOpt("-he", nullptr)
        .noTwin()
        .then(&H::exampleHelp)
        .help(G::SHORT_GENERAL_FLAGS, 6, "-he", "Show examples of whole command lines"),
};

}  // namespace

std::span<const CliOption> cliGeneralOptions() {
    return GENERAL_OPTIONS_s;
}

}  // namespace zorvane::pubsub
