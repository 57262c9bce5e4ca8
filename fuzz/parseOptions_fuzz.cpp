// Feeds CliProperties::parseOptions arbitrary argument vectors. The input is
// split at line ends into arguments. The parser must never crash, hang or
// leak, and every way it ends the process must be status 0, 1 or 255; the
// exit hook turns those ends into an exception so that one run can try
// many command lines.
//
// Two kinds of input are skipped because what they do is by design, not a
// fault: a "/" could name any file of the machine (such as a device that
// never ends), and a number of six digits or more can ask for lists of
// millions of generated names, which only costs memory. Everything runs in
// a fresh temporary directory holding two small list files, "t" and "q".
#include <unistd.h>

#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <fstream>
#include <string>
#include <vector>

#include "common/CliProperties.h"
#include "common/ProcessExit.h"

namespace {

struct FuzzExit {
    int status;
};

void throwingExit(int status) {
    throw FuzzExit{status};
}

char workDir_s[] = "/tmp/parseOptions_fuzz.XXXXXX";

// The parser never writes files, so the directory holds only the two lists.
void removeWorkDir() {
    std::remove("t");
    std::remove("q");
    rmdir(workDir_s);
}

bool worthParsing(const std::vector<std::string>& args) {
    for (const std::string& arg : args) {
        if (arg.find('/') != std::string::npos) {
            return false;
        }
        size_t digits = 0;
        for (const char c : arg) {
            digits = (c >= '0' && c <= '9') ? digits + 1 : 0;
            if (digits >= 6) {
                return false;
            }
        }
    }
    return true;
}

}  // namespace

extern "C" int LLVMFuzzerInitialize(int*, char***) {
    if (mkdtemp(workDir_s) == nullptr || chdir(workDir_s) != 0) {
        std::perror("parseOptions_fuzz: temporary directory");
        std::abort();
    }
    std::atexit(&removeWorkDir);
    std::ofstream("t") << "a\nb:2\n\n#P2P/v:h/q\n";
    std::ofstream("q") << "q1\nq2:0.5\n";
    // The help is long and says nothing about faults.
    if (std::freopen("/dev/null", "w", stdout) == nullptr) {
        std::abort();
    }
    zorvane::pubsub::setProcessExitHook(&throwingExit);
    return 0;
}

extern "C" int LLVMFuzzerTestOneInput(const std::uint8_t* data, std::size_t size) {
    std::vector<std::string> args = {"vexload_c"};
    std::string current;
    for (std::size_t i = 0; i < size; ++i) {
        if (data[i] == '\n') {
            args.push_back(current);
            current.clear();
        } else {
            current += static_cast<char>(data[i]);
        }
    }
    if (size > 0) {
        args.push_back(current);
    }
    if (!worthParsing(args)) {
        return -1;  // keeps the input out of the corpus
    }
    std::vector<char*> argV;
    for (std::string& arg : args) {
        argV.push_back(arg.data());
    }
    argV.push_back(nullptr);

    zorvane::pubsub::CliProperties props(zorvane::pubsub::TOOL_NAME, "1.0.0.1");
    try {
        props.parseOptions(static_cast<int>(args.size()), argV.data());
    } catch (const FuzzExit& exit) {
        if (exit.status != 0 && exit.status != 1 && exit.status != 255) {
            std::fprintf(stderr, "parseOptions ended with status %d\n", exit.status);
            std::abort();
        }
    }
    return 0;
}
