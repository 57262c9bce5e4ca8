// The three help texts. The option lines come from the option table: each
// row says in which group of which help it stands, at which place, and with
// which text; this file only knows the groups and how a line is laid out.
#include <algorithm>
#include <cstdio>
#include <string>
#include <vector>

#include "common/CliOption.h"
#include "common/CliProperties.h"

namespace zorvane::pubsub {

namespace {

struct HelpGroupLayout {
    CliHelpGroup group;
    const char* heading_mp;
    const char* footer_mp;  // lines after the options, or null
};

constexpr HelpGroupLayout SHORT_GROUPS_s[] = {
    {CliHelpGroup::SHORT_CLIENT, "  Client control:", nullptr},
    {CliHelpGroup::SHORT_MESSAGE, "  Message Control:", nullptr},
    {CliHelpGroup::SHORT_PUBLISH,
     "  Publishing options (All files lists are comma separated, full paths): ", nullptr},
    {CliHelpGroup::SHORT_SUBSCRIBE, "  Subscribing options (All lists are comma separated) ",
     nullptr},
    {CliHelpGroup::SHORT_MEASURE,
     "  Performance measurement options.  Runtime must be > 1 second:", nullptr},
    {CliHelpGroup::SHORT_TOOL, "  Tool Specific Options: ", nullptr},
    {CliHelpGroup::SHORT_GENERAL_PARAMS, "  General Parameters:", nullptr},
    {CliHelpGroup::SHORT_GENERAL_FLAGS, "  General Flags:", nullptr},
};

constexpr HelpGroupLayout LONG_GROUPS_s[] = {
    {CliHelpGroup::LONG_CLIENT, "  Client control:", nullptr},
    {CliHelpGroup::LONG_MESSAGE, "  Message Control:", nullptr},
    {CliHelpGroup::LONG_PUBLISH, "  Publishing options: ", nullptr},
    {CliHelpGroup::LONG_SUBSCRIBE, "  Subscribing options (All lists are comma separated) ",
     nullptr},
    {CliHelpGroup::LONG_CLIENT_ACK, "  Client Ack Options (applies only to GD msgs)", nullptr},
    {CliHelpGroup::LONG_MEASURE,
     "  Performance measurement options.  Runtime must be > 1 second:", nullptr},
    {CliHelpGroup::LONG_AD, "  Assured Delivery:", nullptr},
    {CliHelpGroup::LONG_SSL, "  Authentication and SSL Options:", nullptr},
    {CliHelpGroup::LONG_CACHE, "  Cache Options (-ch..):", nullptr},
    {CliHelpGroup::LONG_RANDOM, "  Randomization:",
     "\n"
     "    Some of the options use a special Colon Probability Weight notation (CPW) to specify\n"
     "    how often each item is used, as item:weight.  For example -ptl=\"a:95,b:5\" or\n"
     "    the sizes of -msa=\"10:0.78,20:1.22\".  Weights are relative and need not add up\n"
     "    to anything; an item without a weight weighs 1.  The notation applies to\n"
     "    the lists of -ptl, -ptf, -pql, -pqf and -msa, and weights count only with -rmo."},
    {CliHelpGroup::LONG_TOOL, "  Tool Specific Options: ", nullptr},
    {CliHelpGroup::LONG_DEBUG, "  Tool Specific Debug Options: ", nullptr},
    {CliHelpGroup::LONG_GENERAL_PARAMS, "  General Parameters:", nullptr},
    {CliHelpGroup::LONG_GENERAL_FLAGS, "  General Flags:", nullptr},
    {CliHelpGroup::LONG_TRACE, "  Trace Parameters:", nullptr},
};

struct HelpExample {
    const char* description_mp;
    const char* cip_mp;
    const char* options_mp;
};

constexpr HelpExample EXAMPLES_s[] = {
    {"  - Publish and receive 5 100 byte messages on a topic at 1 msg/sec:", " -cip=192.0.2.xx ",
     "-ptl=a -stl=a -msa=100 -mn=5 -mr=1"},
    {"  - Provision a queue, map 4 topics to it and publish on those topics:", " -cip=192.0.2.xx ",
     "-pe -sql=queue -stl=a,b,c,d -ptl=a,b,c,d -mn=100 -mr=100 -msa=100"},
    {"  - Publish persistent messages to a queue with a TTL of 1 ms, eligible for the DMQ:",
     " -cip=192.0.2.xx ", "-pql=queue -mt=persistent -mn=100 -mr=100 -msa=100 -mtl=1 -mdq"},
    {"  - Subscribe to a topic with deliver always:", " -cip=192.0.2.xx ",
     "-stl=\"a<TOPIC_END/>DA=1\""},
    {"  - Subscribe to many topics and keep them across reconnects:", " -cip=192.0.2.xx ",
     "-stf=<file_of_2M_topics> "
     "-epl=\"SESSION_CONNECT_TIMEOUT_MS,180000,SESSION_SUBCONFIRM_TIMEOUT_MS,20000\""},
    {"  - Use more than 100 flows in one session:", " -cip=192.0.2.xx ",
     "-tte=500 -epl=\"SESSION_MAX_FLOWS,501\""},
    {"  - Send a management request over the message bus and dump the reply:", " -cip=192.0.2.xx ",
     "-ptl=#P2P/v:hostname/#client/QADM -sdm=sdm_showHardware.txt -pal=show-hardware.xml -mn=1 "
     "-stl=me -md"},
    {"  - Publish 60% of the messages on one topic and 40% on another:", " -cip=192.0.2.xx ",
     "-ptl=\"a:60,b:40\" -stl=a -msa=100 -mn=100 -mr=10 -rmo"},
    {"  - Publish 99.9% of the messages with 100 bytes and 0.1% with 100000 bytes:",
     " -cip=192.0.2.xx ", "-ptl=a -stl=a -msa=\"100:99.9,100000:0.1\" -mn=10000 -mr=1000 -rmo"},
    {"  - Connect a client using SSL:", " -cip=tcps://192.0.2.xx ", ""},
};

constexpr char BANNER_LINE_s[] = "  -------------------------------------------";
constexpr size_t FORM_WIDTH_s = 16;

bool shownFor(CliHelpTools tools, const std::string& toolName) {
    switch (tools) {
        case CliHelpTools::ALL:
            return true;
        case CliHelpTools::VEX_LOAD_ONLY:
            return toolName == CliProperties::VEX_LOAD;
        case CliHelpTools::VEX_LOAD_OR_QUAD_MIX:
            return toolName == CliProperties::VEX_LOAD || toolName == CliProperties::QUAD_MIX_TR;
    }
    return false;
}

// Replaces each "{NAME}" of text by its value; unknown names stay as they are.
std::string substitute(std::string text,
                       const std::vector<std::pair<std::string, std::string>>& values) {
    for (const auto& [name, value] : values) {
        const std::string placeholder = "{" + name + "}";
        for (size_t at = text.find(placeholder); at != std::string::npos;
             at = text.find(placeholder, at + value.size())) {
            text.replace(at, placeholder.size(), value);
        }
    }
    return text;
}

void printOptionLine(const CliHelp& help, const std::string& text) {
    std::string form(help.form_mp);
    std::string out = "    " + form;
    if (form.size() < FORM_WIDTH_s) {
        out.append(FORM_WIDTH_s - form.size(), ' ');
    } else {
        out += "\n" + std::string(4 + FORM_WIDTH_s, ' ');
    }
    for (const char c : text) {
        out += c;
        if (c == '\n') {
            out.append(4 + FORM_WIDTH_s, ' ');
        }
    }
    std::printf("%s\n", out.c_str());
}

void printGroups(std::span<const HelpGroupLayout> groups, const std::string& toolName,
                 const std::vector<std::pair<std::string, std::string>>& values) {
    for (const HelpGroupLayout& layout : groups) {
        std::vector<const CliOption*> rows;
        for (const CliOption& option : cliOptionTable()) {
            if (option.help_m.group_m == layout.group &&
                shownFor(option.help_m.tools_m, toolName)) {
                rows.push_back(&option);
            }
        }
        if (rows.empty()) {
            continue;
        }
        std::stable_sort(rows.begin(), rows.end(), [](const CliOption* a, const CliOption* b) {
            return a->help_m.order_m < b->help_m.order_m;
        });
        std::printf("%s\n", layout.heading_mp);
        for (const CliOption* row : rows) {
            printOptionLine(row->help_m, substitute(row->help_m.text_mp, values));
        }
        if (layout.footer_mp != nullptr) {
            std::printf("%s\n", layout.footer_mp);
        }
        std::printf("\n");
    }
}

}  // namespace

namespace {

// The values help texts take from the program rather than spelling them.
std::vector<std::pair<std::string, std::string>> helpValues(UINT32 buckets, UINT32 granularity) {
    return {
        {"DEF_CLIENT", DEF_CLIENT},
        {"CLIENT_MODE_SINK", CLIENT_MODE_SINK},
        {"CLIENT_MODE_REFLECT", CLIENT_MODE_REFLECT},
        {"CLIENT_MODE_REPLY", CLIENT_MODE_REPLY},
        {"MSG_TYPE_DIRECT", MSG_TYPE_DIRECT},
        {"MSG_TYPE_NON_PERSISTENT", MSG_TYPE_NON_PERSISTENT},
        {"MSG_TYPE_PERSISTENT", MSG_TYPE_PERSISTENT},
        {"MSG_RATE_TARGET_AVG", MSG_RATE_TARGET_AVG},
        {"MSG_RATE_TARGET_MAX", MSG_RATE_TARGET_MAX},
        {"AD_ACK_EVENT_MODE_PER_MESSAGE", AD_ACK_EVENT_MODE_PER_MESSAGE},
        {"AD_ACK_EVENT_MODE_WINDOWED", AD_ACK_EVENT_MODE_WINDOWED},
        {"AUTHENTICATION_SCHEME_BASIC", AUTHENTICATION_SCHEME_BASIC},
        {"AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE", AUTHENTICATION_SCHEME_CLIENT_CERTIFICATE},
        {"AUTHENTICATION_SCHEME_TLS_PSK", AUTHENTICATION_SCHEME_TLS_PSK},
        {"AUTHENTICATION_SCHEME_GSS_KRB", AUTHENTICATION_SCHEME_GSS_KRB},
        {"AUTHENTICATION_SCHEME_OAUTH2", AUTHENTICATION_SCHEME_OAUTH2},
        {"CACHE_LIVE_DATA_ACTION_QUEUE", CACHE_LIVE_DATA_ACTION_QUEUE},
        {"CACHE_LIVE_DATA_ACTION_FULFILL", CACHE_LIVE_DATA_ACTION_FULFILL},
        {"CACHE_LIVE_DATA_ACTION_FLOW_THRU", CACHE_LIVE_DATA_ACTION_FLOW_THRU},
        {"NUM_LATENCY_BUCKETS", std::to_string(buckets)},
        {"LATENCY_GRANULARITY", std::to_string(granularity)},
    };
}

}  // namespace

void CliProperties::printHelp() const {
    std::printf("%s [options] \n\n", toolNameStr_m.c_str());
    printGroups(SHORT_GROUPS_s, toolNameStr_m,
                helpValues(numLatencyBuckets_m, latencyGranularity_m));
}

void CliProperties::printMoreHelp() const {
    std::printf("%s\n  Advanced Options \n%s\n", BANNER_LINE_s, BANNER_LINE_s);
    printGroups(LONG_GROUPS_s, toolNameStr_m,
                helpValues(numLatencyBuckets_m, latencyGranularity_m));
}

void CliProperties::printExampleHelp() const {
    std::printf("%s\n  CLI Examples (for basic options see -h | -?) \n%s\n", BANNER_LINE_s,
                BANNER_LINE_s);
    for (const HelpExample& example : EXAMPLES_s) {
        std::printf("%s\n      %s%s%s\n\n", example.description_mp, toolNameStr_m.c_str(),
                    example.cip_mp, example.options_mp);
    }
}

}  // namespace zorvane::pubsub
