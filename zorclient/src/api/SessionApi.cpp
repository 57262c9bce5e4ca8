// Session entry points: life and properties.
#include "api/ApiGuard.h"
#include "api/Handles.h"
#include "api/LastError.h"
#include "api/ProcessConfig.h"
#include "api/PropertyList.h"
#include "core/BackendFactory.h"
#include "core/SessionConfig.h"
#include "zorClient.h"

using namespace zorvane::zorclient;

namespace {

// The start that every query of a session by name shares: a live session, then a name.
template <typename Body>
zorClient_returnCode_t withNamedQuery(zorClient_opaqueSession_pt session, const char* name_p,
                                      const char* function_p, Body&& body) noexcept {
    return Handles::withSession(session, function_p, [&](Session& s) {
        if (name_p == nullptr) {
            return LastError::failNullArgument(function_p, "name_p");
        }
        return body(s);
    });
}

}  // namespace

extern "C" {

zorClient_returnCode_t zorClient_session_create(zorClient_propertyArray_pt props_p,
                                                zorClient_opaqueContext_pt context,
                                                zorClient_opaqueSession_pt* session_p,
                                                zorClient_session_createFuncInfo_t* funcInfo_p,
                                                size_t funcInfoSize) {
    const char* const function_p = __func__;
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        if (session_p == nullptr) {
            return LastError::failNullArgument(function_p, "session_p");
        }
        *session_p = nullptr;
        if (funcInfo_p == nullptr) {
            return LastError::failNullArgument(function_p, "funcInfo_p");
        }
        if (funcInfoSize < sizeof(zorClient_session_createFuncInfo_t)) {
            return LastError::fail(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE,
                                   "%s: funcInfoSize %zu is smaller than the record (%zu bytes)",
                                   function_p, funcInfoSize,
                                   sizeof(zorClient_session_createFuncInfo_t));
        }
        if (funcInfo_p->rxInfo.callback_p != nullptr || funcInfo_p->rxInfo.user_p != nullptr) {
            return LastError::fail(ZORCLIENT_SUBCODE_PARAM_OUT_OF_RANGE,
                                   "%s: funcInfo_p->rxInfo is reserved and must be zero; give "
                                   "the receive callback in rxMsgInfo",
                                   function_p);
        }
        auto contextLease = Handles::lookup(Handles::contexts(), context, function_p, "context");
        if (!contextLease) {
            return ZORCLIENT_FAIL;
        }
        PropertyList list;
        zorClient_returnCode_t rc = PropertyList::parse(props_p, function_p, list);
        SessionConfig::Changes properties;
        if (rc == ZORCLIENT_OK) {
            rc =
                SessionConfig::check(list, SessionConfig::Purpose::Create, function_p, &properties);
        }
        // The global array's backend keys first, so that the session's own win.
        std::vector<PropertyList::Entry> backendProperties = ProcessConfig::embeddedProperties();
        for (const PropertyList::Entry& entry : list.entries()) {
            if (PropertyList::hasPrefix(entry.first, ZORCLIENT_EMBEDDED_PROP_PREFIX)) {
                backendProperties.push_back(entry);
            }
        }
        if (rc == ZORCLIENT_OK) {
            rc = BackendFactory::checkProperties(PropertyList(backendProperties), function_p);
        }
        if (rc != ZORCLIENT_OK) {
            return rc;
        }
        Session::Callbacks callbacks;
        callbacks.event_p = funcInfo_p->eventInfo.callback_p;
        callbacks.eventUser_p = funcInfo_p->eventInfo.user_p;
        callbacks.rx_p = funcInfo_p->rxMsgInfo.callback_p;
        callbacks.rxUser_p = funcInfo_p->rxMsgInfo.user_p;
        Ref<Session> session(
            new Session(*contextLease, properties, std::move(backendProperties), callbacks));
        rc = contextLease->addSession(session, function_p);
        if (rc != ZORCLIENT_OK) {
            return rc;
        }
        try {
            session->setHandle(
                static_cast<zorClient_opaqueSession_pt>(Handles::sessions().insert(session)));
        } catch (...) {
            contextLease->removeSession(session.get());
            throw;
        }
        *session_p = session->handle();
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_session_connect(zorClient_opaqueSession_pt session) {
    const char* const function_p = __func__;
    return Handles::withSession(session, function_p,
                                [&](Session& s) { return s.connect(function_p); });
}

zorClient_returnCode_t zorClient_session_disconnect(zorClient_opaqueSession_pt session) {
    const char* const function_p = __func__;
    return Handles::withSession(session, function_p,
                                [&](Session& s) { return s.disconnect(function_p); });
}

zorClient_returnCode_t zorClient_session_destroy(zorClient_opaqueSession_pt* session_p) {
    const char* const function_p = __func__;
    return guarded(function_p, [&]() -> zorClient_returnCode_t {
        if (session_p == nullptr) {
            return LastError::failNullArgument(function_p, "session_p");
        }
        // Calls that wait inside the session (blocking sends, requests) end first, so that
        // retiring the handle does not wait for them.
        if (auto lease = Handles::sessions().acquire(*session_p)) {
            lease->markClosing();
        }
        Ref<Session> session = Handles::sessions().retire(*session_p);
        if (!session) {
            Handles::failLookup(*session_p, function_p, "*session_p");
            return ZORCLIENT_FAIL;
        }
        session->close();
        *session_p = nullptr;
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_session_getProperty(zorClient_opaqueSession_pt session,
                                                     const char* name_p, char* buffer_p,
                                                     size_t bufferSize) {
    const char* const function_p = __func__;
    return withNamedQuery(session, name_p, function_p, [&](Session& s) {
        if (buffer_p == nullptr) {
            return LastError::failNullArgument(function_p, "buffer_p");
        }
        return s.getProperty(name_p, buffer_p, bufferSize, function_p);
    });
}

zorClient_returnCode_t zorClient_session_modifyProperties(zorClient_opaqueSession_pt session,
                                                          zorClient_propertyArray_pt props_p) {
    const char* const function_p = __func__;
    return Handles::withSession(session, function_p, [&](Session& s) {
        if (props_p == nullptr) {
            return LastError::failNullArgument(function_p, "props_p");
        }
        PropertyList list;
        zorClient_returnCode_t rc = PropertyList::parse(props_p, function_p, list);
        return rc == ZORCLIENT_OK ? s.modifyProperties(list, function_p) : rc;
    });
}

zorClient_bool_t zorClient_session_isCapable(zorClient_opaqueSession_pt session,
                                             const char* name_p) {
    const char* const function_p = __func__;
    const zorClient_returnCode_t rc = withNamedQuery(session, name_p, function_p, [&](Session& s) {
        return s.isCapable(name_p, function_p) == 1 ? ZORCLIENT_OK : ZORCLIENT_NOT_FOUND;
    });
    return rc == ZORCLIENT_OK ? 1 : 0;
}

zorClient_returnCode_t zorClient_session_getCapability(zorClient_opaqueSession_pt session,
                                                       const char* name_p,
                                                       zorClient_field_t* field_p,
                                                       size_t fieldSize) {
    const char* const function_p = __func__;
    return withNamedQuery(session, name_p, function_p, [&](Session& s) {
        if (field_p == nullptr) {
            return LastError::failNullArgument(function_p, "field_p");
        }
        if (fieldSize < sizeof(zorClient_field_t)) {
            return LastError::fail(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE,
                                   "%s: fieldSize %zu is smaller than the record (%zu bytes)",
                                   function_p, fieldSize, sizeof(zorClient_field_t));
        }
        return s.getCapability(name_p, field_p, function_p);
    });
}

}  // extern "C"
