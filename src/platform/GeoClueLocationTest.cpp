#include "platform/GeoClueLocation.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QThread>
#include <QThreadPool>
#include <atomic>
#include <memory>
#include <semaphore>
#include <string>
#include <thread>
#include <vector>

#include "analytics/PortsForTests.h"
#include "platform/BusCall.h"
#include "platform/BusForTests.h"

namespace trimora::platform {
namespace {

using analytics::Location;
using ::testing::ElementsAre;
using ::testing::IsEmpty;
using ::testing::SizeIs;
using Status = analytics::LocationSource::Authorization;

const QString kService = QStringLiteral("org.freedesktop.GeoClue2");
const QString kClientPath = QStringLiteral("/org/freedesktop/GeoClue2/Client/7");
const QString kLocationPath = QStringLiteral("/org/freedesktop/GeoClue2/Client/7/Location/0");

/// What the service has to say about a place whose height it does not know.
const QVariantMap kPlace{
    {"Latitude", 48.5}, {"Longitude", -2.25}, {"Accuracy", 900.0}, {"Altitude", -1.7976931348623157e308}};

class Listener final : public analytics::LocationDelegate {
 public:
    void locationManager_didUpdateLocations(const std::vector<Location>& locations) override {
        heard.push_back(locations.at(0));
        if (onHeard)
            onHeard();
    }
    void locationManager_didFailWithError(const foundation::Error& error) override {
        errors.push_back(error.message);
    }

    std::vector<Location> heard;
    std::vector<std::string> errors;
    std::function<void()> onHeard;
};

class GeoClueLocationTest : public ::testing::Test {
 protected:
    GeoClueLocationTest() { defaults_.setObject("location", "allowed"); }
    ~GeoClueLocationTest() override {
        location_.reset();
        QThreadPool::globalInstance()->waitForDone();
    }

    void startService() {
        service_ = std::make_unique<ServiceForTests>(
            serviceBus_, kService, "/org/freedesktop/GeoClue2", [this](const QDBusMessage& call) {
                if (call.member() == refused_)
                    return call.createErrorReply(QDBusError::AccessDenied, "the person said no");
                if (call.member() == unanswered_)
                    return QDBusMessage();
                if (call.member() == "GetClient")
                    return call.createReply(QVariant::fromValue(QDBusObjectPath(kClientPath)));
                return call.member() == "GetAll" ? call.createReply(QVariant(place_)) : call.createReply();
            });
    }
    void follow() {
        location_->setDelegate(&listener_);
        location_->startUpdatingLocation();
    }
    void waitForCall(const QString& method, std::size_t count = 1) {
        pumpUntil([&] { return service_->calls(method).size() >= count; });
    }
    [[nodiscard]] static QDBusMessage news() {
        QDBusMessage signal =
            QDBusMessage::createSignal(kClientPath, kService + ".Client", "LocationUpdated");
        signal << QVariant::fromValue(QDBusObjectPath("/"))
               << QVariant::fromValue(QDBusObjectPath(kLocationPath));
        return signal;
    }
    void moveTo(const QVariantMap& place) {
        const std::size_t before = listener_.heard.size();
        place_ = place;
        ASSERT_TRUE(serviceBus_.send(news()));
        pumpUntil([&] { return listener_.heard.size() > before; });
    }
    /// Returns when all that was on its way on the bus has come.
    void settle() {
        QDBusConnection other = bus_.connect();
        (void)other.call(
            QDBusMessage::createMethodCall("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId"));
        bool answered = false;
        QObject context;
        callOnBus(
            ours_,
            QDBusMessage::createMethodCall("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId"),
            std::chrono::seconds(20), &context, [&](const QDBusMessage&) { answered = true; });
        pumpUntil([&] { return answered; });
    }

