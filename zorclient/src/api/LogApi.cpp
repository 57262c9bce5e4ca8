// Logging entry points and the exported APP filter level.
#include <cerrno>
#include <cstdarg>
#include <cstring>

#include "api/LastError.h"
#include "api/Logger.h"
#include "zorClient.h"

using namespace zorvane::zorclient;

// Applications read the filter level through an int pointer.
static_assert(sizeof(zorClient_log_level_t) == sizeof(int));
static_assert(alignof(zorClient_log_level_t) == alignof(int));

extern "C" {

zorClient_log_level_t _zorClient_log_appFilterLevel_g = ZORCLIENT_LOG_NOTICE;

zorClient_returnCode_t zorClient_log_setFile(const char* logFileName_p) {
    int error = Logger::setFile(logFileName_p);
    if (error != 0) {
        return LastError::fail(ZORCLIENT_SUBCODE_OS_ERROR, "%s: cannot open log file \"%s\": %s",
                               __func__, logFileName_p, std::strerror(error));
    }
    return ZORCLIENT_OK;
}

zorClient_returnCode_t zorClient_log_setFilterLevel(zorClient_log_category_t category,
                                                    zorClient_log_level_t level) {
    if (category != ZORCLIENT_LOG_CATEGORY_ALL && category != ZORCLIENT_LOG_CATEGORY_SDK &&
        category != ZORCLIENT_LOG_CATEGORY_APP) {
        return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                               "%s: log category %d is not ALL (0), SDK (1) or APP (2)", __func__,
                               static_cast<int>(category));
    }
    if (level < ZORCLIENT_LOG_EMERGENCY || level > ZORCLIENT_LOG_DEBUG) {
        return LastError::fail(
            ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE, "%s: log level %d is not a level from %d to %d",
            __func__, static_cast<int>(level), ZORCLIENT_LOG_EMERGENCY, ZORCLIENT_LOG_DEBUG);
    }
    Logger::setFilterLevel(category, level);
    return ZORCLIENT_OK;
}

void _zorClient_log_output_detail(int category, int level, const char* filename_p, int lineNum,
                                  const char* format_p, ...) {
    if (!Logger::isEnabled(category, level)) {
        return;
    }
    va_list args;
    va_start(args, format_p);
    Logger::writeV(category, level, filename_p, lineNum, format_p, args);
    va_end(args);
}

}  // extern "C"
