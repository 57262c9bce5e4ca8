// What a client reports about one of its flows: whether it is up, and its
// active-flow indication. A plain value; the binding keeps one per flow and
// hands out copies.
#pragma once

#include <memory>
#include <string>

#include "common/dataTypes.h"

namespace zorvane::pubsub {

class FlowStatus {
  public:
    enum ActiveFlowIndicationType {
        AFI_UNKNOWN = 0,
        AFI_ACTIVE = 1,
        AFI_INACTIVE = 2,
        NUM_AFI_TYPES = 3,
    };

    FlowStatus() = default;
    FlowStatus(bool isUp, INT32 afiState) : isUp_m(isUp), afiState_m(afiState) {}

    // A copy on the heap; the caller owns it.
    std::unique_ptr<FlowStatus> clone() const { return std::make_unique<FlowStatus>(*this); }

    bool getIsUp() const { return isUp_m; }
    void setIsUp(bool isUp) { isUp_m = isUp; }
    INT32 getAFIState() const { return afiState_m; }
    void setAFIState(INT32 afiState) { afiState_m = afiState; }

    // "ACTIVE", "INACTIVE", "UNKNOWN", or "Unsupported AFI state".
    const char* getAFIStateString() const;

    // "{", the two fields on labelled lines, "}".
    std::string toString() const;

  private:
    bool isUp_m = false;
    INT32 afiState_m = AFI_UNKNOWN;
};

}  // namespace zorvane::pubsub
