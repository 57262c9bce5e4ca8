#include "common/CliProperties.h"

#include <gtest/gtest.h>

#include <map>
#include <set>
#include <string>
#include <vector>

#include "tests/unit/CliTestSupport.h"

namespace zorvane::pubsub {
namespace {

// True when the getter of the given type finds nothing under the key.
bool getterYieldsEmpty(const CliProperties& props, const std::string& key, CliPropertyType type) {
    switch (type) {
        case CliPropertyType::BOOLEAN:
            return !props.getBooleanProperty(key) && props.getBooleanProperty(key, true);
        case CliPropertyType::INTEGER:
            return props.getIntegerProperty(key) == 0;
        case CliPropertyType::INT64:
            return props.getInt64Property(key) == 0;
        case CliPropertyType::DOUBLE:
            return props.getDoubleProperty(key) == 0.0;
        case CliPropertyType::STRING:
            return props.getStringProperty(key).empty();
        case CliPropertyType::VECTOR:
            return props.getVectorProperty(key).empty();
        case CliPropertyType::VECTOR_VECTOR:
            return props.getVectorVectorProperty(key).empty();
        case CliPropertyType::INT_VECTOR:
            return props.getIntVectorProperty(key).empty();
        case CliPropertyType::DOUBLE_VECTOR:
            return props.getDoubleVectorProperty(key).empty();
        case CliPropertyType::VECTOR_DOUBLE_VECTOR:
            return props.getVectorDoubleVectorProperty(key).empty();
        case CliPropertyType::VECTOR_MAP_INT32_UINT64:
            return props.getVectorMapInt32Uint64Property(key).empty();
        case CliPropertyType::MAP_INT_INT:
            return props.getMapIntIntProperty(key).empty();
    }
    return false;
}

// The row's default as the store's text of a value of its type: read back
// with the typed getter, a default written through the wrong setter (an
// INT64 cut to INT32, a string into the wrong map) shows. Lists and maps
// start empty.
std::string defaultText(const CliPropertyKey& row) {
    switch (row.type_m) {
        case CliPropertyType::BOOLEAN:
            return test::text(row.boolDefault_m);
        case CliPropertyType::INTEGER:
        case CliPropertyType::INT64:
            return test::text(row.intDefault_m);
        case CliPropertyType::DOUBLE:
            return test::text(row.doubleDefault_m);
        case CliPropertyType::STRING:
            return row.stringDefault_mp;
        default:
            return "";
    }
}

TEST(CliPropertiesTest, EveryKeyLivesOnlyInTheMapOfItsTypeWithItsDefault) {
    const CliProperties props(TOOL_NAME, "1.2.3");
    std::set<std::string> names;
    size_t withDefault = 0;
    for (const CliPropertyKey& row : CliProperties::keyTable()) {
        const std::string key = row.name_mp;
        SCOPED_TRACE(key);
        EXPECT_TRUE(names.insert(key).second) << "duplicate key";
        EXPECT_EQ(CliProperties::findKey(key), &row);
        withDefault += row.hasDefault_m ? 1 : 0;
        for (int t = 0; t < CLI_PROPERTY_TYPE_COUNT; ++t) {
            const auto other = static_cast<CliPropertyType>(t);
            const bool home = other == row.type_m && row.hasDefault_m;
            EXPECT_EQ(props.hasProperty(key, other), home) << "map " << t;
            if (!home) {
                EXPECT_TRUE(getterYieldsEmpty(props, key, other)) << "map " << t;
            }
        }
        if (row.hasDefault_m) {
            EXPECT_EQ(test::valueOf(props, key), defaultText(row));
        }
    }
    EXPECT_GT(withDefault, 0u);
    EXPECT_LT(withDefault, names.size()) << "some keys must start absent";
    // All those reads created nothing, and no default is written beyond the table.
    EXPECT_EQ(props.propertyCount(), withDefault);
    EXPECT_EQ(CliProperties::findKey("NO_SUCH_KEY"), nullptr);
    // The extra-property key is read from a list, never stored under its own name.
    EXPECT_EQ(CliProperties::findKey(CliProperties::ZORVANE_VEXLOAD_MTR_CATCHUP_NS), nullptr);

    EXPECT_EQ(props.getMsgType(), PUBSUB_MSG_TYPE_DIRECT);
    EXPECT_EQ(props.getLatencyGranularity(), 11u);
    EXPECT_EQ(props.getNumLatencyBuckets(), 1024u);
    EXPECT_TRUE(props.getTopics().empty() && props.getQueues().empty() && props.getDTEs().empty() &&
                props.getSelectors().empty());
}

TEST(CliPropertiesTest, ReadsAndWritesFollowTheStoreRules) {
    CliProperties props(TOOL_NAME, "1.2.3");
    // Defaults users meet on a bare command line.
    EXPECT_EQ(props.getStringProperty(CliProperties::CLIENT_MODE), "sink");
    EXPECT_EQ(props.getDoubleProperty(CliProperties::PUBLISH_RATE), 1.0);
    EXPECT_EQ(props.getIntegerProperty(CliProperties::RECONNECT_INTERVAL), 3000);
    EXPECT_TRUE(props.getBooleanProperty(CliProperties::WANT_TCP_NODELAY));
    EXPECT_EQ(props.getInt64Property(CliProperties::CONTEXT_AFFINITY_MASK), -1);
    EXPECT_EQ(props.getIntegerProperty(CliProperties::CONTEXT_AFFINITY_MASK), 0);

    // The caller's default only counts for a key that is absent.
    EXPECT_TRUE(props.getBooleanProperty(CliProperties::WANT_CLIENT_ACK_THREAD, true));
    EXPECT_FALSE(props.getBooleanProperty(CliProperties::WANT_VERBOSE, true));
    props.setBooleanProperty(CliProperties::WANT_CLIENT_ACK_THREAD, false);
    EXPECT_FALSE(props.getBooleanProperty(CliProperties::WANT_CLIENT_ACK_THREAD, true));

    // Lists are replaced whole, never merged.
    props.setVectorProperty(CliProperties::SDM_FILE_LIST, {"a", "b", "c"});
    props.setVectorProperty(CliProperties::SDM_FILE_LIST, {"d"});
    EXPECT_EQ(props.getVectorProperty(CliProperties::SDM_FILE_LIST), std::vector<std::string>{"d"});
    props.setMapIntIntProperty(CliProperties::PUB_ORDER_OFFSETS, {{1, 10}, {2, 20}});
    props.setMapIntIntProperty(CliProperties::PUB_ORDER_OFFSETS, {{3, 30}});
    EXPECT_EQ(props.getMapIntIntProperty(CliProperties::PUB_ORDER_OFFSETS),
              (std::map<INT32, INT32>{{3, 30}}));

    // Rewriting the defaults restores overwritten keys and leaves keys that
    // have no default as they are.
    props.setIntegerProperty(CliProperties::NUM_CLIENTS, 5);
    props.setIntegerProperty(CliProperties::BIND_RATE, 7);
    props.setDefaultProperties();
    EXPECT_EQ(props.getIntegerProperty(CliProperties::NUM_CLIENTS), 1);
    EXPECT_EQ(props.getIntegerProperty(CliProperties::BIND_RATE), 7);
    EXPECT_TRUE(props.getVectorProperty(CliProperties::SDM_FILE_LIST).empty());
}

TEST(CliPropertiesTest, AcceptedFirstStepOptionsLandInTheStore) {
    CliProperties props(TOOL_NAME, "1.2.3");
    const size_t defaults = props.propertyCount();
    EXPECT_EQ(test::parseLine(props, {}).status, -1);
    props.parseOptions(0, nullptr);
    EXPECT_EQ(props.propertyCount(), defaults);
    EXPECT_FALSE(props.getBooleanProperty(CliProperties::PRINT_VERSION_AND_EXIT));

    test::parseLine(props, {"-log=debug", "-LOGF=/tmp/a=b.log", "-V"});
    EXPECT_EQ(props.getStringProperty(CliProperties::LOG_LEVEL), "debug");
    EXPECT_EQ(props.getStringProperty(CliProperties::LOG_FILE), "/tmp/a=b.log");
    EXPECT_TRUE(props.getBooleanProperty(CliProperties::PRINT_VERSION_AND_EXIT));

    CliProperties second(TOOL_NAME, "1.2.3");
    test::parseLine(second, {"-LOG=info", "-logf=", "-v", "-log=notice"});
    EXPECT_EQ(second.getStringProperty(CliProperties::LOG_LEVEL), "notice");
    EXPECT_TRUE(second.hasProperty(CliProperties::LOG_FILE, CliPropertyType::STRING));
    EXPECT_EQ(second.getStringProperty(CliProperties::LOG_FILE), "");
    EXPECT_TRUE(second.getBooleanProperty(CliProperties::PRINT_VERSION_AND_EXIT));
}

}  // namespace
}  // namespace zorvane::pubsub
