// Option rows, first part: client control, in matching order.
#include "common/CliOptionHandlers.h"
#include "common/CliProperties.h"

namespace zorvane::pubsub {

namespace {

using P = CliProperties;
using G = CliHelpGroup;
using H = CliOptionHandlers;
constexpr CliHelpTools VEX_ONLY = CliHelpTools::VEX_LOAD_ONLY;

constexpr const char* CLIENT_MODE_WORDS_s[] = {CLIENT_MODE_SINK, CLIENT_MODE_REFLECT,
                                               CLIENT_MODE_REPLY, nullptr};

constexpr CliOption CLIENT_OPTIONS_s[] = {
    textOpt("-cip=", P::CLIENT_IP_ADDR)
        .help(G::SHORT_CLIENT, 1, "-cip=ip[:port]",
              "IP address of the appliance, with an optional port.  A list\n"
              "of addresses or a scheme prefix such as tcps:// is passed on\n"
              "as it stands."),
    // Every list spread over clients divides by this count, so it must be
    // at least 1.
    checkedOpt("-cc=", P::NUM_CLIENTS, 1, CLI_NO_MAX,
               "ERROR: Invalid # of clients, (1..) is valid: ")
        .help(G::LONG_CLIENT, 1, "-cc=number", "Number of client connections (default 1)"),
    customOpt("-cu=", &H::usernameVpn)
        .help(G::SHORT_CLIENT, 2, "-cu=user[@vpn]",
              "Client username and optionally the message VPN to join.\n"
              "Without it the client name is used, e.g. {DEF_CLIENT}0001."),
    textOpt("-cn=", P::CLIENT_NAME_PREFIX)
        .help(G::SHORT_CLIENT, 3, "-cn=string",
              "Root of the client names; a number is added for each client,\n"
              "e.g. -cn={DEF_CLIENT} gives {DEF_CLIENT}0001, {DEF_CLIENT}0002, ...\n"
              "Without it the API generates the client names."),
    textOpt("-cp=", P::CLIENT_PASSWORD).help(G::LONG_CLIENT, 2, "-cp=string", "Client password"),
    textOpt("-cpf=", P::CLIENT_PASSWORD_FILE)
        .help(G::LONG_CLIENT, 3, "-cpf=file",
              "File to read the client password from; used only without -cp"),
    customOpt("-cdp=", &H::dtoPriority)
        .help(G::LONG_CLIENT, 4, "-cdp=L[:N]",
              "Deliver-to-one local priority L and network priority N (1..4)"),
    prefixFlagOpt("-ccn", P::CHANGE_CLIENT_NAMES_FLAG)
        .help(G::LONG_CLIENT, 5, "-ccn",
              "Change the client names after the connect instead of setting\n"
              "them on connect"),
    textOpt("-cm=", P::CLIENT_MODE)
        .choice(CLIENT_MODE_WORDS_s,
                "ERROR: client mode not understood. Entered: ", ".  See help for valid values. ")
        .help(G::LONG_CLIENT, 6, "-cm=mode",
              "What clients do with received messages: {CLIENT_MODE_SINK} (default),\n"
              "{CLIENT_MODE_REFLECT} (publish each one again on the publish topics) or\n"
              "{CLIENT_MODE_REPLY} (answer each request)"),
    prefixFlagOpt("-cpc", P::WANT_CONTEXT_PER_CLIENT)
        .help(G::LONG_CLIENT, 12, "-cpc", "One context (and context thread) per client", VEX_ONLY),
    checkedOpt("-ccpc=", P::NUM_CLIENTS_PER_CONTEXT, 1, CLI_NO_MAX,
               "ERROR: Invalid # of clients per context, (1..) is valid: ")
        .help(G::LONG_CLIENT, 16, "-ccpc=number",
              "Most clients in one context.  Default is all clients in one"),
    // 0 passes the range, but the messages are divided among the publish
    // threads, so the handler refuses it.
    checkedOpt("-cpt=", P::NUM_PUBS_PER_SESSION, 0, CLI_NO_MAX,
               "ERROR: Invalid # publish threads, (0..) is valid: ")
        .then(&H::refuseNoPublishThread)
        .help(G::LONG_CLIENT, 13, "-cpt=number", "Publish threads per client (default 1)",
              VEX_ONLY),
    prefixFlagOpt("-cmd", P::WANT_DISPATCH_SESSION)
        .help(G::LONG_CLIENT, 7, "-cmd", "Use message dispatch on the clients"),
    prefixFlagOpt("-cnbc", P::WANT_NON_BLOCKING_CONNECT)
        .help(G::LONG_CLIENT, 8, "-cnbc", "Connect the clients without blocking"),
    prefixFlagOpt("-cnl", P::WANT_NO_LOCAL)
        .help(G::LONG_CLIENT, 17, "-cnl",
              "No-local on the session and all endpoints: a client does not\n"
              "receive what it published itself"),
    textOpt("-ctp=", P::TRANSPORT_PROTOCOL)
        .help(G::LONG_CLIENT, 18, "-ctp=string",
              "Transport protocol.  Default leaves it to the API"),
    textOpt("-cwtpl=", P::WEB_TRANSPORT_PROTOCOL_LIST)
        .help(G::LONG_CLIENT, 19, "-cwtpl=list",
              "Web transport protocol list.  Default leaves it to the API"),
    textOpt("-ctpdt=", P::TRANSPORT_PROTOCOL_DOWNGRADE_TIMEOUT_MS)
        .help(G::LONG_CLIENT, 20, "-ctpdt=ms", "Transport protocol downgrade timeout in ms"),
    textOpt("-bip=", P::SESSION_BIND_IP)
        .help(G::LONG_CLIENT, 11, "-bip=ip[:port]",
              "Local address to bind to, for multihomed machines"),
    prefixFlagOpt("-crr", P::WANT_REPLICATION_RECONNECT)
        .also(P::WANT_NON_BLOCKING_CONNECT)
        .help(G::LONG_CLIENT, 14, "-crr",
              "Reconnect after a replication switchover and publish again\n"
              "from the first unacknowledged message.  Implies -cnbc",
              VEX_ONLY),
    prefixFlagOpt("-ctt", P::WANT_CLIENT_TASK_THREAD)
        .help(G::LONG_CLIENT, 15, "-ctt", "A thread per client for background client tasks",
              VEX_ONLY),
};

}  // namespace

std::span<const CliOption> cliClientOptions() {
    return CLIENT_OPTIONS_s;
}

}  // namespace zorvane::pubsub
