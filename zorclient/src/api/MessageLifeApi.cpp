// Message entry points: allocation, freeing, reset, duplication and the dump.
#include "api/ApiGuard.h"
#include "api/LastError.h"
#include "api/MessageHandles.h"
#include "core/MessageDump.h"
#include "core/MessagePool.h"
#include "core/TextWriter.h"

using namespace zorvane::zorclient;

extern "C" {

zorClient_returnCode_t zorClient_msg_alloc(zorClient_opaqueMsg_pt* msg_p) {
    if (msg_p == nullptr) {
        return LastError::failNullArgument(__func__, "msg_p");
    }
    *msg_p = nullptr;
    return guarded(__func__, [&]() -> zorClient_returnCode_t {
        *msg_p = MessagePool::allocate()->handle();
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_free(zorClient_opaqueMsg_pt* msg_p) {
    if (msg_p == nullptr) {
        return LastError::failNullArgument(__func__, "msg_p");
    }
    Message* msg = messageOf(*msg_p, __func__);
    if (msg == nullptr) {
        return ZORCLIENT_FAIL;
    }
    MessagePool::free(msg);
    *msg_p = nullptr;
    return ZORCLIENT_OK;
}

zorClient_returnCode_t zorClient_msg_reset(zorClient_opaqueMsg_pt msg) {
    Message* msg_p = messageOf(msg, __func__);
    if (msg_p == nullptr) {
        return ZORCLIENT_FAIL;
    }
    msg_p->clear();
    return ZORCLIENT_OK;
}

zorClient_returnCode_t zorClient_msg_dup(zorClient_opaqueMsg_pt msg,
                                         zorClient_opaqueMsg_pt* newMsg_p) {
    if (newMsg_p == nullptr) {
        return LastError::failNullArgument(__func__, "newMsg_p");
    }
    *newMsg_p = nullptr;
    const Message* msg_p = messageOf(msg, __func__);
    if (msg_p == nullptr) {
        return ZORCLIENT_FAIL;
    }
    return guarded(__func__, [&]() -> zorClient_returnCode_t {
        *newMsg_p = MessagePool::duplicate(*msg_p)->handle();
        return ZORCLIENT_OK;
    });
}

zorClient_returnCode_t zorClient_msg_dump(zorClient_opaqueMsg_pt msg, char* buffer_p,
                                          size_t bufferSize) {
    if (buffer_p == nullptr) {
        return LastError::failNullArgument(__func__, "buffer_p");
    }
    if (bufferSize == 0) {
        return LastError::fail(ZORCLIENT_SUBCODE_INSUFFICIENT_SPACE,
                               "%s: bufferSize is 0; the text needs at least its NUL", __func__);
    }
    // Callers print the buffer even after a failure, so it always holds a text.
    TextWriter out(buffer_p, bufferSize);
    const Message* msg_p = messageOf(msg, __func__);
    if (msg_p == nullptr) {
        return ZORCLIENT_FAIL;
    }
    MessageDump::write(*msg_p, out);
    return ZORCLIENT_OK;
}

}  // extern "C"
