#include "analytics/store/TXAnalyticsCoreDataManager.h"

#include <system_error>

#include "analytics/Diagnostics.h"
#include "analytics/Installation.h"
#include "analytics/ProcessWide.h"
#include "analytics/info/ApplicationBundle.h"
#include "files/PrivateFolder.h"

namespace trimora::analytics {

TXAnalyticsCoreDataManager& TXAnalyticsCoreDataManager::sharedManager() {
    static ProcessWide<TXAnalyticsCoreDataManager> shared;
    return shared.get([] { return new TXAnalyticsCoreDataManager; });
}

ManagedObjectContext& TXAnalyticsCoreDataManager::managedObjectContext() {
    StoreCoordinator& coordinator = storeCoordinator();
    const std::scoped_lock lock(mutex_);
    if (!context_)
        context_ = std::make_unique<ManagedObjectContext>(coordinator);
    return *context_;
}

StoreCoordinator& TXAnalyticsCoreDataManager::storeCoordinator() {
    const std::scoped_lock lock(mutex_);
    if (!coordinator_)
        coordinator_ = std::make_unique<StoreCoordinator>(dbFileURL(), wiring().store, wiring().clock);
    return *coordinator_;
}

std::optional<ManagedObject> TXAnalyticsCoreDataManager::entityForName(std::string_view name,
                                                                       ManagedObjectContext& /*context*/) {
    if (name == "TXEvent")
        return TXEvent{};
    if (name == "TXSSID")
        return TXSSID{};
    return std::nullopt;
}

std::filesystem::path TXAnalyticsCoreDataManager::dbFileURL() const {
    const std::filesystem::path folder =
        wiring().applicationSupportDirectory / applicationName(wiring().bundle);
    const auto made = files::makeFolder(folder);
    std::error_code ignored;
    if (!std::filesystem::is_directory(folder, ignored))
        debugWarning(formatted("Wasn't able to create dir %s %s", folder.c_str(),
                               made ? "something else has its name" : made.error().message.c_str()));
    return folder / "telemetrix.db";
}

std::optional<std::filesystem::path> TXAnalyticsCoreDataManager::coreDataModelFileURL() const {
    const std::string name = "TelemetrixModel";
    const std::string type = "momd";
    auto found = wiring().bundle.pathForResource(name, type);
    if (!found)
        debugWarning(formatted("Wasn't able to find %s.%s", name.c_str(), type.c_str()));
    return found;
}

}  // namespace trimora::analytics
