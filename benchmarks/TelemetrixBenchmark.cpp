#include <sqlite3.h>
#include <stdlib.h>

#include <cstdio>
#include <filesystem>
#include <map>
#include <nlohmann/json.hpp>
#include <string>

#include "Comparison.h"
#include "analytics/Installation.h"
#include "analytics/info/ApplicationBundle.h"
#include "analytics/info/LocationSource.h"
#include "analytics/public/TXAnalyticsQueue.h"
#include "analytics/public/Telemetrix.h"
#include "analytics/session/HttpTransport.h"
#include "foundation/ManualQueues.h"
#include "foundation/RealTime.h"
#include "foundation/ThreadQueues.h"
#include "host/IniUserDefaults.h"
#include "host/MachineDevice.h"
#include "host/NetlinkReachability.h"

// What a call of logEvent costs the thread that makes it, and how many events a second are stored, beside
// the plainest ways of keeping the same text: a line in a log file, a row in a database.
namespace {

using namespace trimora;

constexpr int kEvents = 2000;
constexpr const char* kName = "button open pressed";

class Bundle final : public analytics::ApplicationBundle {
 public:
    [[nodiscard]] std::optional<std::string> infoValue(std::string_view key) const override {
        return key == "TelemetrixInnerId" ? std::optional<std::string>("benchmark") : "Benchmark";
    }
    [[nodiscard]] std::filesystem::path path() const override { return {}; }
    [[nodiscard]] std::optional<foundation::Clock::WallTime> creationDate() const override { return {}; }
    [[nodiscard]] std::optional<foundation::Clock::WallTime> modificationDate() const override { return {}; }
    [[nodiscard]] std::optional<std::filesystem::path> pathForResource(std::string_view,
                                                                       std::string_view) const override {
        return {};
    }
};

class NoLocation final : public analytics::LocationSource {
 public:
    [[nodiscard]] Authorization authorizationStatus() const override { return Authorization::denied; }
    void setDelegate(analytics::LocationDelegate*) override {}
    void startUpdatingLocation() override {}
    void reverseGeocodeLocation(const analytics::Location&, Placemarks) override {}
    [[nodiscard]] std::string englishCountryName(const std::string&) const override { return ""; }
};

class NoTransport final : public analytics::HttpTransport {
 public:
    void send(analytics::HttpRequest, Completion completion) override {
        completion(analytics::TelemetrixError{"benchmark", 0, "nothing is sent"});
    }
    void cancelAll() override {}
};

/// A database with one table, as the store's but without all else.
class BareDatabase {
 public:
    explicit BareDatabase(const std::filesystem::path& file) {
        sqlite3_open(file.c_str(), &database_);
        sqlite3_exec(database_,
                     "PRAGMA journal_mode = WAL; PRAGMA synchronous = NORMAL;"
                     "CREATE TABLE events (id INTEGER PRIMARY KEY, session TEXT, body TEXT)",
                     nullptr, nullptr, nullptr);
        sqlite3_prepare_v2(database_, "INSERT INTO events (session, body) VALUES (?, ?)", -1, &insert_,
                           nullptr);
    }
    ~BareDatabase() {
        sqlite3_finalize(insert_);
        sqlite3_close(database_);
    }
    void add(const std::string& body) {
        sqlite3_bind_text(insert_, 1, "session", -1, SQLITE_STATIC);
        sqlite3_bind_text(insert_, 2, body.data(), static_cast<int>(body.size()), SQLITE_STATIC);
        sqlite3_step(insert_);
        sqlite3_reset(insert_);
    }

 private:
    sqlite3* database_ = nullptr;
    sqlite3_stmt* insert_ = nullptr;
};

std::string eventText(int number) {
    return nlohmann::json{{"event", kName},
                          {"app_id", "benchmark"},
                          {"timestamp", number},
                          {"data", nlohmann::json{{"number", number}}.dump()},
                          {"end_timed_event", false}}
        .dump();
}

}  // namespace

int main() {
    char folder[] = "telemetrix-benchmark-XXXXXX";
    if (::mkdtemp(folder) == nullptr)
        return 1;
    const std::filesystem::path home = folder;
    {
        foundation::ManualQueue mainQueue("main");
        foundation::ThreadQueueFactory queues(mainQueue);
        foundation::RealClock clock;
        foundation::RealScheduler scheduler;
        foundation::NotificationCenter notifications;
        host::IniUserDefaults defaults(home / "defaults.ini");
        Bundle bundle;
        host::MachineDevice device("benchmark", "benchmark");
        NoLocation location;
        host::NetlinkReachability reachability;
        NoTransport transport;
        const analytics::Installation installation({queues,
                                                    clock,
                                                    scheduler,
                                                    notifications,
                                                    defaults,
                                                    bundle,
                                                    device,
                                                    location,
                                                    reachability,
                                                    transport,
                                                    home,
                                                    {}});
        analytics::Telemetrix::startSession();
        analytics::TXAnalyticsQueue::drain();

        std::FILE* const logFile = std::fopen((home / "log").c_str(), "w");
        BareDatabase database(home / "bare.db");
        const auto telemetrix = [] {
            for (int i = 0; i < kEvents; ++i)
                analytics::Telemetrix::logEvent(kName, {{"number", i}});
        };
        const auto logLines = [logFile] {
            for (int i = 0; i < kEvents; ++i) {
                std::fprintf(logFile, "%s\n", eventText(i).c_str());
                std::fflush(logFile);
            }
        };
        const auto rows = [&database] {
            for (int i = 0; i < kEvents; ++i)
                database.add(eventText(i));
        };
        benchmarks::Comparison("2000 calls of logEvent, as their caller pays for them")
            .add("Telemetrix::logEvent", telemetrix)
            .add("a line in a log file, flushed", logLines)
            .add("a row in SQLite (WAL), committed", rows)
            .print();
        analytics::TXAnalyticsQueue::drain();
        benchmarks::Comparison("2000 events until all are stored")
            .add("Telemetrix, drained",
                 [&] {
                     telemetrix();
                     analytics::TXAnalyticsQueue::drain();
                 })
            .add("a line in a log file, flushed", logLines)
            .add("a row in SQLite (WAL), committed", rows)
            .print();
        std::fclose(logFile);
    }
    std::filesystem::remove_all(home);
    return 0;
}
