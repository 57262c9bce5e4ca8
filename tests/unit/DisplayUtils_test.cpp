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

TEST(DisplayUtilsClientNameDetails, CredentialSchemesWithoutUserLetTheRouterName) {
    const std::string routerLine = "\tusername     = router generated.\n";
    for (const char* scheme : {"client-certificate", "kerberos"}) {
        EXPECT_NE(
            DisplayUtils::clientNameDetails(makeProps("abc", "", "v", scheme)).find(routerLine),
            std::string::npos)
            << scheme;
        // A configured user name is shown even with those schemes.
        EXPECT_NE(DisplayUtils::clientNameDetails(makeProps("abc", "me", "v", scheme))
                      .find("\tusername     = me\n"),
                  std::string::npos)
            << scheme;
    }
    for (const char* scheme : {"basic", "oauth2", "tls-psk"}) {
        EXPECT_NE(DisplayUtils::clientNameDetails(makeProps("abc", "", "v", scheme))
                      .find("\tusername     = abc000001\n"),
                  std::string::npos)
            << scheme;
    }
}

}  // namespace
}  // namespace zorvane::pubsub
