#include "common/CliProperties.h"

namespace zorvane::pubsub {

namespace {

// Getters hand out copies and must not insert: operator[] would create the
// key and make "never set" look like "set to the empty value".
template <typename Map>
typename Map::mapped_type findOr(const Map& map, const std::string& key,
                                 const typename Map::mapped_type& absentValue) {
    const auto found = map.find(key);
    return found == map.end() ? absentValue : found->second;
}

template <typename Map>
typename Map::mapped_type findOrEmpty(const Map& map, const std::string& key) {
    return findOr(map, key, typename Map::mapped_type{});
}

template <typename Map>
void store(Map& map, const std::string& key, const typename Map::mapped_type& value) {
    map.insert_or_assign(key, value);
}

}  // namespace

CliProperties::CliProperties(const std::string& toolName, const std::string& version)
    : toolNameStr_m(toolName),
      latencyGranularity_m(11),
      numLatencyBuckets_m(1024),
      versionStr_m(version),
      msgType_m(PUBSUB_MSG_TYPE_DIRECT),
      selectorFile_m(false) {
    setDefaultProperties();
}

void CliProperties::setDefaultProperties() {
    for (const CliPropertyKey& row : keyTable()) {
        if (!row.hasDefault_m) {
            continue;
        }
        const std::string key(row.name_mp);
        switch (row.type_m) {
            case CliPropertyType::BOOLEAN:
                setBooleanProperty(key, row.boolDefault_m);
                break;
            case CliPropertyType::INTEGER:
                setIntegerProperty(key, static_cast<INT32>(row.intDefault_m));
                break;
            case CliPropertyType::INT64:
                setInt64Property(key, row.intDefault_m);
                break;
            case CliPropertyType::DOUBLE:
                setDoubleProperty(key, row.doubleDefault_m);
                break;
            case CliPropertyType::STRING:
                setStringProperty(key, row.stringDefault_mp);
                break;
            case CliPropertyType::VECTOR:
                setVectorProperty(key, {});
                break;
            case CliPropertyType::VECTOR_VECTOR:
                setVectorVectorProperty(key, {});
                break;
            case CliPropertyType::INT_VECTOR:
                setIntVectorProperty(key, {});
                break;
            case CliPropertyType::DOUBLE_VECTOR:
                setDoubleVectorProperty(key, {});
                break;
            case CliPropertyType::VECTOR_DOUBLE_VECTOR:
                setVectorDoubleVectorProperty(key, {});
                break;
            case CliPropertyType::VECTOR_MAP_INT32_UINT64:
                setVectorMapInt32Uint64Property(key, {});
                break;
            case CliPropertyType::MAP_INT_INT:
                setMapIntIntProperty(key, {});
                break;
        }
    }
}

bool CliProperties::hasProperty(const std::string& key, CliPropertyType type) const {
    switch (type) {
        case CliPropertyType::BOOLEAN:
            return boolPropsMap_m.contains(key);
        case CliPropertyType::INTEGER:
            return intPropsMap_m.contains(key);
        case CliPropertyType::INT64:
            return int64PropsMap_m.contains(key);
        case CliPropertyType::DOUBLE:
            return doublePropsMap_m.contains(key);
        case CliPropertyType::STRING:
            return stringPropsMap_m.contains(key);
        case CliPropertyType::VECTOR:
            return stringVectorPropsMap_m.contains(key);
        case CliPropertyType::VECTOR_VECTOR:
            return vectorStringVectorPropsMap_m.contains(key);
        case CliPropertyType::INT_VECTOR:
            return intVectorPropsMap_m.contains(key);
        case CliPropertyType::DOUBLE_VECTOR:
            return doubleVectorPropsMap_m.contains(key);
        case CliPropertyType::VECTOR_DOUBLE_VECTOR:
            return vectorDoubleVectorPropsMap_m.contains(key);
        case CliPropertyType::VECTOR_MAP_INT32_UINT64:
            return vectorMapInt32Uint64PropsMap_m.contains(key);
        case CliPropertyType::MAP_INT_INT:
            return mapIntIntPropsMap_m.contains(key);
    }
    return false;
}

size_t CliProperties::propertyCount() const {
    return boolPropsMap_m.size() + intPropsMap_m.size() + int64PropsMap_m.size() +
           doublePropsMap_m.size() + stringPropsMap_m.size() + stringVectorPropsMap_m.size() +
           vectorStringVectorPropsMap_m.size() + intVectorPropsMap_m.size() +
           doubleVectorPropsMap_m.size() + vectorDoubleVectorPropsMap_m.size() +
           vectorMapInt32Uint64PropsMap_m.size() + mapIntIntPropsMap_m.size();
}

// ---- getters ----

bool CliProperties::getBooleanProperty(const std::string& key) const {
    return findOr(boolPropsMap_m, key, false);
}

bool CliProperties::getBooleanProperty(const std::string& key, bool defaultValue) const {
    return findOr(boolPropsMap_m, key, defaultValue);
}

INT32 CliProperties::getIntegerProperty(const std::string& key) const {
    return findOrEmpty(intPropsMap_m, key);
}

INT64 CliProperties::getInt64Property(const std::string& key) const {
    return findOrEmpty(int64PropsMap_m, key);
}

double CliProperties::getDoubleProperty(const std::string& key) const {
    return findOrEmpty(doublePropsMap_m, key);
}

std::string CliProperties::getStringProperty(const std::string& key) const {
    return findOrEmpty(stringPropsMap_m, key);
}

std::vector<std::string> CliProperties::getVectorProperty(const std::string& key) const {
    return findOrEmpty(stringVectorPropsMap_m, key);
}

std::vector<std::vector<std::string>> CliProperties::getVectorVectorProperty(
    const std::string& key) const {
    return findOrEmpty(vectorStringVectorPropsMap_m, key);
}

std::vector<INT32> CliProperties::getIntVectorProperty(const std::string& key) const {
    return findOrEmpty(intVectorPropsMap_m, key);
}

std::vector<double> CliProperties::getDoubleVectorProperty(const std::string& key) const {
    return findOrEmpty(doubleVectorPropsMap_m, key);
}

std::vector<std::vector<double>> CliProperties::getVectorDoubleVectorProperty(
    const std::string& key) const {
    return findOrEmpty(vectorDoubleVectorPropsMap_m, key);
}

std::vector<std::map<INT32, UINT64>> CliProperties::getVectorMapInt32Uint64Property(
    const std::string& key) const {
    return findOrEmpty(vectorMapInt32Uint64PropsMap_m, key);
}

std::map<INT32, INT32> CliProperties::getMapIntIntProperty(const std::string& key) const {
    return findOrEmpty(mapIntIntPropsMap_m, key);
}

// ---- setters ----

void CliProperties::setBooleanProperty(const std::string& key, bool value) {
    store(boolPropsMap_m, key, value);
}

void CliProperties::setIntegerProperty(const std::string& key, INT32 value) {
    store(intPropsMap_m, key, value);
}

void CliProperties::setInt64Property(const std::string& key, INT64 value) {
    store(int64PropsMap_m, key, value);
}

void CliProperties::setDoubleProperty(const std::string& key, double value) {
    store(doublePropsMap_m, key, value);
}

void CliProperties::setStringProperty(const std::string& key, const std::string& value) {
    store(stringPropsMap_m, key, value);
}

void CliProperties::setVectorProperty(const std::string& key,
                                      const std::vector<std::string>& value) {
    store(stringVectorPropsMap_m, key, value);
}

void CliProperties::setVectorVectorProperty(const std::string& key,
                                            const std::vector<std::vector<std::string>>& value) {
    store(vectorStringVectorPropsMap_m, key, value);
}

void CliProperties::setIntVectorProperty(const std::string& key, const std::vector<INT32>& value) {
    store(intVectorPropsMap_m, key, value);
}

void CliProperties::setDoubleVectorProperty(const std::string& key,
                                            const std::vector<double>& value) {
    store(doubleVectorPropsMap_m, key, value);
}

void CliProperties::setVectorDoubleVectorProperty(const std::string& key,
                                                  const std::vector<std::vector<double>>& value) {
    store(vectorDoubleVectorPropsMap_m, key, value);
}

void CliProperties::setVectorMapInt32Uint64Property(
    const std::string& key, const std::vector<std::map<INT32, UINT64>>& value) {
    store(vectorMapInt32Uint64PropsMap_m, key, value);
}

void CliProperties::setMapIntIntProperty(const std::string& key,
                                         const std::map<INT32, INT32>& value) {
    store(mapIntIntPropsMap_m, key, value);
}

}  // namespace zorvane::pubsub
