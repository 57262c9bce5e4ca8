#include "common/DisplayUtils.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <string>

#include "common/CliProperties.h"
#include "common/ClientProperties.h"
#include "common/CommonUtils.h"

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

TEST(DisplayUtilsPoolStats, EveryStatisticOnItsLineWithSixAllocatedPools) {
    static UINT64 base_s = 100;
    CommonUtils::setPoolStatReader([](CommonUtils::PoolStat stat, int index, UINT64* value_p) {
        if (stat == CommonUtils::POOL_STAT_MSG_DUPS) {
            return false;  // shown as 0
        }
        *value_p = base_s + static_cast<UINT64>(stat) * 10 + static_cast<UINT64>(index);
        return true;
    });
    std::string text = DisplayUtils::displayPoolStats("End of test msg pool stats:");
    CommonUtils::setPoolStatReader(nullptr);

    EXPECT_EQ(text.rfind("End of test msg pool stats:\n\tTOTAL_MEMORY     : 100\n", 0), 0U) << text;
    EXPECT_NE(text.find("\tMSG_DUPS         : 0\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\tALLOC_CONTAINERS : 190\n"), std::string::npos) << text;
    EXPECT_NE(text.find("\tPool 4 : FREE_DATA_BLOCKS  : 204\n"), std::string::npos) << text;
    EXPECT_EQ(text.find("\tPool 5 : FREE_DATA_BLOCKS"), std::string::npos) << text;
    EXPECT_NE(text.find("\tPool 5 : ALLOC_DATA_BLOCKS : 215\n"), std::string::npos) << text;
    EXPECT_EQ(std::count(text.begin(), text.end(), '\n'), 1 + 10 + 5 + 6);
}

}  // namespace zorvane::pubsub
