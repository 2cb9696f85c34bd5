#pragma once

#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>
#include <string_view>

#include "analytics/store/ManagedObjectContext.h"
#include "analytics/store/StoreCoordinator.h"

namespace trimora::analytics {

/// The stack under the library's records: the store's file, its coordinator, and the one context
/// through which everybody works. Each is made on first use and kept. Any thread.
class TXAnalyticsCoreDataManager {
 public:
    [[nodiscard]] static TXAnalyticsCoreDataManager& sharedManager();

    [[nodiscard]] ManagedObjectContext& managedObjectContext();
    [[nodiscard]] StoreCoordinator& storeCoordinator();

    /// A new object of the entity ("TXEvent" or "TXSSID") for this context, or nothing for another
    /// name. It reaches the store with its first save.
    [[nodiscard]] static std::optional<ManagedObject> entityForName(std::string_view name,
                                                                    ManagedObjectContext& context);

    /// "telemetrix.db" in the folder named after the application (display name, else bundle name) in
    /// the application-support directory. Makes the folder, closed to other people, where it is
    /// missing.
    [[nodiscard]] std::filesystem::path dbFileURL() const;

    /// Where the application keeps the description of the two entities (resource "TelemetrixModel" of
    /// type "momd"); logs a debug warning where it has none. The description is for people and tools:
    /// the library itself carries its tables within.
    [[nodiscard]] std::optional<std::filesystem::path> coreDataModelFileURL() const;

 private:
    TXAnalyticsCoreDataManager() = default;

    std::mutex mutex_;
    std::unique_ptr<StoreCoordinator> coordinator_;
    std::unique_ptr<ManagedObjectContext> context_;
};

}  // namespace trimora::analytics
