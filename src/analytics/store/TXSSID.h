#pragma once

#include <cstdint>
#include <optional>
#include <string>

namespace trimora::analytics {

/// Where a session stands. The numbers are those in the store.
enum class SessionStatus : int {
    active = 0,   ///< collects events now
    done = 1,     ///< finished; waits to be posted, or to be posted again
    sending = 2,  ///< a request for it was built and is in flight
};

/// The state of one session, as it lies in the store. At most one row bears a given name.
struct TXSSID {
    std::int64_t row = 0;             ///< place in the store; 0 before the first save
    std::optional<std::string> name;  ///< the session id, a UUID string
    int status = 0;                   ///< a SessionStatus, or whatever number another program left there
    double changeStatusTime = 0;      ///< Unix time in seconds of the last status write
    std::int64_t owner = 0;           ///< the process that wrote the status last; see StoreLocks
};

}  // namespace trimora::analytics
