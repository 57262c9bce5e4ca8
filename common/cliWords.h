// Fixed words of the command line, shared by the option parser, the help and
// the configuration records, so that a word is spelled in one place only.
// Plain constants; no state, safe from any thread.
#pragma once

namespace zorvane::pubsub {

// Root of client names when "-cn=" gives none.
inline constexpr char DEF_CLIENT[] = "perf_client";

// What a client does with a received message ("-cm=").
inline constexpr char CLIENT_MODE_SINK[] = "sink";
inline constexpr char CLIENT_MODE_REFLECT[] = "reflect";
inline constexpr char CLIENT_MODE_REPLY[] = "reply";

// Message types ("-mt=").
inline constexpr char MSG_TYPE_DIRECT[] = "direct";
inline constexpr char MSG_TYPE_NON_PERSISTENT[] = "nonpersistent";
inline constexpr char MSG_TYPE_PERSISTENT[] = "persistent";

// Whether the publish rate is an average or a ceiling ("-mrt=").
inline constexpr char MSG_RATE_TARGET_AVG[] = "avg";
inline constexpr char MSG_RATE_TARGET_MAX[] = "max";

// Acknowledgement event modes of guaranteed publishing ("-aem=").
inline constexpr char AD_ACK_EVENT_MODE_PER_MESSAGE[] = "per-message";
inline constexpr char AD_ACK_EVENT_MODE_WINDOWED[] = "windowed";

// Authentication schemes ("-as=").
inline constexpr char AUTHENTICATION_SCHEME_BASIC[] = "basic";
inline constexpr char AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE[] = "client-certificate";
inline constexpr char AUTHENTICATION_SCHEME_TLS_PSK[] = "tls-psk";
inline constexpr char AUTHENTICATION_SCHEME_GSS_KRB[] = "kerberos";
inline constexpr char AUTHENTICATION_SCHEME_OAUTH2[] = "oauth2";

// What a cache request does with live data that arrives meanwhile ("-chld=").
inline constexpr char CACHE_LIVE_DATA_ACTION_QUEUE[] = "QUEUE";
inline constexpr char CACHE_LIVE_DATA_ACTION_FULFILL[] = "FULFILL";
inline constexpr char CACHE_LIVE_DATA_ACTION_FLOW_THRU[] = "FLOW_THRU";

// Separator of the entries of a list value.
inline constexpr char SUBSCRIPTION_SEP[] = ",";

}  // namespace zorvane::pubsub
