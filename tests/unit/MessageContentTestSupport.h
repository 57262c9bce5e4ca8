// Helpers shared by the tests of message content generation.
#pragma once

#include <gtest/gtest.h>

#include <string>
#include <vector>

#include "common/DiskUtils.h"
#include "common/PublishProperties.h"
#include "tests/unit/TempPath.h"

namespace zorvane::pubsub::contenttest {

// A file in the test's temporary folder; returns its path.
inline std::string tempFile(const std::string& name, const std::string& contents) {
    const std::string path = test::tempPath(name);
    DiskUtils::writeFile(path, contents);
    return path;
}

// A record with one group of topics, each of weight 1.
inline PublishProperties withTopics(const std::vector<std::string>& topics) {
    PublishProperties props;
    props.setTopicsArray({topics});
    props.setTopicsWeightsArray({std::vector<double>(topics.size(), 1.0)});
    return props;
}

}  // namespace zorvane::pubsub::contenttest
