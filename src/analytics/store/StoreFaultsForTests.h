#pragma once

#include <filesystem>
#include <fstream>
#include <iterator>
#include <string>
#include <vector>

#include "analytics/TelemetrixForTests.h"

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
        std::string answer;
        const auto done =
            TXAnalyticsCoreDataManager::sharedManager().storeCoordinator().read([&](auto& database) {
                auto check = database.statement("PRAGMA integrity_check");
                while (check.step())
                    answer += check.text(0).value_or("");
                return check.result();
            });
        return done ? answer : done.error().message;
    }
    [[nodiscard]] std::vector<std::filesystem::path> movedAside() const {
        std::vector<std::filesystem::path> found;
        for (const auto& entry : std::filesystem::directory_iterator(file().parent_path())) {
            if (entry.path().string().find(".damaged-") != std::string::npos)
                found.push_back(entry.path());
        }
        return found;
    }
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
