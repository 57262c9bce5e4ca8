// The "SESSION_..." properties of a session: every key an application may pass, its check and
// its default, and the current values as text (what zorClient_session_getProperty returns).
//
// Changes are made in two steps, so that a call with one bad key changes nothing: check()
// reads an array into a list of changes (all values valid, the last of a key wins), commit()
// takes them.
//
// Threads: not thread-safe; Session guards it with its mutex.
#pragma once

#include <chrono>
#include <cstdint>
#include <map>
#include <string>
#include <string_view>
#include <vector>

#include "api/PropertyList.h"

namespace zorvane::zorclient {

class SessionConfig {
  public:
    enum class Purpose { Create, Modify };
    using Changes = std::vector<PropertyList::Entry>;

    // Every key with its default.
    SessionConfig();

    // Checks the "SESSION_..." keys of list for purpose into *changes_p. Fails (error info
    // naming function_p and the key) for a bad value, a read-only key, or, with Modify, a key
    // that cannot change on an existing session. Unknown "SESSION_..." keys are logged and
    // skipped; keys of other prefixes are skipped silently.
    static zorClient_returnCode_t check(const PropertyList& list, Purpose purpose,
                                        const char* function_p, Changes* changes_p);

    void commit(const Changes& changes);

    // The current text of key; null for a key that is not a session property.
    const std::string* value(std::string_view key) const;
    // True for keys whose values are secrets that getProperty does not give out.
    static bool isSecret(std::string_view key);

    const std::string& text(std::string_view key) const;
    bool flag(std::string_view key) const;
    std::int64_t integer(std::string_view key) const;

    // Typed views of the values core acts on.
    const std::string& host() const;
    const std::string& clientName() const;
    bool connectBlocking() const;
    // -1: for ever.
    std::int64_t reconnectRetries() const;
    std::chrono::milliseconds reconnectRetryWait() const;

  private:
    std::map<std::string, std::string, std::less<>> values_m;
};

}  // namespace zorvane::zorclient
