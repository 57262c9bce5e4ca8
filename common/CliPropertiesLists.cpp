// Notations that fill the per-client lists and the two-part values.
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <fstream>

#include "common/CliFault.h"
#include "common/CliProperties.h"
#include "common/CommonUtils.h"

namespace zorvane::pubsub {

namespace {

// Item i of a list dealt out to the clients in turn: the first numClients
// items each open an entry, later ones join entry i modulo numClients of the
// whole outer list (entries that files put there before come first).
void dealOut(std::vector<std::vector<std::string>>& outer, size_t index, INT32 numClients,
             const std::string& item) {
    const size_t clients = static_cast<size_t>(numClients);
    if (index < clients) {
        outer.push_back({item});
    } else {
        outer[index % clients].push_back(item);
    }
}

// max(NUM_CLIENTS, count) generated names, refused when there would be
// more than the generation limit.
std::vector<std::string> generateNames(const std::string& prefix, INT64 count, INT32 numClients) {
    if (count < 1) {
        cliFault("ERROR: Invalid count of generated names, (1..) is valid: ",
                 std::to_string(count));
    }
    const INT64 total = count > numClients ? count : numClients;
    if (total > CommonUtils::MAX_GENERATED_ENTRIES) {
        cliFault("ERROR: Too many generated names for prefix " + prefix + ", (1.." +
                     std::to_string(CommonUtils::MAX_GENERATED_ENTRIES) + ") is valid: ",
                 std::to_string(total));
    }
    std::vector<std::string> names;
    names.reserve(static_cast<size_t>(total));
    char number[32];
    for (INT64 i = 0; i < total; ++i) {
        std::snprintf(number, sizeof(number), "%06lld", static_cast<long long>(i % count + 1));
        names.push_back(prefix + number);
    }
    return names;
}

// Both sides of "first<sep>second" as by strtoll base 0; second is -1
// without the separator. False when the separator is missing.
bool splitTwoNumbers(const char* value, char separator, INT64& first, INT64& second) {
    first = std::strtoll(value, nullptr, 0);
    const char* rest = std::strchr(value, separator);
    second = rest != nullptr ? std::strtoll(rest + 1, nullptr, 0) : -1;
    return rest != nullptr;
}

}  // namespace

INT32 CliProperties::clientCountForLists() const {
    const INT32 numClients = getIntegerProperty(NUM_CLIENTS);
    if (numClients < 1) {
        cliFault("ERROR: Invalid # of clients, (1..) is valid: ", std::to_string(numClients));
    }
    return numClients;
}

void CliProperties::loadSubscriptionsFromList(std::vector<std::vector<std::string>>& outer,
                                              const std::string& value) {
    const INT32 numClients = clientCountForLists();
    std::vector<std::string> tokens;
    CommonUtils::tokenizeString(value, tokens, SUBSCRIPTION_SEP);
    for (size_t i = 0; i < tokens.size(); ++i) {
        dealOut(outer, i, numClients, tokens[i]);
        setBooleanProperty(WANT_ADD_SUBSCRIPTIONS, true);
    }
}

void CliProperties::loadSubscriptionsFromFile(std::vector<std::vector<std::string>>& outer,
                                              const std::string& filename, int num) {
    std::ifstream file(filename);
    if (!file.is_open()) {
        cliFault("Cannot open the subscriptions file: ", filename);
    }
    std::vector<std::string> lines;
    std::string line;
    while ((num <= 0 || lines.size() < static_cast<size_t>(num)) && std::getline(file, line)) {
        lines.push_back(line);
    }
    outer.push_back(std::move(lines));
}

void CliProperties::loadSubscriptionsFromPrefixAndCount(
    std::vector<std::vector<std::string>>& outer, const std::string& prefix, INT64 count) {
    const INT32 numClients = clientCountForLists();
    const std::vector<std::string> names = generateNames(prefix, count, numClients);
    for (size_t i = 0; i < names.size(); ++i) {
        dealOut(outer, i, numClients, names[i]);
    }
    setBooleanProperty(WANT_ADD_SUBSCRIPTIONS, true);
}

void CliProperties::loadPublishTopicsFromPrefixAndCount(const std::string& prefix, INT64 count) {
    const std::vector<std::string> names = generateNames(prefix, count, clientCountForLists());
    setVectorVectorProperty(PUB_TOPICS_ARRAY, {names});
    setVectorDoubleVectorProperty(PUB_TOPICS_WEIGHTS_ARRAY,
                                  {std::vector<double>(names.size(), 1.0)});
}

void CliProperties::parseUsernameVpn(const char* value, const std::string& userKey,
                                     const std::string& vpnKey) {
    const std::string text(value);
    const size_t at = text.find('@');
    setStringProperty(userKey, text.substr(0, at));
    if (at != std::string::npos) {
        setStringProperty(vpnKey, text.substr(at + 1));
    }
}

void CliProperties::parseDTOPriority(const char* value) {
    INT64 local = 0;
    INT64 network = 0;
    splitTwoNumbers(value, ':', local, network);
    setIntegerProperty(CLIENT_DTO_LOCAL_PRIORITY, static_cast<INT32>(local));
    setIntegerProperty(CLIENT_DTO_NETWORK_PRIORITY, static_cast<INT32>(network));
}

void CliProperties::parseQBDelete(const char* value) {
    INT64 frequency = 0;
    INT64 buffer = 0;
    splitTwoNumbers(value, ',', frequency, buffer);
    setIntegerProperty(QB_DELETE_FREQUENCY, static_cast<INT32>(frequency));
    setIntegerProperty(QB_MSG_BUFFER_SIZE, static_cast<INT32>(buffer));
}

void CliProperties::parseMinMaxTopicSeq(const char* value) {
    INT64 minSeq = 0;
    INT64 maxSeq = 0;
    if (!splitTwoNumbers(value, ':', minSeq, maxSeq)) {
        cliFault("Cache Request Topic Sequence format not understood: ", value);
    }
    setInt64Property(CACHE_REQ_MIN_SEQ, minSeq);
    setInt64Property(CACHE_REQ_MAX_SEQ, maxSeq);
}

}  // namespace zorvane::pubsub
