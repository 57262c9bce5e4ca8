// Context entry points.
#include "api/ApiGuard.h"
#include "api/Handles.h"
#include "api/LastError.h"
#include "api/ProcessConfig.h"
#include "api/PropertyList.h"
#include "core/ContextConfig.h"
#include "zorClient.h"

using namespace zorvane::zorclient;

namespace {

bool isAllZero(const zorClient_context_createFuncInfo_t& info) {
    return info.regFdInfo.regFdFunc_p == nullptr && info.regFdInfo.unregFdFunc_p == nullptr &&
           info.regFdInfo.user_p == nullptr;
}

}  // namespace

extern "C" {

zorClient_returnCode_t zorClient_context_create(zorClient_propertyArray_pt props_p,
                                                zorClient_opaqueContext_pt* context_p,
                                                zorClient_context_createFuncInfo_t* funcInfo_p,
                                                size_t funcInfoSize) {
    const char* const function_p = __func__;
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        if (context_p == nullptr) {
            return LastError::failNullArgument(function_p, "context_p");
        }
        *context_p = nullptr;
        if (funcInfo_p == nullptr) {
            return LastError::failNullArgument(function_p, "funcInfo_p");
        }
        if (funcInfoSize < sizeof(zorClient_context_createFuncInfo_t)) {
            return LastError::fail(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE,
                                   "%s: funcInfoSize %zu is smaller than the record (%zu bytes)",
                                   function_p, funcInfoSize,
                                   sizeof(zorClient_context_createFuncInfo_t));
        }
        if (!isAllZero(*funcInfo_p)) {
            return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                                   "%s: funcInfo_p->regFdInfo must be all zero: the library "
                                   "manages its own descriptors and timers",
                                   function_p);
        }
        if (!ProcessConfig::isInitialized()) {
            return LastError::fail(ZORCLIENT_SUBCODE_INIT_NOT_CALLED,
                                   "%s: call zorClient_initialize first", function_p);
        }
        PropertyList list;
        zorClient_returnCode_t rc = PropertyList::parse(props_p, function_p, list);
        ContextConfig config;
        if (rc == ZORCLIENT_OK) {
            rc = ContextConfig::parse(list, function_p, &config);
        }
        Ref<Context> context;
        if (rc == ZORCLIENT_OK) {
            rc = Context::create(config, function_p, &context);
        }
        if (rc != ZORCLIENT_OK) {
            return rc;
        }
        try {
            *context_p =
                static_cast<zorClient_opaqueContext_pt>(Handles::contexts().insert(context));
        } catch (...) {
            context->shutdown();
            throw;
        }
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_context_processEvents(zorClient_opaqueContext_pt context) {
    const char* const function_p = __func__;
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        auto lease = Handles::lookup(Handles::contexts(), context, function_p, "context");
        if (!lease) {
            return ZORCLIENT_FAIL;
        }
        return lease->processEvents(function_p);
    });
}

zorClient_returnCode_t zorClient_context_destroy(zorClient_opaqueContext_pt* context_p) {
    const char* const function_p = __func__;
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        if (context_p == nullptr) {
            return LastError::failNullArgument(function_p, "context_p");
        }
        {
            auto lease = Handles::lookup(Handles::contexts(), *context_p, function_p, "*context_p");
            if (!lease) {
                return ZORCLIENT_FAIL;
            }
            // Destroying waits for the calls in progress on the context, one of which is the
            // pass that runs this callback.
            if (lease->isDispatchThread()) {
                return LastError::fail(ZORCLIENT_SUBCODE_INVALID_SESSION_OPERATION,
                                       "%s: a context cannot be destroyed from inside one of "
                                       "its own callbacks",
                                       function_p);
            }
        }
        Ref<Context> context = Handles::contexts().retire(*context_p);
        if (!context) {
            Handles::failLookup(*context_p, function_p, "*context_p");
            return ZORCLIENT_FAIL;
        }
        // Sessions the application left behind go with their context.
        for (const Ref<Session>& session : context->sessions()) {
            Handles::sessions().retire(session->handle());
            session->close();
        }
        context->shutdown();
        *context_p = nullptr;
        return ZORCLIENT_OK;
    });
}

}  // extern "C"
