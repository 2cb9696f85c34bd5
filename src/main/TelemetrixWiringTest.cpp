#include "main/TelemetrixWiring.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <unistd.h>

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QGuiApplication>
#include <QTest>
#include <QThreadPool>
#include <QUrl>
#include <QWidget>
#include <cstdlib>
#include <fstream>
#include <iterator>
#include <memory>
#include <sstream>
#include <string>
#include <vector>

#include "analytics/info/TXAnalyticsLocation.h"
#include "analytics/public/TXAnalyticsQueue.h"
#include "analytics/public/Telemetrix.h"
#include "analytics/public/TelemetrixNotifications.h"
#include "analytics/session/TXSessionManager.h"
#include "foundation/ManualQueues.h"
#include "foundation/RealTime.h"
#include "foundation/ThreadQueues.h"
#include "foundation/VirtualTime.h"
#include "host/HttpsServerForTests.h"
#include "platform/BusForTests.h"
#include "testing/CapturedLog.h"
#include "testing/TemporaryFolder.h"

namespace trimora {
namespace {

using analytics::Telemetrix;
using analytics::TXAnalyticsQueue;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;
using Answer = app::GdprConsent::Answer;
using Begin = TelemetrixWiring::Begin;

/// How many sockets of this process speak, or could speak, over a network.
int networkSockets() {
    std::string tables;
    for (const char* table : {"tcp", "tcp6", "udp", "udp6", "raw", "raw6"}) {
        std::ifstream stream(std::string("/proc/self/net/") + table);
        tables.append(std::istreambuf_iterator<char>(stream), {});
    }
    int count = 0;
    for (const auto& entry : std::filesystem::directory_iterator("/proc/self/fd")) {
        std::error_code gone;
        const std::string target = std::filesystem::read_symlink(entry.path(), gone);
        if (!target.starts_with("socket:["))
            continue;
        const std::string inode = target.substr(8, target.size() - 9);
        count += tables.find(" " + inode + " ") != std::string::npos ? 1 : 0;
    }
    return count;
}

class TelemetrixWiringTest : public ::testing::Test {
 protected:
    TelemetrixWiringTest() { ::unsetenv("TRIMORA_ANALYTICS_URL"); }
    ~TelemetrixWiringTest() override {
        wiring_.reset();
        ::unsetenv("TRIMORA_ANALYTICS_URL");
    }

    void startProgram() {
        wiring_ = std::make_unique<TelemetrixWiring>(
            TelemetrixWiring::Services{queues_, time_, time_, notifications_, home_.path() / "data",
                                       home_.path() / "config"},
            Begin::atOnce);
        settle();
    }
    void endProgram() { wiring_.reset(); }
    void settle() { queues_.settle(); }
    std::string stored(analytics::EventForm form = analytics::EventForm::readable) {
        std::string text = "not told";
        wiring_->describe(form, [&](std::string told) { text = std::move(told); });
        settle();
        return text;
    }

