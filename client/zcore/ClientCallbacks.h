// The plain functions the library calls back into a Client through: each
// takes the library's arguments and the user pointer given with the
// callback, and forwards to the object. All run on the context thread.
// Only the client's own sources include this header.
#pragma once

#include "zorClient.h"

namespace zorvane::pubsub {

// user_p: the Client.
void clientExtern_eventFunc(zorClient_opaqueSession_pt session,
                            zorClient_session_eventCallbackInfo_pt eventInfo_p, void* user_p);
// user_p: the Client.
zorClient_rxMsgCallback_returnCode_t clientExtern_messageRxFunc(zorClient_opaqueSession_pt session,
                                                                zorClient_opaqueMsg_pt msg,
                                                                void* user_p);
// user_p: the Client's DemuxCallbackData of the subscription's id.
zorClient_rxMsgCallback_returnCode_t clientExtern_dispatchMsgRxFunc(
    zorClient_opaqueSession_pt session, zorClient_opaqueMsg_pt msg, void* user_p);

}  // namespace zorvane::pubsub
