#include "common/DisplayUtils.h"

#include <gtest/gtest.h>

#include <string>

#include "common/CliProperties.h"
#include "common/ClientProperties.h"

namespace zorvane::pubsub {
namespace {

ClientProperties makeProps(const std::string& prefix, const std::string& user,
                           const std::string& vpn, const std::string& scheme = "") {
    CliProperties cli(CliProperties::VEX_LOAD, "1.0.0");
    cli.setStringProperty(CliProperties::CLIENT_NAME_PREFIX, prefix);
    cli.setStringProperty(CliProperties::CLIENT_USERNAME, user);
    cli.setStringProperty(CliProperties::CLIENT_VPN, vpn);
    cli.setStringProperty(CliProperties::AUTHENTICATION_SCHEME, scheme);
    return ClientProperties(cli);
}

TEST(DisplayUtilsClientNameDetails, PrefixUserAndVpnShowClientOne) {
    EXPECT_EQ(DisplayUtils::clientNameDetails(makeProps("abc", "me", "vpn1")),
              "Client naming used:\n"
              "\tlogging ID   = abc000001\n"
              "\tusername     = me\n"
              "\tvpn          = vpn1\n"
              "\tclient names = abc000001\n");
}

TEST(DisplayUtilsClientNameDetails, NothingConfiguredLeavesNamesToTheLibrary) {
    EXPECT_EQ(DisplayUtils::clientNameDetails(makeProps("", "", "")),
              "Client naming used:\n"
              "\tlogging ID   = 000001\n"
              "\tusername     = perf_client000001\n"
              "\tvpn          = \n"
              "\tclient names = sdk generated.\n");
}

// The user name line of the block for client 1.
std::string userLine(const std::string& user, const std::string& scheme) {
    const std::string block = DisplayUtils::clientNameDetails(makeProps("abc", user, "v", scheme));
    const size_t start = block.find("\tusername");
    return block.substr(start, block.find('\n', start) - start);
}

TEST(DisplayUtilsClientNameDetails, CredentialSchemesWithoutUserLetTheRouterName) {
    for (const char* scheme : {"client-certificate", "kerberos"}) {
        EXPECT_EQ(userLine("", scheme), "\tusername     = router generated.") << scheme;
        EXPECT_EQ(userLine("me", scheme), "\tusername     = me") << scheme;
    }
    for (const char* scheme : {"basic", "oauth2", "tls-psk"}) {
        EXPECT_EQ(userLine("", scheme), "\tusername     = abc000001") << scheme;
    }
}

}  // namespace
}  // namespace zorvane::pubsub