    testing::TemporaryFolder home_;
    foundation::ManualQueueFactory queues_;
    foundation::VirtualTime time_;
    foundation::NotificationCenter notifications_;
    testing::CapturedLog log_;
    std::unique_ptr<TelemetrixWiring> wiring_;
};

TEST_F(TelemetrixWiringTest, RecordsFromTheStartAndShowsAllThatIsStored) {
    startProgram();
    Telemetrix::logEvent("button open pressed");
    settle();
    EXPECT_THAT(stored(), HasSubstr("  button open pressed.  {}\n"));
    EXPECT_THAT(stored(), HasSubstr("app_install"));
    EXPECT_THAT(stored(analytics::EventForm::asStored), HasSubstr(R"("app_id":"org.trimora.Trimora")"));
    EXPECT_TRUE(std::filesystem::exists(home_.path() / "data" / "Trimora" / "telemetrix.db"));
}

TEST_F(TelemetrixWiringTest, SecondStartOfTheSameProgramIsNoInstallation) {
    startProgram();
    endProgram();
    startProgram();
    EXPECT_THAT(stored(), HasSubstr("app_open"));
    const std::string current = analytics::TXSessionManager::sharedManager().currentSession();
    EXPECT_THAT(stored().substr(stored().find(current)), Not(HasSubstr("app_install")));
}

TEST_F(TelemetrixWiringTest, EndOfTheProgramEndsTheSession) {
    startProgram();
    const std::string session = analytics::TXSessionManager::sharedManager().currentSession();
    Telemetrix::logEvent("last");
    endProgram();
    startProgram();
    const std::string text = stored();
    EXPECT_THAT(text, HasSubstr(session + "  done"));
    EXPECT_THAT(text, HasSubstr("last."));
}

TEST_F(TelemetrixWiringTest, NoStopsTheRecordingEmptiesTheStoreAndLasts) {
    startProgram();
    Telemetrix::logEvent("before");
    wiring_->consent().give(Answer::no);
    EXPECT_EQ(stored(), "");
    Telemetrix::logEvent("after");
    notifications_.post(analytics::kNSWindowDidResignKeyNotification);
    settle();
    endProgram();

    startProgram();
    Telemetrix::startSession();  // as the editor does
    Telemetrix::logEvent("in the next run");
    time_.advance(60, [this] { settle(); });
    EXPECT_EQ(stored(), "");
    EXPECT_FALSE(Telemetrix::innerId());

    wiring_->consent().give(Answer::yes);
    settle();
    const std::string text = stored();
    EXPECT_THAT(text, HasSubstr("app_open"));
    EXPECT_THAT(text, Not(HasSubstr("before")));
    EXPECT_THAT(text, Not(HasSubstr("in the next run")));
}

TEST_F(TelemetrixWiringTest, NoIsEmptyOnTheDiskToo) {
    startProgram();
    Telemetrix::logEvent("a word that tells");
    settle();
    wiring_->consent().give(Answer::no);
    std::string raw;
    for (const auto& file : std::filesystem::directory_iterator(home_.path() / "data" / "Trimora")) {
        std::ifstream stream(file.path(), std::ios::binary);
        raw.append(std::istreambuf_iterator<char>(stream), {});
    }
    EXPECT_THAT(raw, Not(HasSubstr("a word that tells")));
}

TEST_F(TelemetrixWiringTest, DeletingWhatIsStoredLetsTheRecordingGoOn) {
    startProgram();
    Telemetrix::logEvent("before");
    wiring_->erase();
    Telemetrix::logEvent("after");
    settle();
    EXPECT_THAT(stored(), HasSubstr("after."));
    EXPECT_THAT(stored(), Not(HasSubstr("before.")));
}

TEST_F(TelemetrixWiringTest, AnswerLiesInAReadableFile) {
    startProgram();
    wiring_->consent().give(Answer::yes);
    std::ifstream stream(home_.path() / "config" / "Trimora" / "usage.ini");
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    EXPECT_THAT(text, HasSubstr("usage_data_consent=yes\n"));
}

TEST_F(TelemetrixWiringTest, PrivacyPolicyComesWithTheProgram) {
    startProgram();
    const QUrl url(QString::fromStdString(wiring_->privacyUrl()));
    ASSERT_TRUE(url.isLocalFile());
    std::ifstream stream(url.toLocalFile().toStdString());
    const std::string text(std::istreambuf_iterator<char>(stream), {});
    EXPECT_THAT(text, HasSubstr("# Privacy"));
}

TEST_F(TelemetrixWiringTest, KeyboardThatMovesBetweenWindowsIsALossAndAGain) {
    startProgram();
    wiring_->watchKeyWindow();
    std::vector<std::string> heard;
    const auto note = [&](const foundation::Notification& notification) {
        heard.push_back(notification.name);
    };
    const auto losses = notifications_.observe(analytics::kNSWindowDidResignKeyNotification, note);
    const auto gains = notifications_.observe(analytics::kNSWindowDidBecomeKeyNotification, note);
    QWidget window;
    window.show();
    window.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&window));
    EXPECT_THAT(heard, ElementsAre(analytics::kNSWindowDidBecomeKeyNotification));
    heard.clear();
    QWidget dialog;
    dialog.show();
    dialog.activateWindow();
    ASSERT_TRUE(QTest::qWaitForWindowActive(&dialog));
    EXPECT_THAT(heard, ElementsAre(analytics::kNSWindowDidResignKeyNotification,
                                   analytics::kNSWindowDidBecomeKeyNotification));
}