    BusForTests bus_;
    QDBusConnection ours_ = bus_.connect();
    QDBusConnection serviceBus_ = bus_.connect();
    QString refused_;
    QString unanswered_;
    QVariantMap place_ = kPlace;
    std::unique_ptr<ServiceForTests> service_;
    analytics::MemoryUserDefaults defaults_;
    Listener listener_;
    std::atomic<int> connected_ = 0;
    std::unique_ptr<GeoClueLocation> location_ = std::make_unique<GeoClueLocation>(defaults_, [this] {
        ++connected_;
        return ours_;
    });
};

TEST_F(GeoClueLocationTest, OnlyThePersonsOwnWordAllowsIt) {
    EXPECT_EQ(location_->authorizationStatus(), Status::authorized);
    for (const char* const other : {"", "denied", "yes", "true", "1", "Allowed", "allowed "}) {
        defaults_.setObject("location", other);
        EXPECT_EQ(location_->authorizationStatus(), Status::denied) << '"' << other << '"';
    }
    defaults_.removeObjectForKey("location");
    EXPECT_EQ(location_->authorizationStatus(), Status::denied);
}

TEST_F(GeoClueLocationTest, WithoutThePermissionNoBusIsTouched) {
    startService();
    defaults_.removeObjectForKey("location");
    follow();
    settle();
    QThreadPool::globalInstance()->waitForDone();
    EXPECT_EQ(connected_, 0);
    EXPECT_THAT(service_->calls("GetClient"), IsEmpty());
}

TEST_F(GeoClueLocationTest, AsksForTheTownInTheProgramsNameAndTellsWhereItIs) {
    startService();
    follow();
    waitForCall("Start");
    std::map<QString, QVariant> set;
    for (const QVariantList& arguments : service_->calls("Set")) {
        EXPECT_EQ(arguments.at(0), kService + ".Client");
        set[arguments.at(1).toString()] = arguments.at(2).value<QDBusVariant>().variant();
    }
    EXPECT_EQ(set, (std::map<QString, QVariant>{{"DesktopId", "org.trimora.Trimora"},
                                                {"RequestedAccuracyLevel", 4U},
                                                {"DistanceThreshold", 5000U}}));

    moveTo(kPlace);
    EXPECT_EQ(service_->calls("GetAll").at(0).at(0), kService + ".Location");
    const Location& town = listener_.heard.at(0);
    EXPECT_EQ(town.latitude, 48.5);
    EXPECT_EQ(town.longitude, -2.25);
    EXPECT_EQ(town.horizontalAccuracy, 900);
    EXPECT_EQ(town.altitude, 0);
    EXPECT_EQ(town.verticalAccuracy, 0);

    QVariantMap hill = kPlace;
    hill["Altitude"] = -12.5;
    moveTo(hill);
    EXPECT_EQ(listener_.heard.at(1).altitude, -12.5);
    EXPECT_THAT(listener_.errors, IsEmpty());
}

TEST_F(GeoClueLocationTest, ARefusalIsToldAndTheNextStartAsksAgain) {
    startService();
    refused_ = "Start";
    follow();
    pumpUntil([this] { return !listener_.errors.empty(); });
    EXPECT_THAT(listener_.errors, ElementsAre("the person said no"));
    refused_.clear();
    location_->startUpdatingLocation();
    waitForCall("Start", 2);
    moveTo(kPlace);
    EXPECT_THAT(listener_.heard, SizeIs(1));
}

TEST_F(GeoClueLocationTest, AMissingServiceIsAFailureOnly) {
    follow();
    pumpUntil([this] { return !listener_.errors.empty(); });
    EXPECT_THAT(listener_.errors, SizeIs(1));
}

TEST_F(GeoClueLocationTest, AMissingBusIsAFailureOnly) {
    location_ = std::make_unique<GeoClueLocation>(
        defaults_, [] { return QDBusConnection(QStringLiteral("there is none")); });
    follow();
    pumpUntil([this] { return !listener_.errors.empty(); });
    EXPECT_THAT(listener_.errors, ElementsAre("there is no bus"));
}

TEST_F(GeoClueLocationTest, AStrangeAnswerIsAFailureOnly) {
    service_ =
        std::make_unique<ServiceForTests>(serviceBus_, kService, "/org/freedesktop/GeoClue2",
                                          [](const QDBusMessage& call) { return call.createReply(5); });
    follow();
    pumpUntil([this] { return !listener_.errors.empty(); });
    EXPECT_THAT(listener_.errors, ElementsAre("the location service answers in another way"));
}

TEST_F(GeoClueLocationTest, AServiceThatHangsHoldsUpNobody) {
    startService();
    unanswered_ = "GetClient";
    follow();
    waitForCall("GetClient");
    location_.reset();
    EXPECT_THAT(listener_.errors, IsEmpty());
}

TEST_F(GeoClueLocationTest, ABusThatHangsHoldsUpNobody) {
    std::binary_semaphore hanging(0);
    location_ = std::make_unique<GeoClueLocation>(defaults_, [&] {
        hanging.acquire();
        return ours_;
    });
    follow();
    settle();  // the main thread's loop goes on
    location_.reset();
    hanging.release();
    QThreadPool::globalInstance()->waitForDone();
    settle();
    EXPECT_THAT(listener_.errors, IsEmpty());
}

TEST_F(GeoClueLocationTest, StopsTheServiceOnceNobodyListens) {
    startService();
    follow();
    waitForCall("Start");
    location_->setDelegate(nullptr);
    waitForCall("Stop");
    ASSERT_TRUE(serviceBus_.send(news()));
    settle();
    EXPECT_THAT(service_->calls("GetAll"), IsEmpty());
    EXPECT_THAT(listener_.heard, IsEmpty());
}

TEST_F(GeoClueLocationTest, AnAnswerThatComesAfterTheDelegateHasGoneReachesNobody) {
    startService();
    follow();
    waitForCall("Start");
    unanswered_ = "GetAll";
    ASSERT_TRUE(serviceBus_.send(news()));
    waitForCall("GetAll");
    std::thread([this] { location_->setDelegate(nullptr); }).join();
    service_.reset();  // with it, the bus answers what is still open with an error
    serviceBus_.unregisterService(kService);
    settle();
    EXPECT_THAT(listener_.heard, IsEmpty());
    EXPECT_THAT(listener_.errors, IsEmpty());
}

TEST_F(GeoClueLocationTest, StopsTheServiceWhenItGoes) {
    startService();
    follow();
    waitForCall("Start");
    location_.reset();
    waitForCall("Stop");
}

TEST_F(GeoClueLocationTest, MayBeCalledFromAnyThreadAndTellsOnTheMainOne) {
    startService();
    std::thread([this] { follow(); }).join();
    waitForCall("Start");
    const QThread* toldOn = nullptr;
    listener_.onHeard = [&] { toldOn = QThread::currentThread(); };
    moveTo(kPlace);
    EXPECT_EQ(toldOn, QThread::currentThread());
}

TEST_F(GeoClueLocationTest, TheDelegateMayCallBackWhileItIsTold) {
    startService();
    std::size_t found = 1;
    listener_.onHeard = [&] {
        location_->reverseGeocodeLocation({}, [&](const auto& placemarks) { found = placemarks->size(); });
        location_->setDelegate(nullptr);
    };
    follow();
    waitForCall("Start");
    moveTo(kPlace);
    EXPECT_EQ(found, 0U);
    waitForCall("Stop");
}

TEST_F(GeoClueLocationTest, NobodyElseOnTheBusCanSayWhereTheMachineIs) {
    startService();
    follow();
    waitForCall("Start");
    QDBusConnection stranger = bus_.connect();
    ASSERT_TRUE(stranger.send(news()));
    // Its next call is answered only after the bus has passed its signal on.
    (void)stranger.call(
        QDBusMessage::createMethodCall("org.freedesktop.DBus", "/", "org.freedesktop.DBus", "GetId"));
    settle();
    EXPECT_THAT(service_->calls("GetAll"), IsEmpty());
}

TEST_F(GeoClueLocationTest, CountriesAreNamedInEnglish) {
    EXPECT_EQ(location_->englishCountryName("FR"), "France");
    EXPECT_EQ(location_->englishCountryName("DE"), "Germany");
    EXPECT_EQ(location_->englishCountryName("QQ"), "");
    EXPECT_EQ(location_->englishCountryName(""), "");
}

}  // namespace
}  // namespace trimora::platform
