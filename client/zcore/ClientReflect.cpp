// Sending received messages on (reflect and reply modes, on the context
// thread) and the blocking request of requestReply.
#include <cstdio>
#include <string>

#include "client/zcore/Client.h"
#include "client/zcore/LibraryError.h"
#include "client/zcore/TopicExpression.h"
#include "common/Log.h"
#include "common/PubSubException.h"

namespace zorvane::pubsub {

namespace {

// A library message freed when the scope ends.
class OwnedMsg {
  public:
    OwnedMsg() = default;
    ~OwnedMsg() {
        if (msg_m != nullptr) {
            zorClient_msg_free(&msg_m);
        }
    }
    OwnedMsg(const OwnedMsg&) = delete;
    OwnedMsg& operator=(const OwnedMsg&) = delete;
    zorClient_opaqueMsg_pt get() const { return msg_m; }
    zorClient_opaqueMsg_pt* address() { return &msg_m; }

  private:
    zorClient_opaqueMsg_pt msg_m = nullptr;
};

}  // namespace

void Client::reflectMsgImpl(AbstractMessage* msg_p) {
    auto msgToReflect_p = static_cast<zorClient_opaqueMsg_pt>(msg_p->getMsgPointer());

    if (props_m.getClientMode() == "reply") {
        zorClient_destination_t destination{};
        zorClient_returnCode_t rc =
            zorClient_msg_getReplyTo(msgToReflect_p, &destination, sizeof destination);
        if (rc != ZORCLIENT_OK) {
            // A request without a reply-to cannot be answered; the run goes
            // on with the next one.
            LOG_WARNING("Could not reflect message, no reply-to destination set; rc=\"%s\"",
                        zorClient_returnCodeToString(rc));
            return;
        }
        // The destination points into the message: copy it (on the stack,
        // this is the receive path) before the message changes.
        char replyTopic[ZORCLIENT_TOPIC_MAX_SIZE];
        std::snprintf(replyTopic, sizeof replyTopic, "%s",
                      destination.dest != nullptr ? destination.dest : "");
        destination.dest = replyTopic;
        if (zorClient_msg_setAsReplyMsg(msgToReflect_p, 1) != ZORCLIENT_OK) {
            handleErrorForAsync(ZORCLIENT_LOG_ERROR, "Error setting as reply msg");
            return;
        }
        if (zorClient_msg_setDestination(msgToReflect_p, &destination, sizeof destination) !=
            ZORCLIENT_OK) {
            handleErrorForAsync(ZORCLIENT_LOG_ERROR, "Error adding reply topic to message");
            return;
        }
        if (zorClient_msg_deleteReplyTo(msgToReflect_p) != ZORCLIENT_OK) {
            handleErrorForAsync(ZORCLIENT_LOG_ERROR, "Error deleting reply to");
            return;
        }
    } else if (zorClient_msg_setTopicPtr(msgToReflect_p, props_m.getClientReflectTopic().c_str()) !=
               ZORCLIENT_OK) {
        LOG_ERROR("CLIENT %s: Unable to set destination in message", clientIdStr_m.c_str());
    }

    // Sends do not block on this session (SESSION_SEND_BLOCKING "0"): a
    // full window drops this reflection rather than stall the context.
    const zorClient_returnCode_t rc = zorClient_session_sendMsg(session_mp, msgToReflect_p);
    if (rc != ZORCLIENT_OK) {
        LOG_ERROR("Error reflecting message: %s", zorClient_returnCodeToString(rc));
        if (rc != ZORCLIENT_WOULD_BLOCK) {
            handleErrorForAsync(ZORCLIENT_LOG_ERROR, "Error reflecting message");
        }
    }
}

std::string Client::requestReplyImpl(const std::string& topic, const std::string& body) {
    OwnedMsg request;
    if (zorClient_msg_alloc(request.address()) != ZORCLIENT_OK) {
        throwClientError("Unable to allocate request message");
    }
    std::string topicString;
    zorClient_subscribeFlags_t flags = 0;
    std::string demuxId;
    TopicExpression::build(topic, topicString, flags, demuxId);

    if (zorClient_msg_setTopicPtr(request.get(), topicString.c_str()) != ZORCLIENT_OK) {
        throwClientError("Unable to set destination in message");
    }
    if (zorClient_msg_setBinaryAttachmentPtr(request.get(), body.data(),
                                             static_cast<zorClient_uint32_t>(body.size())) !=
        ZORCLIENT_OK) {
        throwClientError("Unable to set attachment in message");
    }
    OwnedMsg reply;
    if (zorClient_session_sendRequest(session_mp, request.get(), reply.address(), 10000) !=
        ZORCLIENT_OK) {
        throw PubSubException("CLIENT " + clientIdStr_m + ": error during requestReply" +
                              "Error details - " + LibraryError::fetch().details());
    }
    void* data_p = nullptr;
    zorClient_uint32_t size = 0;
    if (zorClient_msg_getBinaryAttachmentPtr(reply.get(), &data_p, &size) != ZORCLIENT_OK) {
        throw PubSubException("CLIENT " + clientIdStr_m + ": unable to retrieve attachment" +
                              "Error details - " + LibraryError::fetch().details());
    }
    return std::string(static_cast<const char*>(data_p), size);
}

}  // namespace zorvane::pubsub
