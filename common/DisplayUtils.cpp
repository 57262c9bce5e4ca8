#include "common/DisplayUtils.h"

#include <sstream>

#include "common/ClientProperties.h"
#include "common/cliWords.h"

namespace zorvane::pubsub {

std::string DisplayUtils::clientNameDetails(const ClientProperties& props) {
    // Client ids start at 1, so client 1 is the example every run can show.
    constexpr INT32 firstClientId = 1;

    // With a certificate or a Kerberos ticket and no user name configured,
    // the broker takes the name from the credentials; the tool cannot know
    // it in advance.
    const std::string& scheme = props.getAuthenticationScheme();
    const bool routerNamesUser =
        props.getClientUsername().empty() && (scheme == AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE ||
                                              scheme == AUTHENTICATION_SCHEME_GSS_KRB);

    std::ostringstream out;
    out << "Client naming used:\n";
    out << "\tlogging ID   = " << props.generateClientIdStr(firstClientId) << "\n";
    out << "\tusername     = "
        << (routerNamesUser ? std::string("router generated.")
                            : props.generateClientUsername(firstClientId))
        << "\n";
    out << "\tvpn          = " << props.getClientVpn() << "\n";
    // Without a prefix the session does not pass a client name at all and
    // the messaging library makes one up.
    out << "\tclient names = "
        << (props.getClientPrefix().empty() ? std::string("sdk generated.")
                                            : props.generateClientName(firstClientId))
        << "\n";
    return out.str();
}

}  // namespace zorvane::pubsub
