// Valid command lines and what they leave in the store, group by group.
#include <gtest/gtest.h>

#include <cstdio>
#include <fstream>

#include "tests/unit/CliTestSupport.h"
#include "tests/unit/TempPath.h"

namespace zorvane::pubsub {
namespace {

using test::parseLine;
using test::valueOf;

struct ValueCase {
    std::vector<std::string> args;
    std::vector<std::pair<std::string, std::string>> expected;  // key, value as text
};

void expectCases(const std::vector<ValueCase>& cases, const std::string& file = "") {
    for (ValueCase c : cases) {
        for (std::string& arg : c.args) {
            for (size_t at = arg.find("{file}"); at != std::string::npos; at = arg.find("{file}")) {
                arg.replace(at, 6, file);
            }
        }
        SCOPED_TRACE(::testing::PrintToString(c.args));
        CliProperties props(TOOL_NAME, "1");
        const auto outcome = parseLine(props, c.args);
        ASSERT_EQ(outcome.status, -1) << outcome.err;
        for (const auto& [key, value] : c.expected) {
            EXPECT_EQ(valueOf(props, key), value) << key;
        }
    }
}

TEST(CliOptionValuesTest, ClientAndMessageOptions) {
    expectCases({
        {{"-CIP=tcps://h:55555,h2", "-cu=me@vpn1", "-cc=3x", "-CPF=p=1.txt", "-cip="},
         {{"CLIENT_IP_ADDR", ""},
          {"CLIENT_USERNAME", "me"},
          {"CLIENT_VPN", "vpn1"},
          {"NUM_CLIENTS", "3"},
          {"CLIENT_PASSWORD_FILE", "p=1.txt"}}},
        {{"-crr", "-ccnX", "-cpc", "-cnlfoo", "-CTT"},
         {{"WANT_REPLICATION_RECONNECT", "1"},
          {"WANT_NON_BLOCKING_CONNECT", "1"},
          {"CHANGE_CLIENT_NAMES_FLAG", "1"},
          {"WANT_NO_LOCAL", "1"},
          {"WANT_CLIENT_TASK_THREAD", "1"},
          {"WANT_DISPATCH_SESSION", "0"}}},
        {{"-mr=x", "-mn=0x10", "-mtl=010", "-mrt=max", "-mt=nonpersistent"},
         {{"PUBLISH_RATE", "0"},
          {"NUM_MSGS_TO_PUBLISH", "16"},
          {"MSG_TTL", "8"},
          {"MSG_RATE_IS_MAX", "1"},
          {"msgType", "0"}}},
        {{"-mr=2.5e3", "-mrt=max", "-mrt=avg", "-mt=persistent", "-mn="},
         {{"PUBLISH_RATE", "2500"},
          {"MSG_RATE_IS_MAX", "0"},
          {"msgType", "1"},
          {"NUM_MSGS_TO_PUBLISH", "0"}}},
        {{"-msx=0,8,100", "-msa=10:0.78,20", "-msar=10-200", "-rmo"},
         {{"XML_PAYLOAD_SIZE_LIST", "0,8,100"},
          {"BINARY_ATTACH_SIZE_LIST", "10,20"},
          {"BINARY_ATTACH_SIZE_WEIGHTS_LIST", "0.78,1"},
          {"RANDOM_ATTACH_SIZE_MIN", "10"},
          {"RANDOM_ATTACH_SIZE_MAX", "200"}}},
        // The later of "-msa=" and "-msas=" counts.
        {{"-msa=1", "-msas=100,50,200", "-msxs=10,5,20"},
         {{"BINARY_ATTACH_SIZE_LIST", "100,150,200"},
          {"BINARY_ATTACH_SIZE_WEIGHTS_LIST", "1,1,1"},
          {"XML_PAYLOAD_SIZE_LIST", "10,15,20"}}},
        {{"-mdt=5", "-md"}, {{"WANT_MSG_DUMP", "1"}, {"MSG_DUMP_BUFFER_SIZE", "0"}}},
        {{"-sdm="}, {{"SDM_AUTO_GEN_FLAG", "1"}, {"SDM_FILE_LIST", ""}}},
        {{"-sdm=a,,b", "-pal=x,y"},
         {{"SDM_AUTO_GEN_FLAG", "0"},
          {"SDM_FILE_LIST", "a,,b"},
          {"PUBLISH_ATTACH_LIST", "x,y"},
          {"BINARY_ATTACH_SIZE_WEIGHTS_LIST", "1,1"}}},
    });
}

TEST(CliOptionValuesTest, PublishingOptions) {
    expectCases({
        {{"-ptl=a:95,b:5;c:", "-pql=q1:2,v:h"},
         {{"PUB_TOPICS_ARRAY", "a,b;c"},
          {"PUB_TOPICS_WEIGHTS_ARRAY", "95,5;0"},
          {"PUB_QUEUES_LIST", "q1,v:h"},
          {"PUB_QUEUES_WEIGHTS_LIST", "2,1"}}},
        // Generated topics replace "-ptl=", whatever the order.
        {{"-ptp=t", "-ptc=2", "-cc=3", "-ptl=x"},
         {{"PUB_TOPICS_ARRAY", "t000001,t000002,t000001"}, {"PUB_TOPICS_WEIGHTS_ARRAY", "1,1,1"}}},
        {{"-ibdx7", "-bd=0.5", "-psv=50"},
         {{"INTER_BURST_DURATION", "7"}, {"BURST_DURATION", "0.5"}, {"PUB_SEND_VECTOR", "50"}}},
        {{"-IBD=2.5", "-ibd"}, {{"INTER_BURST_DURATION", "0"}}},
        {{"-poo=1@10,2@3"}, {{"PUB_ORDER_OFFSETS", "1@10,2@3,"}, {"PUB_ORDER_OFFSET", "0"}}},
        {{"-poo=1@10", "-poo=7"}, {{"PUB_ORDER_OFFSETS", "1@10,"}, {"PUB_ORDER_OFFSET", "7"}}},
        {{"-poo=5@2,zz"}, {{"PUB_ORDER_OFFSET", "5"}, {"PUB_ORDER_OFFSETS", ""}}},
        {{"-pmpl=0,50,9x,50"}, {{"PUB_PRIORITY_LIST", "0,50,9,50"}, {"WANT_PRIORITY_STATS", "1"}}},
        {{"-prp=/r", "-fdr=2018-07-30T10:00:00-04:00", "-fdr=2019"},
         {{"WANT_REPLY_TOPIC", "1"},
          {"PUB_REPLY_POSTFIX", "/r"},
          {"AD_WANT_REPLAY", "1"},
          {"AD_REPLAY_DATE", "2019"}}},
        {{"-epl=A,1", "-EPL=B,2", "-cpl=Int,n,3", "-pkl=k1,k2", "-jdfl=j"},
         {{"EXTRA_PROPS_LIST", "A,1,B,2"},
          {"CUSTOM_PROPERTIES_LIST", "Int,n,3"},
          {"PARTITION_KEY_LIST", "k1,k2"},
          {"JSON_DOC_FILE_LIST", "j"}}},
    });
}

TEST(CliOptionValuesTest, SubscribingAndAckOptions) {
    expectCases({
        // Spread after the loop, so "-cc=" may come later on the line.
        {{"-stl=a,b,c,d,e", "-cc=2"}, {{"topics", "a,c,e;b,d"}, {"WANT_ADD_SUBSCRIPTIONS", "1"}}},
        {{"-stp=p", "-stl=a"}, {{"topics", "a"}}},
        {{"-stp=p", "-stc=2", "-cc=3"}, {{"topics", "p000001;p000002;p000001"}}},
        {{"-stc=0", "-ptc=-1"}, {{"topics", ""}, {"WANT_ADD_SUBSCRIPTIONS", "0"}}},
        {{"-sql=q1,q2", "-sdl=d", "-ssl=s", "-cc=2"},
         {{"queues", "q1;q2"}, {"dtes", "d"}, {"selectors", "s"}}},
        {{"-tte=3", "-sri=-1", "-sd=12x", "-sdc=x"},
         {{"NUM_TEMP_TOPIC_ENDPOINTS", "3"},
          {"WANT_ADD_SUBSCRIPTIONS", "1"},
          {"SUB_RATE_INTERVAL", "-1"},
          {"SLOW_SUB_DELAY_IN_MS", "12"},
          {"SLOW_SUB_DELAY_COUNT", "0"}}},
        {{"-soo= \t"},
         {{"SUB_ORDER_OFFSETS_PRINT_RESUMING_ARG_AT_EXIT", "1"}, {"SUB_ORDER_OFFSETS", ""}}},
        {{"-soo=1@11,2@10 ; 1@10", "-cc=2"}, {{"SUB_ORDER_OFFSETS", "1@11,2@10,;1@10,"}}},
        {{"-carl=5"},
         {{"CLIENT_ACK_RATE_LIMIT", "5"},
          {"SUB_MSG_QUEUE_DEPTH", "2147483647"},
          {"WANT_CLIENT_ACK", "1"}}},
        {{"-rsp=ar", "-skm=4"},
         {{"WANT_CLIENT_ACK", "0"}, {"REQUIRED_SETTLEMENTS", "ar"}, {"SUB_MSG_QUEUE_DEPTH", "4"}}},
        {{"-pea=1", "-per", "-pedn=off"},
         {{"PE_ACCESS_TYPE", "1"},
          {"WANT_PROVISIONED_ENDPOINT", "1"},
          {"PE_RESPECT_TTL", "1"},
          {"DISCARD_NOTIFY_SENDER", "2"}}},
        {{"-per", "-pedn=maybe", "-nsr", "-nsm"},
         {{"WANT_PROVISIONED_ENDPOINT", "0"},
          {"DISCARD_NOTIFY_SENDER", "-1"},
          {"WANT_REMOVE_SUBSCRIBER", "0"},
          {"WANT_SUBSCRIPTION_MEMORY", "0"}}},
    });
}

TEST(CliOptionValuesTest, MeasurementSessionAndGeneralOptions) {
    expectCases({
        {{"-lb"}, {{"WANT_LATENCY_MEASUREMENT", "1"}, {"buckets", "1024"}}},
        {{"-LB=4096", "-lg=34"}, {{"buckets", "4096"}, {"granularity", "34"}}},
        {{"-lat"}, {{"WANT_LATENCY_FULL_STATS", "0"}, {"WANT_LATENCY_MEASUREMENT", "1"}}},
        {{"-lfl=3"},
         {{"LATENCY_FIRST_TO_LAST_FANOUT", "3"},
          {"WANT_LATENCY_MEASUREMENT", "1"},
          {"WANT_ORDER_CHECK_PUBLISHER_STREAM_NUMBER", "1"},
          {"WANT_ORDER_CHECK_TOPIC_SEQUENCE_NUMBER", "1"}}},
        // "-atr" sets an interval of 1; a later "-atri=" replaces it.
        {{"-atr", "-atri=5", "-aem=per-message", "-apw=255"},
         {{"AD_TRANSACTION_ROLLBACK_INTERVAL", "5"},
          {"AD_ACK_EVENT_MODE", "per-message"},
          {"AD_PUB_WINDOW_SIZE", "255"}}},
        {{"-rjit=50", "-rseed=-7", "-dki=0x10", "-qbd=0x10,2"},
         {{"RANDOMIZATION_ATTACHMENT_SIZE_JITTER_FACTOR", "0.5"},
          {"RANDOMIZATION_SEED", "-7"},
          {"WANT_KERNEL_INTERRUPTS_DEBUG", "16"},
          {"QB_DELETE_FREQUENCY", "16"}}},
        {{"-chrn=0x20", "-chrt=1:5", "-chld=FULFILL", "-as=oauth2"},
         {{"CACHE_NUM_REQ", "32"},
          {"CACHE_REQ_MIN_SEQ", "1"},
          {"CACHE_REQ_MAX_SEQ", "5"},
          {"CACHE_LIVE_DATA_ACTION", "FULFILL"},
          {"AUTHENTICATION_SCHEME", "oauth2"}}},
    });
}

TEST(CliOptionValuesTest, FilesAreReadAtTheirPlaceOnTheLine) {
    const std::string file = test::tempPath("option_values_list.txt");
    std::ofstream(file) << "one\ntwo:2\n";
    expectCases(
        {
            // File entries stand first; list items dealt out later join entry i modulo -cc.
            {{"-stf={file}:1,{file}", "-stl=a,b,c", "-cc=2"},
             {{"topics", "one,c;one,two:2;a;b"}, {"WANT_ADD_SUBSCRIPTIONS", "1"}}},
            {{"-ptf={file},{file}", "-pqf={file}"},
             {{"PUB_TOPICS_ARRAY", "one,two,one,two"},
              {"PUB_TOPICS_WEIGHTS_ARRAY", "1,2,1,2"},
              {"PUB_QUEUES_LIST", "one,two"},
              {"PUB_QUEUES_WEIGHTS_LIST", "1,2"}}},
            {{"-ssf={file}", "-SQF={file}:0", "-sdf={file}:x"},
             {{"selectors", "one,two:2"}, {"queues", "one,two:2"}, {"dtes", "one,two:2"}}},
        },
        file);
    std::remove(file.c_str());
}

}  // namespace
}  // namespace zorvane::pubsub
