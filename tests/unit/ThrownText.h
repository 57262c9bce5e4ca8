// The text of the PubSubException a piece of test code raises, for tests
// that check refusals by their exact words.
#pragma once

#include <functional>
#include <string>

#include "common/PubSubException.h"

namespace zorvane::pubsub::test {

// what() of the PubSubException body throws, or "(nothing thrown)".
inline std::string messageOf(const std::function<void()>& body) {
    try {
        body();
    } catch (const PubSubException& e) {
        return e.what();
    }
    return "(nothing thrown)";
}

}  // namespace zorvane::pubsub::test
