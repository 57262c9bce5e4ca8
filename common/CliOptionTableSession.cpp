// Option rows, sixth part: assured delivery, cache and authentication, in
// matching order.
#include "common/CliOptionHandlers.h"
#include "common/CliProperties.h"

namespace zorvane::pubsub {

namespace {

using P = CliProperties;
using G = CliHelpGroup;
using H = CliOptionHandlers;

constexpr const char* AUTH_SCHEME_WORDS_s[] = {
    AUTHENTICATION_SCHEME_BASIC,   AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE,
    AUTHENTICATION_SCHEME_TLS_PSK, AUTHENTICATION_SCHEME_GSS_KRB,
    AUTHENTICATION_SCHEME_OAUTH2,  nullptr};

constexpr CliOption SESSION_OPTIONS_s[] = {
    checkedOpt("-apw=", P::AD_PUB_WINDOW_SIZE, 1, 255,
               "ERROR: Invalid value for AD pub window, (1..255) is valid: ")
        .help(G::LONG_AD, 1, "-apw=number", "Publisher ack window size (1..255)"),
    checkedOpt("-apa=", P::AD_PUB_ACK_TIMEOUT, 0, 5000,
               "ERROR: Invalid value for AD pub ack time, (0..5000) is valid: ")
        .help(G::LONG_AD, 2, "-apa=number", "Publisher ack timeout in ms (0..5000)"),
    checkedOpt("-asw=", P::AD_SUB_WINDOW_SIZE, 1, 255,
               "ERROR: Invalid value for AD sub window, (1..255) is valid: ")
        .help(G::LONG_AD, 3, "-asw=number", "Subscriber ack window size (1..255)"),
    checkedOpt("-asa=", P::AD_SUB_ACK_TIMEOUT, 0, 1500,
               "ERROR: Invalid value for AD sub ack time, (0..1500) is valid: ")
        .help(G::LONG_AD, 4, "-asa=number", "Subscriber ack timeout in ms (0..1500)"),
    checkedOpt("-awt=", P::AD_SUB_WINDOW_THRESHOLD, 1, 75,
               "ERROR: Invalid value for AD windown threshold, (1..75) is valid: ")
        .help(G::LONG_AD, 5, "-awt=number", "Subscriber ack window threshold in percent (1..75)"),
    checkedOpt("-amr=", P::AD_PUB_MAX_RESEND, 0, CLI_NO_MAX,
               "ERROR: Invalid value for AD max resend, (0..) is valid: ")
        .help(G::LONG_AD, 6, "-amr=number", "Maximum resends of a guaranteed message"),
    checkedOpt("-ats=", P::AD_TRANSACTION_SIZE, 0, CLI_NO_MAX,
               "ERROR: Invalid value for AD Transaction size: ")
        .help(G::LONG_AD, 7, "-ats=number", "Messages per transaction; 0 is off (default)"),
    checkedOpt("-atri=", P::AD_TRANSACTION_ROLLBACK_INTERVAL, 0, CLI_NO_MAX,
               "ERROR: Invalid value for AD Transaction rollback interval: ")
        .help(G::LONG_AD, 9, "-atri=number",
              "Roll back instead of commit every this many transactions"),
    checkedOpt("-att=", P::AD_TRANSACTION_IDLE_TIME, 0, CLI_NO_MAX,
               "ERROR: Invalid value for AD Transaction idle time: ")
        .help(G::LONG_AD, 10, "-att=number",
              "Ms after which a partial transaction commits; 0 is off"),
    flagOpt("-atr", P::AD_TRANSACTION_ROLLBACK_INTERVAL)
        .help(G::LONG_AD, 8, "-atr", "Roll back every transaction"),
    flagOpt("-afi", P::WANT_ACTIVE_FLOW_INDICATION)
        .help(G::LONG_AD, 11, "-afi", "Active flow indication on each flow"),
    textOpt("-chpn=", P::CACHE_PROP_NAME)
        .help(G::LONG_CACHE, 1, "-chpn=string",
              "Cache name; with it the clients create a cache session"),
    checkedOpt("-chpm=", P::CACHE_PROP_MAX_MSGS_PER_TOPIC, 0, CLI_NO_MAX,
               "ERROR: Invalid value for cache max msgs per topic, (0..) is valid: ")
        .help(G::LONG_CACHE, 2, "-chpm=number", "Maximum messages per topic"),
    checkedOpt("-chpa=", P::CACHE_PROP_MAX_AGE, 0, CLI_NO_MAX,
               "ERROR: Invalid value for max age, (0..) is valid: ")
        .help(G::LONG_CACHE, 3, "-chpa=number", "Maximum age in seconds"),
    checkedOpt("-chpt=", P::CACHE_PROP_TIMEOUT_IN_MSEC, 0, CLI_NO_MAX,
               "ERROR: Invalid value for cache timeout, (0..) is valid: ")
        .help(G::LONG_CACHE, 4, "-chpt=number", "Cache request timeout in ms"),
    flagOpt("-chrs", P::CACHE_WANT_REQUESTS_ON_SUBSCRIBE)
        .help(G::LONG_CACHE, 5, "-chrs", "Send a cache request on every subscribe"),
    doubleOpt("-chrr=", P::CACHE_REQ_MSG_RATE)
        .help(G::LONG_CACHE, 6, "-chrr=number", "Cache requests per second (default 1)"),
    number64Opt("-chrn=", P::CACHE_NUM_REQ)
        .range(0, CLI_NO_MAX, "ERROR: Invalid # msgs to publish, (0..) is valid: ")
        .help(G::LONG_CACHE, 7, "-chrn=number", "Number of cache requests"),
    customOpt("-chrt=", &H::minMaxTopicSeq)
        .help(G::LONG_CACHE, 8, "-chrt=begin:end", "Topic sequence range of a cache request"),
    textOpt("-chld=", P::CACHE_LIVE_DATA_ACTION)
        .help(G::LONG_CACHE, 9, "-chld=action",
              "Live data action of cache requests: {CACHE_LIVE_DATA_ACTION_QUEUE}, "
              "{CACHE_LIVE_DATA_ACTION_FULFILL} or\n"
              "{CACHE_LIVE_DATA_ACTION_FLOW_THRU}"),
    textOpt("-sslp=", P::SSL_PROTOCOL)
        .help(G::LONG_SSL, 2, "-sslp=list", "SSL protocols to use (deprecated)"),
    textOpt("-sslep=", P::SSL_EXCLUDED_PROTOCOLS)
        .help(G::LONG_SSL, 3, "-sslep=list", "SSL protocols to exclude (deprecated)"),
    textOpt("-sslmin=", P::SSL_MIN_PROTOCOL_VERSION)
        .help(G::LONG_SSL, 4, "-sslmin=string", "Minimum SSL protocol version"),
    textOpt("-sslmax=", P::SSL_MAX_PROTOCOL_VERSION)
        .help(G::LONG_SSL, 5, "-sslmax=string", "Maximum SSL protocol version"),
    flagOpt("-sslvc", P::SSL_VALIDATE_CERTIFICATE)
        .help(G::LONG_SSL, 6, "-sslvc", "Validate the server certificate"),
    flagOpt("-sslvcd", P::SSL_VALIDATE_CERTIFICATE_DATE)
        .help(G::LONG_SSL, 7, "-sslvcd", "Validate the certificate date"),
    flagOpt("-sslvch", P::SSL_VALIDATE_CERTIFICATE_HOSTNAME)
        .help(G::LONG_SSL, 8, "-sslvch", "Validate the certificate host name"),
    textOpt("-sslcs=", P::SSL_CIPHER_SUITES)
        .help(G::LONG_SSL, 9, "-sslcs=list", "SSL cipher suites"),
    textOpt("-ssltsd=", P::SSL_TRUST_STORE_DIR)
        .help(G::LONG_SSL, 10, "-ssltsd=dir", "SSL trust store directory"),
    textOpt("-ssltcn=", P::SSL_TRUSTED_COMMON_NAME_LIST)
        .help(G::LONG_SSL, 11, "-ssltcn=list", "Trusted common names"),
    textOpt("-sslcf=", P::SSL_CLIENT_CERTIFICATE_FILE)
        .help(G::LONG_SSL, 12, "-sslcf=file", "Client certificate file"),
    textOpt("-sslpk=", P::SSL_CLIENT_PRIVATE_KEY_FILE)
        .help(G::LONG_SSL, 13, "-sslpk=file", "Client private key file"),
    textOpt("-sslpkp=", P::SSL_CLIENT_PRIVATE_KEY_FILE_PASSWORD)
        .help(G::LONG_SSL, 14, "-sslpkp=string", "Password of the client private key file"),
    textOpt("-sslcd=", P::SSL_CONNECTION_DOWNGRADE_TO)
        .help(G::LONG_SSL, 15, "-sslcd=string",
              "Downgrade the connection after authentication; accepted\n"
              "value PLAIN_TEXT"),
    textOpt("-as=", P::AUTHENTICATION_SCHEME)
        .choice(AUTH_SCHEME_WORDS_s, "ERROR: Invalid authentication scheme: ",
                ".  See help for valid authentication schemes. ")
        .help(G::LONG_SSL, 1, "-as=string",
              "Authentication scheme: {AUTHENTICATION_SCHEME_BASIC}, "
              "{AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE},\n"
              "{AUTHENTICATION_SCHEME_TLS_PSK}, {AUTHENTICATION_SCHEME_GSS_KRB} or "
              "{AUTHENTICATION_SCHEME_OAUTH2}"),
    textOpt("-gkl=", P::GLOBAL_GSS_KRB_LIB)
        .help(G::LONG_SSL, 16, "-gkl=path", "Path of the GSS Kerberos library"),
    textOpt("-gsl=", P::GLOBAL_SSL_LIB)
        .help(G::LONG_SSL, 17, "-gsl=path", "Path of the SSL library"),
    textOpt("-gcl=", P::GLOBAL_CRYPTO_LIB)
        .help(G::LONG_SSL, 18, "-gcl=path", "Path of the crypto library"),
    textOpt("-oaat=", P::OAUTH_ACCESS_TOKEN)
        .help(G::LONG_SSL, 19, "-oaat=string", "OAuth access token"),
    textOpt("-oaii=", P::OAUTH_ISSUER_ID)
        .help(G::LONG_SSL, 20, "-oaii=string", "OAuth issuer identifier"),
    textOpt("-oidt=", P::OIDC_ID_TOKEN).help(G::LONG_SSL, 21, "-oidt=string", "OIDC id token"),
};

}  // namespace

std::span<const CliOption> cliSessionOptions() {
    return SESSION_OPTIONS_s;
}

}  // namespace zorvane::pubsub
