#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "analytics/TelemetrixForTests.h"
#include "analytics/store/StoreIntegrityForTests.h"

/// What the tests of the store's bad days share.
namespace trimora::analytics {

/// The library on a store that the test breaks from outside.
class StoreFaultsTest : public TelemetrixTest {
 protected:
    StoreFaultsTest() { storeSettings.busyMilliseconds = 50; }

    void installAgain() {
        quit();
        install();
    }
    [[nodiscard]] std::filesystem::path file() const { return home.path() / "Trimora" / "telemetrix.db"; }

    static bool save(const std::string& body, const std::string& session = "A") {
        TXEvent event{0, session, body};
        return TXAnalyticsDBManager::sharedManager().eventDataAccess().saveEvent(event, context());
    }
    static std::size_t countEvents(const std::string& session = "A") {
        const auto found = context().eventsOfSession(session, PropertyValues::fetched);
        return found ? found->size() : 0;
    }
    static std::string integrity() {
        return integrityOf(TXAnalyticsCoreDataManager::sharedManager().storeCoordinator());
    }
    [[nodiscard]] std::vector<std::filesystem::path> movedAside() const { return movedAsideFrom(file()); }
    void writeFile(const std::string& contents) const {
        std::filesystem::create_directories(file().parent_path());
        std::ofstream(file(), std::ios::binary) << contents;
    }
    static std::string contentsOf(const std::filesystem::path& path) {
        std::ifstream stream(path, std::ios::binary);
        return {std::istreambuf_iterator<char>(stream), {}};
    }
};

}  // namespace trimora::analytics
