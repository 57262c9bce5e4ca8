// The handle tables of the objects the application holds, and the lookups every entry point
// starts with: a null handle fails with ZORCLIENT_SUBCODE_PARAM_NULL_PTR, a stale or foreign one
// with ZORCLIENT_SUBCODE_INVALID_HANDLE, each naming the function and the argument.
#pragma once

#include <utility>

#include "api/ApiGuard.h"
#include "api/HandleTable.h"
#include "api/LastError.h"
#include "core/Context.h"
#include "core/Session.h"

namespace zorvane::zorclient {

class Handles {
  public:
    static HandleTable<Context>& contexts() noexcept;
    static HandleTable<Session>& sessions() noexcept;

    // The object behind handle_p, or an empty Lease with the error info set.
    template <typename T>
    static typename HandleTable<T>::Lease lookup(HandleTable<T>& table, const void* handle_p,
                                                 const char* function_p,
                                                 const char* argName_p) noexcept {
        typename HandleTable<T>::Lease lease = table.acquire(handle_p);
        if (!lease) {
            failLookup(handle_p, function_p, argName_p);
        }
        return lease;
    }

    // Runs body(T&) on the object behind handle_p, holding its Lease for the whole body, with
    // exceptions turned into failures (guarded()); a handle that lookup() refuses fails as there.
    template <typename T, typename Body>
    static zorClient_returnCode_t with(HandleTable<T>& table, const void* handle_p,
                                       const char* function_p, const char* argName_p,
                                       Body&& body) noexcept {
        return guarded(function_p, [&]() -> zorClient_returnCode_t {
            typename HandleTable<T>::Lease lease = lookup(table, handle_p, function_p, argName_p);
            return lease ? body(*lease) : ZORCLIENT_FAIL;
        });
    }

    // with() for the session argument of a session entry point.
    template <typename Body>
    static zorClient_returnCode_t withSession(const void* session, const char* function_p,
                                              Body&& body) noexcept {
        return with(sessions(), session, function_p, "session", std::forward<Body>(body));
    }

    // Sets the error info for a handle that acquire() refused.
    static void failLookup(const void* handle_p, const char* function_p,
                           const char* argName_p) noexcept;
};

}  // namespace zorvane::zorclient
