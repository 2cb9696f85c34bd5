#include "platform/GeoClueLocation.h"

#include <QDBusArgument>
#include <QDBusMessage>
#include <QDBusObjectPath>
#include <QDBusVariant>
#include <QFuture>
#include <QFutureWatcher>
#include <QLocale>
#include <QPromise>
#include <QThreadPool>
#include <QVariantMap>
#include <chrono>
#include <utility>

#include "analytics/info/UserDefaults.h"
#include "foundation/Log.h"
#include "platform/ApplicationId.h"
#include "platform/BusCall.h"

namespace trimora::platform {

using analytics::Location;
using analytics::LocationDelegate;
using analytics::Placemark;

namespace {

const QString kService = QStringLiteral("org.freedesktop.GeoClue2");
const QString kManager = QStringLiteral("org.freedesktop.GeoClue2.Manager");
const QString kManagerPath = QStringLiteral("/org/freedesktop/GeoClue2/Manager");
const QString kClient = QStringLiteral("org.freedesktop.GeoClue2.Client");
const QString kLocation = QStringLiteral("org.freedesktop.GeoClue2.Location");
const QString kProperties = QStringLiteral("org.freedesktop.DBus.Properties");

constexpr std::chrono::seconds kPatience{30};  // the person may be asked meanwhile
constexpr uint kTown = 4;                      // how closely the service is to look
constexpr uint kNewsAfter = 5000;              // metres that the machine has to move before it tells again
constexpr double kNoAltitude = -1e300;         // below this the service means that it knows none

QDBusMessage method(const QString& service, const QString& path, const QString& interface, const char* name) {
    return QDBusMessage::createMethodCall(service, path, interface, QLatin1String(name));
}

Location locationOf(const QVariantMap& properties) {
    const double altitude = properties.value(QStringLiteral("Altitude")).toDouble();
    return {.latitude = properties.value(QStringLiteral("Latitude")).toDouble(),
            .longitude = properties.value(QStringLiteral("Longitude")).toDouble(),
            .horizontalAccuracy = properties.value(QStringLiteral("Accuracy")).toDouble(),
            .altitude = altitude < kNoAltitude ? 0 : altitude};
}

QFuture<QDBusConnection> onAThreadOfItsOwn(const GeoClueLocation::Connect& connect) {
    const auto promise = std::make_shared<QPromise<QDBusConnection>>();
    QThreadPool::globalInstance()->start([promise, connect] {
        promise->start();
        promise->addResult(connect());
        promise->finish();
    });
    return promise->future();
}

}  // namespace

GeoClueLocation::GeoClueLocation(const analytics::UserDefaults& permissions, Connect connect)
    : permissions_(permissions), connect_(std::move(connect)) {}

GeoClueLocation::~GeoClueLocation() {
    end();
}

GeoClueLocation::Authorization GeoClueLocation::authorizationStatus() const {
    return permissions_.objectForKey("location") == "allowed" ? Authorization::authorized
                                                              : Authorization::denied;
}

void GeoClueLocation::setDelegate(LocationDelegate* delegate) {
    {
        const std::scoped_lock lock(mutex_);
        delegate_ = delegate;
    }
    if (delegate == nullptr)
        QMetaObject::invokeMethod(
            this, [this] { end(); }, Qt::QueuedConnection);
}

void GeoClueLocation::startUpdatingLocation() {
    if (authorizationStatus() == Authorization::authorized)
        QMetaObject::invokeMethod(
            this, [this] { begin(); }, Qt::QueuedConnection);
}

void GeoClueLocation::begin() {
    end();
    talk_ = std::make_unique<QObject>();
    auto* const connecting = new QFutureWatcher<QDBusConnection>(talk_.get());
    connect(connecting, &QFutureWatcherBase::finished, talk_.get(), [this, connecting] {
        bus_ = connecting->result();
        makeClient();
    });
    connecting->setFuture(onAThreadOfItsOwn(connect_));
}

void GeoClueLocation::end() {
    talk_.reset();
    if (client_.isEmpty())
        return;
    bus_->disconnect(owner_, client_, kClient, QStringLiteral("LocationUpdated"), this,
                     SLOT(hearLocation(QDBusObjectPath, QDBusObjectPath)));
    bus_->send(method(owner_, client_, kClient, "Stop"));
    client_.clear();
}

void GeoClueLocation::makeClient() {
    call(method(kService, kManagerPath, kManager, "GetClient"), [this](const QDBusMessage& answer) {
        startClient(answer.service(), answer.arguments().value(0).value<QDBusObjectPath>().path());
    });
}

void GeoClueLocation::startClient(const QString& owner, const QString& path) {
    if (path.isEmpty())
        return fail(QStringLiteral("the location service answers in another way"));
    owner_ = owner;
    client_ = path;
    bus_->connect(owner_, client_, kClient, QStringLiteral("LocationUpdated"), this,
                  SLOT(hearLocation(QDBusObjectPath, QDBusObjectPath)));
    setOfClient("DesktopId", QString::fromLatin1(kApplicationId));
    setOfClient("RequestedAccuracyLevel", kTown);
    setOfClient("DistanceThreshold", kNewsAfter);
    call(method(owner_, client_, kClient, "Start"), [](const QDBusMessage&) {});
}

void GeoClueLocation::setOfClient(const char* property, const QVariant& value) {
    QDBusMessage message = method(owner_, client_, kProperties, "Set");
    message << kClient << QString::fromLatin1(property) << QVariant::fromValue(QDBusVariant(value));
    bus_->send(message);
}

void GeoClueLocation::hearLocation(const QDBusObjectPath& /*before*/, const QDBusObjectPath& now) {
    QDBusMessage message = method(owner_, now.path(), kProperties, "GetAll");
    message << kLocation;
    call(message, [this](const QDBusMessage& answer) {
        const Location here = locationOf(qdbus_cast<QVariantMap>(answer.arguments().value(0)));
        tell([&](LocationDelegate& delegate) { delegate.locationManager_didUpdateLocations({here}); });
    });
}

void GeoClueLocation::call(const QDBusMessage& message, Answered then) {
    callOnBus(*bus_, message, kPatience, talk_.get(), [this, then = std::move(then)](const auto& answer) {
        if (answer.type() == QDBusMessage::ReplyMessage)
            then(answer);
        else
            fail(answer.errorMessage());
    });
}

void GeoClueLocation::tell(const std::function<void(LocationDelegate&)>& words) {
    const std::scoped_lock lock(mutex_);
    if (delegate_ != nullptr)
        words(*delegate_);
}

void GeoClueLocation::fail(const QString& reason) {
    foundation::log::info("no location: %s", qPrintable(reason));
    const foundation::Error error{reason.toStdString()};
    tell([&](LocationDelegate& delegate) { delegate.locationManager_didFailWithError(error); });
}

void GeoClueLocation::reverseGeocodeLocation(const Location& /*location*/, Placemarks completion) {
    completion(std::vector<Placemark>{});
}

std::string GeoClueLocation::englishCountryName(const std::string& isoCountryCode) const {
    const auto country = QLocale::codeToTerritory(QString::fromStdString(isoCountryCode));
    return country == QLocale::AnyTerritory ? "" : QLocale::territoryToString(country).toStdString();
}

}  // namespace trimora::platform
