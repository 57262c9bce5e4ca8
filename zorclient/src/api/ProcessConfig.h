// Process-wide state of the library: whether zorClient_initialize ran, and the settings of its
// global property array (data block quanta, library paths, embedded broker keys). The message
// pools read the quanta, the embedded broker its keys. Thread-safe.
#pragma once

#include <array>
#include <cstdint>
#include <string>
#include <string_view>
#include <vector>

#include "api/PropertyList.h"
#include "zorClientMsg.h"

namespace zorvane::zorclient {

class ProcessConfig {
  public:
    // Byte sizes of the data block quanta when the global array does not set them.
    static constexpr std::array<std::uint32_t, ZORCLIENT_MSG_NUM_DBQUANTA> DEFAULT_QUANTA = {
        1024, 4096, 16384, 65536, 262144};

    // Checks the global properties and, when all are good, takes them and marks the process
    // initialised. Already initialised: changes nothing and succeeds. A bad value fails naming
    // the key (function_p names the caller) and changes nothing.
    static zorClient_returnCode_t begin(const PropertyList& list, const char* function_p);

    // Forgets the settings; the process is no longer initialised.
    static void end();

    static bool isInitialized() noexcept;

    // Size of quantum index (0..ZORCLIENT_MSG_NUM_DBQUANTA-1), as set or by default.
    static std::uint32_t dataBlockQuantum(int index);

    // Value of "GLOBAL_GSS_KRB_LIB", "GLOBAL_SSL_LIB" or "GLOBAL_CRYPTO_LIB"; "" when not given.
    static std::string libraryPath(std::string_view key);

    // The "EMBEDDED_..." pairs of the global array, in their order (repeats kept; last wins).
    static std::vector<PropertyList::Entry> embeddedProperties();
};

}  // namespace zorvane::zorclient
