// File names in the test programs' temporary folder that no other process uses: the cases of
// one program run as processes of their own, and two checkouts may test at the same time on one
// machine, so a fixed name would be written and removed under another test's feet.
#pragma once

#include <gtest/gtest.h>
#include <unistd.h>

#include <string>

namespace zorvane::pubsub::test {

inline std::string tempPath(const std::string& name) {
    return ::testing::TempDir() + std::to_string(getpid()) + "_" + name;
}

}  // namespace zorvane::pubsub::test
