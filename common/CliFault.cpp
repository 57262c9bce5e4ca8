#include "common/CliFault.h"

#include <cstdio>

#include "common/ProcessExit.h"

namespace zorvane::pubsub {

namespace {
void writeLine(std::string_view line) {
    std::fwrite(line.data(), 1, line.size(), stderr);
    std::fputc('\n', stderr);
}
}  // namespace

void cliFault(std::string_view text) {
    writeLine(text);
    std::fputc('\n', stderr);
    processExit(PROCESS_EXIT_FAULT);
}

void cliFault(std::string_view text, std::string_view value) {
    std::fwrite(text.data(), 1, text.size(), stderr);
    cliFault(value);
}

void cliFaultLines(std::initializer_list<std::string_view> lines) {
    cliWarningLines(lines);
    processExit(PROCESS_EXIT_FAULT);
}

void cliWarningLines(std::initializer_list<std::string_view> lines) {
    for (const std::string_view line : lines) {
        writeLine(line);
    }
}

}  // namespace zorvane::pubsub
