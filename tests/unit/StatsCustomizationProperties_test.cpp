#include "common/StatsCustomizationProperties.h"

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/CliProperties.h"
#include "common/PubSubException.h"
#include "tests/unit/CliTestSupport.h"
#include "tests/unit/MessageContentTestSupport.h"

namespace zorvane::pubsub {
namespace {

using test::defaultStore;

using contenttest::tempFile;

TEST(StatsCustomizationPropertiesFromStore, HistogramShapeComesFromPlainStoreFields) {
    const StatsCustomizationProperties stats(defaultStore());
    EXPECT_EQ(stats.getNumLatencyBuckets(), 1024u);
    EXPECT_EQ(stats.getLatencyGranularityFactor(), 11u);
    EXPECT_DOUBLE_EQ(stats.getLatencyWarmupInSec(), 0.5);
}

TEST(StatsCustomizationPropertiesFromStore, OrderCheckKindsAndPriorityKindsStayApart) {
    CliProperties cli = defaultStore();
    cli.setBooleanProperty(CliProperties::WANT_ORDER_CHECK_TOPIC_SEQUENCE_NUMBER, true);
    cli.setBooleanProperty(CliProperties::WANT_PER_PRI_THRU_STATS, true);
    const StatsCustomizationProperties stats(cli);
    EXPECT_TRUE(stats.getWantOrderCheckTopicSequenceNumber());
    EXPECT_FALSE(stats.getWantOrderCheckPublisherStreamNumber());
    EXPECT_TRUE(stats.getWantPerPriorityStats());
    EXPECT_FALSE(stats.getWantPriorityStats());
}

TEST(StatsCustomizationPropertiesFromStore, StructuredMessageCheckFollowsFilesThenFlag) {
    CliProperties cli = defaultStore();
    EXPECT_FALSE(StatsCustomizationProperties(cli).getWantStructMsgCheck());

    // "-sdm" with an empty list: the flag alone asks for the check.
    cli.setBooleanProperty(CliProperties::SDM_AUTO_GEN_FLAG, true);
    StatsCustomizationProperties flagOnly(cli);
    EXPECT_TRUE(flagOnly.getWantStructMsgCheck());
    EXPECT_TRUE(flagOnly.getSdmPropsList().empty());

    // Files win over a false flag, and are read into descriptions with ids
    // from 50 in file order.
    cli.setBooleanProperty(CliProperties::SDM_AUTO_GEN_FLAG, false);
    cli.setVectorProperty(CliProperties::SDM_FILE_LIST,
                          {tempFile("stats_a.sdm", "msg:type=map\n"),
                           tempFile("stats_b.sdm", "msg:useBinaryAttachment=1\n")});
    StatsCustomizationProperties withFiles(cli);
    EXPECT_TRUE(withFiles.getWantStructMsgCheck());
    ASSERT_EQ(withFiles.getSdmPropsList().size(), 2u);
    EXPECT_EQ(withFiles.getSdmPropsList()[0].getSdmId(), 50);
    EXPECT_TRUE(withFiles.getSdmPropsList()[0].isMapMsg());
    EXPECT_EQ(withFiles.getSdmPropsList()[1].getSdmId(), 51);
    EXPECT_TRUE(withFiles.getSdmPropsList()[1].useBinAttach());

    // A faulty or missing description ends the build.
    cli.setVectorProperty(CliProperties::SDM_FILE_LIST, {tempFile("stats_c.sdm", "?\n")});
    EXPECT_THROW(StatsCustomizationProperties bad(cli), PubSubException);
    cli.setVectorProperty(CliProperties::SDM_FILE_LIST, {::testing::TempDir() + "no_such.sdm"});
    EXPECT_THROW(StatsCustomizationProperties bad(cli), PubSubException);
}

TEST(StatsCustomizationPropertiesFromStore, NamingACacheTurnsOnCacheStats) {
    CliProperties cli = defaultStore();
    EXPECT_FALSE(StatsCustomizationProperties(cli).getWantCacheMsgStats());
    cli.setStringProperty(CliProperties::CACHE_PROP_NAME, "dc1");
    EXPECT_TRUE(StatsCustomizationProperties(cli).getWantCacheMsgStats());
}

TEST(StatsCustomizationPropertiesRecord, DefaultRecordDiffersFromDefaultStore) {
    const StatsCustomizationProperties empty;
    EXPECT_EQ(empty.getRateStatsInterval(), 1);
    EXPECT_EQ(empty.getNumLatencyBuckets(), 0u);
    EXPECT_NE(empty.toString(), StatsCustomizationProperties(defaultStore()).toString());
}

}  // namespace
}  // namespace zorvane::pubsub