TEST_F(TelemetrixWiringTest, StoreIsNotTouchedBeforeTheFirstFrame) {
    foundation::ManualQueue mainQueue("main");
    foundation::ThreadQueueFactory threads(mainQueue);
    const auto store = home_.path() / "data" / "Trimora" / "telemetrix.db";
    const TelemetrixWiring::Services services{
        threads, time_, time_, notifications_, home_.path() / "data", home_.path() / "config"};
    {
        TelemetrixWiring wiring(services, Begin::afterFirstFrame);
        Telemetrix::startSession();
        Telemetrix::logEvent("early");
        mainQueue.runAll();
        EXPECT_FALSE(std::filesystem::exists(store));
        wiring.beginWork();
        wiring.beginWork();
        TXAnalyticsQueue::drain();
        EXPECT_TRUE(std::filesystem::exists(store));
    }
    std::filesystem::remove(store);
    { const TelemetrixWiring never(services, Begin::afterFirstFrame); }
    EXPECT_TRUE(std::filesystem::exists(store));  // what was queued is finished at the end
    mainQueue.runAll();
}

/// The whole road, from the person's file to what would be sent.
TEST_F(TelemetrixWiringTest, ThePlaceIsAskedForOnlyWhereThePersonsFileAllowsIt) {
    const QString service = QStringLiteral("org.freedesktop.GeoClue2");
    const QDBusObjectPath client("/org/freedesktop/GeoClue2/Client/1");
    platform::BusForTests bus;
    QDBusConnection serviceBus = bus.connect();
    const QVariantMap place{{"Latitude", 48.5}, {"Longitude", -2.25}, {"Accuracy", 900.0}};
    const platform::ServiceForTests geoClue(
        serviceBus, service, "/org/freedesktop/GeoClue2", [&](const QDBusMessage& call) {
            if (call.member() == "GetClient")
                return call.createReply(QVariant::fromValue(client));
            return call.member() == "GetAll" ? call.createReply(QVariant(place)) : call.createReply();
        });
    ASSERT_TRUE(qputenv("DBUS_SYSTEM_BUS_ADDRESS", bus.address().toUtf8()));

    startProgram();
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_THAT(stored(analytics::EventForm::asStored), HasSubstr(R"(\"latitude\":\"\")"));
    EXPECT_THAT(geoClue.calls("GetClient"), IsEmpty());
    endProgram();

    std::ofstream(home_.path() / "config" / "Trimora" / "usage.ini", std::ios::app) << "location=allowed\n";
    startProgram();
    platform::pumpUntil([&] { return !geoClue.calls("Start").empty(); });
    QDBusMessage news = QDBusMessage::createSignal(client.path(), service + ".Client", "LocationUpdated");
    news << QVariant::fromValue(QDBusObjectPath("/")) << QVariant::fromValue(client);
    ASSERT_TRUE(serviceBus.send(news));
    const auto& location = analytics::TXAnalyticsLocation::location();
    platform::pumpUntil([&] { return location.locationInfo().latitude == "48.500000"; });
    EXPECT_EQ(location.locationInfo().longitude, "-2.250000");
    EXPECT_EQ(location.locationInfo().countryCode, "");
    endProgram();
    platform::pumpUntil([&] { return !geoClue.calls("Stop").empty(); });
    QDBusConnection::disconnectFromBus("qt_default_system_bus");
}

TEST_F(TelemetrixWiringTest, NoSocketIsOpenedBeforeAYes) {
    host::HttpsServer server;
    if (!server.isRunning())
        GTEST_SKIP() << "no HTTPS server on this machine";
    ::setenv("TRIMORA_ANALYTICS_URL", server.url("200").c_str(), 1);
    const int before = networkSockets();
    startProgram();
    EXPECT_EQ(wiring_->destination(), server.url("200"));
    for (int i = 0; i < 5; ++i) {
        Telemetrix::logEvent("work");
        notifications_.post(analytics::kNSWindowDidResignKeyNotification);
        settle();
        EXPECT_EQ(networkSockets(), before);
        notifications_.post(analytics::kNSWindowDidBecomeKeyNotification);
        time_.advance(70, [this] { settle(); });
        EXPECT_EQ(networkSockets(), before);
    }
    EXPECT_THAT(server.takeLedger(), IsEmpty());

    wiring_->consent().give(Answer::yes);
    time_.advance(61, [this] { settle(); });
    // The same server sees what is sent then.
    EXPECT_TRUE(QTest::qWaitFor([&] { return !server.takeLedger().empty(); }, 20'000));

    wiring_->consent().give(Answer::no);
    (void)server.takeLedger();
    notifications_.post(analytics::kNSWindowDidResignKeyNotification);
    time_.advance(600, [this] { settle(); });
    endProgram();
    EXPECT_THAT(server.takeLedger(), IsEmpty());
}

}  // namespace
}  // namespace trimora
