#include "client/zcore/Context.h"

#include <string>

#include "client/zcore/LibraryError.h"
#include "client/zcore/PropertyArray.h"
#include "common/Log.h"

namespace zorvane::pubsub {

namespace {

// Flows of one context when the client record does not bound them.
constexpr INT32 DEFAULT_CONTEXT_MAX_FLOWS = 20000;

}  // namespace

void Context::fillProperties(const ClientProperties& props, PropertyArray& array) {
    array.add("CONTEXT_MAX_SESSIONS", "1200");
    const INT64 maxFlows = props.getMaxFlows() > 0 ? static_cast<INT64>(props.getMaxFlows()) *
                                                         static_cast<INT64>(props.getNumClients())
                                                   : DEFAULT_CONTEXT_MAX_FLOWS;
    array.add("CONTEXT_MAX_FLOWS", std::to_string(maxFlows));
    if (props.getWantCreateContextThread()) {
        array.add("CONTEXT_CREATE_THREAD", "1");
    }
    if (props.getContextThreadAffinity() != -1) {
        array.add("CONTEXT_THREAD_AFFINITY", std::to_string(props.getContextThreadAffinity()));
    }
    if (!props.getContextThreadAffinityList().empty()) {
        array.add("CONTEXT_THREAD_AFFINITY_CPU_LIST", props.getContextThreadAffinityList());
    }

    const std::vector<std::string>& extras = props.getExtraPropsList();
    if (!array.hasRoomFor(extras.size())) {
        LOG_ERROR(
            "Unable to add extra props.  Array not large enough. Index: %d Max size: %d Num "
            "Props: %zu",
            array.size(), ZCORE_MAX_PROPS, extras.size());
        return;
    }
    for (std::size_t i = 0; i < extras.size(); i += 2) {
        array.add(extras[i].c_str(), i + 1 < extras.size() ? extras[i + 1] : std::string());
    }
}

Context::Context(const ClientProperties& props) {
    LOG_INFO("Context: Constructor");
    PropertyArray array;
    fillProperties(props, array);
    zorClient_context_createFuncInfo_t funcInfo{};  // no descriptor callbacks
    if (zorClient_context_create(array.get(), &context_mp, &funcInfo, sizeof funcInfo) !=
        ZORCLIENT_OK) {
        const LibraryError error = LibraryError::fetch();
        LOG_ERROR("zorClient_context_create() failed");
        LOG_ERROR("Error details - Sub Code: %d, Response Code: %d, Error String: %s",
                  static_cast<int>(error.subCode_m), error.responseCode_m,
                  error.errorStr_m.c_str());
        context_mp = nullptr;
    }
}

Context::~Context() {
    LOG_INFO("~Context: Destructor");
    // The thread must be gone before the context it polls.
    stop();
    if (context_mp != nullptr) {
        zorClient_context_destroy(&context_mp);
    }
}

bool Context::processEvents() {
    if (context_mp == nullptr) {
        LOG_ERROR("processEvents called for NULL context_mp.");
        return false;
    }
    if (zorClient_context_processEvents(context_mp) == ZORCLIENT_OK) {
        return true;
    }
    const LibraryError error = LibraryError::fetch();
    LOG_ERROR("Could not process events");
    LOG_ERROR("Error details - Sub Code: %d, Response Code: %d, Error String: %s",
              static_cast<int>(error.subCode_m), error.responseCode_m, error.errorStr_m.c_str());
    return false;
}

}  // namespace zorvane::pubsub
