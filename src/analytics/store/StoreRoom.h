#pragma once

#include <cstdint>

#include "analytics/store/SqliteDatabase.h"
#include "analytics/store/StoreSettings.h"
#include "foundation/Result.h"

namespace trimora::analytics {

/// What had to go so that the store stays within its limits.
struct DroppedFromStore {
    std::int64_t sessions = 0;
    std::int64_t events = 0;
};

/// Brings the store back within its limits inside the current transaction: finished sessions go first,
/// those that finished longest ago before others, then events that belong to no session. What goes is
/// added to `dropped` and to the store's own count. Returns an error where that is not enough (the live
/// session alone fills the store).
[[nodiscard]] foundation::Result<void> makeRoom(SqliteDatabase& database, const StoreSettings& limits,
                                                DroppedFromStore& dropped);

}  // namespace trimora::analytics
