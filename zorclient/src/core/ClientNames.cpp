#include "core/ClientNames.h"

#include <unistd.h>

#include <atomic>
#include <cstdio>

namespace zorvane::zorclient {

std::string ClientNames::generate() {
    static std::atomic<unsigned long long> next_s{1};
    char host[65] = {0};
    if (gethostname(host, sizeof host - 1) != 0 || host[0] == '\0') {
        std::snprintf(host, sizeof host, "localhost");
    }
    // 7 + 64 + 1 + 10 + 1 + 20 characters at most: well below the 164 a name may have.
    char name[128];
    std::snprintf(name, sizeof name, "client-%s-%ld-%llu", host, static_cast<long>(getpid()),
                  next_s.fetch_add(1, std::memory_order_relaxed));
    return name;
}

}  // namespace zorvane::zorclient
