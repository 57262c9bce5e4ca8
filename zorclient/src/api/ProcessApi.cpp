// Process entry points: start, stop, version.
#include "api/ApiGuard.h"
#include "api/LastError.h"
#include "api/Logger.h"
#include "api/ProcessConfig.h"
#include "api/PropertyList.h"
#include "core/BackendFactory.h"
#include "core/DataBlock.h"
#include "zorClient.h"
#include "zorclientBuildInfo.h"

using namespace zorvane::zorclient;

namespace {

bool isLogLevel(int level) noexcept {
    return level >= ZORCLIENT_LOG_EMERGENCY && level <= ZORCLIENT_LOG_DEBUG;
}

}  // namespace

extern "C" {

zorClient_returnCode_t zorClient_initialize(zorClient_log_level_t initialLogLevel,
                                            zorClient_propertyArray_pt props_p) {
    const char* const function_p = __func__;
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        if (ProcessConfig::isInitialized()) {
            return ZORCLIENT_OK;
        }
        if (!isLogLevel(initialLogLevel)) {
            return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                                   "%s: initial log level %d is not a level from %d to %d",
                                   function_p, static_cast<int>(initialLogLevel),
                                   ZORCLIENT_LOG_EMERGENCY, ZORCLIENT_LOG_DEBUG);
        }
        PropertyList list;
        zorClient_returnCode_t rc = PropertyList::parse(props_p, function_p, list);
        if (rc != ZORCLIENT_OK) {
            return rc;
        }
        rc = ProcessConfig::begin(list, function_p);
        if (rc == ZORCLIENT_OK) {
            Logger::setFilterLevel(ZORCLIENT_LOG_CATEGORY_ALL, initialLogLevel);
            std::array<std::uint32_t, ZORCLIENT_MSG_NUM_DBQUANTA> quanta;
            for (int i = 0; i < ZORCLIENT_MSG_NUM_DBQUANTA; ++i) {
                quanta[static_cast<std::size_t>(i)] = ProcessConfig::dataBlockQuantum(i);
            }
            DataBlockPools::configure(quanta);
        }
        return rc;
    });
}

zorClient_returnCode_t zorClient_cleanup(void) {
    return guarded(__func__, []() -> zorClient_returnCode_t {
        ProcessConfig::end();
        BackendFactory::cleanup();
        DataBlockPools::configure(ProcessConfig::DEFAULT_QUANTA);
        Logger::setFile(nullptr);
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_version_get(zorClient_version_info_pt info_p) {
    if (info_p == nullptr) {
        return LastError::failNullArgument(__func__, "info_p");
    }
    info_p->version_p = ZORCLIENT_VERSION_TEXT;
    info_p->dateTime_p = ZORCLIENT_BUILD_DATE;
    info_p->variant_p = ZORCLIENT_BUILD_VARIANT;
    return ZORCLIENT_OK;
}

}  // extern "C"
