#pragma once

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <cstdlib>
#include <memory>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>
#include <vector>

#include "analytics/Installation.h"
#include "analytics/PortsForTests.h"
#include "analytics/info/TXStaticAnalyticsInfo.h"
#include "analytics/public/TXAnalyticsQueue.h"
#include "analytics/public/Telemetrix.h"
#include "analytics/public/TelemetrixNotifications.h"
#include "analytics/session/TXSessionManager.h"
#include "analytics/store/TXAnalyticsCoreDataManager.h"
#include "analytics/store/TXAnalyticsDBManager.h"
#include "foundation/ManualQueues.h"
#include "foundation/VirtualTime.h"
#include "testing/CapturedLog.h"
#include "testing/TemporaryFolder.h"

/// The library itself, on a clock and queues that the test moves.
namespace trimora::analytics {

/// The library, installed but not started, in an empty home of its own.
class TelemetrixTest : public ::testing::Test {
 protected:
    TelemetrixTest() { ::setenv("TRIMORA_ANALYTICS_URL", "https://service.invalid/stat/4", 1); }
    ~TelemetrixTest() override { ::unsetenv("TRIMORA_ANALYTICS_URL"); }

    void SetUp() override { install(); }
    void TearDown() override { quit(); }

    void install() {
        installation = std::make_unique<Installation>(Wiring{queues, time, time, notifications, defaults,
                                                             bundle, device, location, network,
                                                             *transportInUse, home.path(), storeSettings});
    }
    /// As at the end of the process, without the application having been told of it.
    void quit() { installation.reset(); }

    /// Starts the library; not as the first launch unless that is wanted.
    void start(bool isFirstLaunch = false) {
        if (!isFirstLaunch)
            rememberLaunch();
        Telemetrix::startSession();
        settle();
    }
    static void rememberLaunch() { TXStaticAnalyticsInfo::applicationDidFirstLaunch(); }

    void settle() { queues.settle(); }
    void advance(double seconds) {
        time.advance(seconds, [this] { settle(); });
    }
    void post(const char* notification) {
        notifications.post(notification);
        settle();
    }

    [[nodiscard]] static ManagedObjectContext& context() {
        return TXAnalyticsCoreDataManager::sharedManager().managedObjectContext();
    }
    [[nodiscard]] static TXSessionManager& manager() { return TXSessionManager::sharedManager(); }
    [[nodiscard]] static std::vector<TXSSID> sessions() {
        return *context().allSessions(PropertyValues::fetched);
    }
    /// The status of the session's row, or -1.
    [[nodiscard]] static int statusOf(const std::string& session) {
        const auto rows = *context().sessionsNamed(session, PropertyValues::fetched);
        return rows.empty() ? -1 : rows.front().status;
    }
    /// The bodies of the session's events, in store order.
    [[nodiscard]] static std::vector<nlohmann::json> bodies(const std::string& session) {
        std::vector<nlohmann::json> found;
        const auto events = context().eventsOfSession(session, PropertyValues::fetched);
        for (const TXEvent& event : *events)
            found.push_back(nlohmann::json::parse(event.body.value_or("null")));
        return found;
    }
    [[nodiscard]] static std::vector<std::string> names(const std::string& session) {
        std::vector<std::string> found;
        for (const auto& body : bodies(session))
            found.push_back(body["event"]);
        return found;
    }
    [[nodiscard]] static std::vector<std::string> currentNames() { return names(manager().currentSession()); }

    /// A session with one event, as an earlier run left it.
    void leaveSession(const std::string& name, int status, double secondsAgo) {
        TXSSID session;
        session.name = name;
        session.status = status;
        session.changeStatusTime = TXAnalyticsSSIDDataAccessDefault::creationTime() - secondsAgo;
        ASSERT_TRUE(context().save(session));
        TXEvent event;
        event.ssid = name;
        event.body = R"({"event":"of )" + name + R"("})";
        ASSERT_TRUE(context().save(event));
    }
    /// The session ids of the posts so far, from their cookies.
    [[nodiscard]] std::vector<std::string> posted() const {
        std::vector<std::string> found;
        for (const HttpRequest& request : transport.requests()) {
            const std::string& cookie = request.headers.front().second;
            found.push_back(cookie.substr(4, cookie.find(';') - 4));
        }
        return found;
    }

    testing::TemporaryFolder home;
    foundation::ManualQueueFactory queues;
    foundation::VirtualTime time;
    foundation::NotificationCenter notifications;
    MemoryUserDefaults defaults;
    FakeBundle bundle;
    FakeDevice device;
    FakeLocation location;
    FakeReachability network;
    FakeTransport transport;
    HttpTransport* transportInUse = &transport;
    StoreSettings storeSettings;
    testing::CapturedLog log;
    std::unique_ptr<Installation> installation;
};

}  // namespace trimora::analytics
