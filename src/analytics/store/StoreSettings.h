#pragma once

#include <cstdint>

namespace trimora::analytics {

/// How far the store may grow and how long it waits. Whoever reaches a limit loses the oldest finished
/// sessions first; see StoreCoordinator.
struct StoreSettings {
    std::int64_t maxEvents = 200'000;            ///< events in the store, all sessions together
    std::int64_t maxBytes = 64LL * 1024 * 1024;  ///< bytes of their bodies, all together
    std::int64_t maxSessions = 10'000;           ///< session rows
    int busyMilliseconds = 5'000;                ///< how long one operation waits for another process
    enum class Access : std::uint8_t { readWrite, readOnly } access = Access::readWrite;
};

}  // namespace trimora::analytics
