// A Client whose protected parts the tests of the binding look at, and
// which keeps a copy of the tool data of every message it analyses with
// per-message details (the receive path calls setLastMessageDetails after
// decoding).
#pragma once

#include <mutex>
#include <vector>

#include "client/zcore/Client.h"
#include "common/ToolData.h"

namespace zorvane::pubsub {

class ClientProbe : public Client {
  public:
    using Client::Client;
    using Client::MsgObjectTypeReading;

    zorClient_opaqueSession_pt session() const { return session_mp; }
    INT32 maxPubRetries() const { return maxPubRetries_m; }
    // Messages that entered the receive analysis; any thread may read it.
    UINT64 msgsRecv() const { return msgsRecv_m.load(); }
    void readObjectType(AbstractMessage* msg_p, MsgObjectTypeReading& reading) {
        readMsgObjectTypeImpl(msg_p, reading);
    }

    std::vector<ToolData> receivedToolData() const {
        std::lock_guard<std::mutex> lock(mutex_m);
        return received_m;
    }

  protected:
    void setLastMessageDetails(AbstractMessage* msg_p) override {
        {
            std::lock_guard<std::mutex> lock(mutex_m);
            received_m.push_back(*msg_p->getToolData());
        }
        Client::setLastMessageDetails(msg_p);
    }

  private:
    mutable std::mutex mutex_m;
    std::vector<ToolData> received_m;
};

}  // namespace zorvane::pubsub
