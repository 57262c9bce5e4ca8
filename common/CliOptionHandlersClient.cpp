// Handlers of client-control options.
#include "common/CliFault.h"
#include "common/CliOptionHandlers.h"
#include "common/CliProperties.h"

namespace zorvane::pubsub {

void CliOptionHandlers::usernameVpn(CliOptionCall& call) {
    call.props.parseUsernameVpn(call.value.c_str(), CliProperties::CLIENT_USERNAME,
                                CliProperties::CLIENT_VPN);
}

void CliOptionHandlers::dtoPriority(CliOptionCall& call) {
    call.props.parseDTOPriority(call.value.c_str());
}

void CliOptionHandlers::refuseNoPublishThread(CliOptionCall& call) {
    // The messages of a client are divided among its publish threads.
    if (call.props.getIntegerProperty(CliProperties::NUM_PUBS_PER_SESSION) == 0) {
        cliFault(
            "ERROR: Invalid # publish threads for -cpt, at least 1 is needed to share the "
            "messages: ",
            "0");
    }
}

}  // namespace zorvane::pubsub
