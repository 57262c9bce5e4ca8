#include "common/FlowStatus.h"

#include <sstream>

namespace zorvane::pubsub {

const char* FlowStatus::getAFIStateString() const {
    switch (afiState_m) {
        case AFI_ACTIVE:
            return "ACTIVE";
        case AFI_INACTIVE:
            return "INACTIVE";
        case AFI_UNKNOWN:
            return "UNKNOWN";
        default:
            return "Unsupported AFI state";
    }
}

std::string FlowStatus::toString() const {
    std::ostringstream out;
    out << "{\n"
        << "  Is Up       = " << isUp_m << "\n"
        << "  AFI State   = " << getAFIStateString() << "\n"
        << "}";
    return out.str();
}

}  // namespace zorvane::pubsub
