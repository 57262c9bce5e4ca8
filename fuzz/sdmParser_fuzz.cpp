// Fuzz target of the structured message description reader: any bytes,
// written to a file and read as a description (and, split at line ends, as
// given lines), must end in a description or a PubSubException; never a
// crash, a hang or a leak.
//
// Sources: common/SdmProperties.cpp, common/SdmPropertiesParse.cpp,
// common/DiskUtils.cpp, common/CommonUtils.cpp.
#include <unistd.h>

#include <cstddef>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <string>
#include <vector>

#include "common/PubSubException.h"
#include "common/SdmProperties.h"

namespace {

char inputPath_s[] = "/tmp/sdmParser_fuzz_XXXXXX";

void removeInputFile() {
    unlink(inputPath_s);
}

// One file per process, made on the first input and rewritten for each.
const char* inputPath() {
    static const bool made = [] {
        const int fd = mkstemp(inputPath_s);
        if (fd < 0) {
            std::perror("mkstemp");
            std::abort();
        }
        close(fd);
        std::atexit(removeInputFile);
        return true;
    }();
    (void)made;
    return inputPath_s;
}

void parseAsFile(const std::uint8_t* data, std::size_t size) {
    std::FILE* file = std::fopen(inputPath(), "wb");
    if (file == nullptr) {
        std::abort();
    }
    if (size > 0 && std::fwrite(data, 1, size, file) != size) {
        std::abort();
    }
    std::fclose(file);
    zorvane::pubsub::SdmProperties props;
    try {
        props.parseInputFile(inputPath());
        (void)props.toString();
    } catch (const zorvane::pubsub::PubSubException&) {
    }
}

void parseAsLines(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> lines(1);
    for (std::size_t index = 0; index < size; ++index) {
        if (data[index] == '\n') {
            lines.emplace_back();
        } else {
            lines.back().push_back(static_cast<char>(data[index]));
        }
    }
    zorvane::pubsub::SdmProperties props;
    try {
        props.parseInputString(lines);
        (void)props.toString();
    } catch (const zorvane::pubsub::PubSubException&) {
    }
}

}  // namespace

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    parseAsFile(data, size);
    parseAsLines(data, size);
    return 0;
}
