#include "embedded/EmbeddedCapabilities.h"

#include "zorClient.h"

namespace zorvane::zorclient {

namespace {

struct Capability {
    std::string_view name;
    bool offered;
};

// The endpoint, transaction, replay and cache work turn their entries on as the broker gains
// the feature; until then an application must not be told it can rely on it. Direct messaging
// brings no-local delivery and per-topic sequence numbers.
constexpr Capability CAPABILITIES[] = {
    {ZORCLIENT_SESSION_CAPABILITY_PUB_GUARANTEED, false},
    {ZORCLIENT_SESSION_CAPABILITY_SUB_FLOW_GUARANTEED, false},
    {ZORCLIENT_SESSION_CAPABILITY_TEMP_ENDPOINT, false},
    {ZORCLIENT_SESSION_CAPABILITY_JNDI, false},
    {ZORCLIENT_SESSION_CAPABILITY_COMPRESSION, false},
    // No topic-to-flow demultiplexing on the broker side: applications then make no default
    // flow.
    {ZORCLIENT_SESSION_CAPABILITY_SUPPORTS_XPE_SUBSCRIPTIONS, false},
    {ZORCLIENT_SESSION_CAPABILITY_BROWSER, false},
    {ZORCLIENT_SESSION_CAPABILITY_SELECTOR, false},
    {ZORCLIENT_SESSION_CAPABILITY_ENDPOINT_MANAGEMENT, false},
    {ZORCLIENT_SESSION_CAPABILITY_ENDPOINT_MESSAGE_TTL, false},
    {ZORCLIENT_SESSION_CAPABILITY_QUEUE_SUBSCRIPTIONS, false},
    {ZORCLIENT_SESSION_CAPABILITY_SUBSCRIPTION_MANAGER, false},
    {ZORCLIENT_SESSION_CAPABILITY_MESSAGE_ELIDING, false},
    {ZORCLIENT_SESSION_CAPABILITY_NO_LOCAL, true},
    {ZORCLIENT_SESSION_CAPABILITY_ACTIVE_FLOW_INDICATION, false},
    {ZORCLIENT_SESSION_CAPABILITY_PER_TOPIC_SEQUENCE_NUMBERING, true},
    {ZORCLIENT_SESSION_CAPABILITY_ENDPOINT_DISCARD_BEHAVIOR, false},
    {ZORCLIENT_SESSION_CAPABILITY_CUT_THROUGH, false},
    {ZORCLIENT_SESSION_CAPABILITY_TRANSACTED_SESSION, false},
    {ZORCLIENT_SESSION_CAPABILITY_OPENMAMA, false},
    {ZORCLIENT_SESSION_CAPABILITY_MESSAGE_REPLAY, false},
    {ZORCLIENT_SESSION_CAPABILITY_COMPRESSED_SSL, false},
    {ZORCLIENT_SESSION_CAPABILITY_LONG_SELECTORS, false},
    {ZORCLIENT_SESSION_CAPABILITY_SHARED_SUBSCRIPTIONS, false},
};

}  // namespace

int EmbeddedCapabilities::answer(std::string_view name) noexcept {
    for (const Capability& capability : CAPABILITIES) {
        if (capability.name == name) {
            return capability.offered ? 1 : 0;
        }
    }
    return -1;
}

}  // namespace zorvane::zorclient
