#pragma once

#include <string>

#include "analytics/store/TXAnalyticsEventDataAccessDefault.h"
#include "analytics/store/TXAnalyticsSSIDDataAccessDefault.h"

namespace trimora::analytics {

/// The store as the library's other parts use it: one access object for each entity, and what concerns
/// both.
///
/// One for the process; made on first use, kept as long as the Installation. Any thread; each call works
/// on the disk before it returns. Failures are logged as "Telemetrix: <reason>" and the operation is
/// dropped.
class TXAnalyticsDBManager {
 public:
    [[nodiscard]] static TXAnalyticsDBManager& sharedManager();

    [[nodiscard]] TXAnalyticsEventDataAccessDefault& eventDataAccess() { return eventDataAccess_; }
    [[nodiscard]] TXAnalyticsSSIDDataAccessDefault& ssidDataAccess() { return ssidDataAccess_; }

    /// Empties both entities and overwrites what they held.
    void deleteAllObjects();

    /// Removes a session: its events, then its row.
    void deleteAllDataForSession(const std::string& session);

 private:
    TXAnalyticsDBManager() = default;

    TXAnalyticsEventDataAccessDefault eventDataAccess_;
    TXAnalyticsSSIDDataAccessDefault ssidDataAccess_;
};

}  // namespace trimora::analytics
