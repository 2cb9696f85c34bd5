#pragma once

#include <string>
#include <vector>

#include "analytics/store/ManagedObjectContext.h"

namespace trimora::analytics {

/// The states of sessions in the store. Failures are logged as "Telemetrix: <reason>" and the
/// operation is dropped (a failed status write leaves the status before); a fetch then returns
/// nothing. Any thread; each call works on the disk before it returns.
class TXAnalyticsSSIDDataAccessDefault {
 public:
    /// Writes the status of the session with this id and the moment of the change, making its row
    /// where there is none. More than one row of the name is an inconsistency: it is logged and the
    /// first row is written.
    void saveOrUpdateSSID(const std::string& name, SessionStatus status);

    [[nodiscard]] std::vector<TXSSID> allSSIDWithStatus(SessionStatus status, PropertyValues values,
                                                        ManagedObjectContext& context);
    [[nodiscard]] std::vector<TXSSID> allSSID(PropertyValues values, ManagedObjectContext& context);
    [[nodiscard]] std::vector<TXSSID> ssidWithName(const std::string& name, PropertyValues values,
                                                   ManagedObjectContext& context);

    /// Removes the one row of this object.
    void deleteSSIDObject(const TXSSID& session, ManagedObjectContext& context);

    /// Removes every row of the name.
    void deleteSSID(const std::string& name, ManagedObjectContext& context);

    /// Empties the entity.
    void deleteAllObjects();

    /// Now, in Unix seconds: what `changeStatusTime` is set to.
    [[nodiscard]] static double creationTime();

 private:
    [[nodiscard]] foundation::Result<void> writeStatus(const std::string& name, SessionStatus status,
                                                       ManagedObjectContext& context);
};

}  // namespace trimora::analytics
