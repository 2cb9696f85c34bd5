#pragma once

#include <QDBusConnection>
#include <QObject>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>

#include "analytics/info/LocationSource.h"

class QDBusMessage;
class QDBusObjectPath;

namespace trimora::analytics {
class UserDefaults;
}

namespace trimora::platform {

/// Where the machine is, from the desktop's location service (org.freedesktop.GeoClue2), as far as the
/// person has allowed it.
///
/// A desktop keeps no list of programs that may know the place, and the service may ask the person by
/// itself when it is spoken to. So the permission is a line of the person's own: the user default
/// "location" with the value "allowed". Anything else means no, and then nobody is spoken to at all.
///
/// The service is asked for the town, no closer. It names no country, so a place has no placemarks.
///
/// Made and destroyed on the main thread, with an event loop running; any thread may call it, and no call
/// waits for the bus. The delegate is told on the main thread.
class GeoClueLocation final : public QObject, public analytics::LocationSource {
    Q_OBJECT

 public:
    /// Makes the connection to the bus; may block, and is called on a thread of its own.
    using Connect = std::function<QDBusConnection()>;

    /// `permissions` outlives the object.
    explicit GeoClueLocation(const analytics::UserDefaults& permissions,
                             Connect connect = QDBusConnection::systemBus);
    ~GeoClueLocation() override;

    /// `authorized` or `denied`.
    [[nodiscard]] Authorization authorizationStatus() const override;
    void setDelegate(analytics::LocationDelegate* delegate) override;
    /// Begins anew where it has begun before. Does nothing without the permission.
    void startUpdatingLocation() override;
    void reverseGeocodeLocation(const analytics::Location& location, Placemarks completion) override;
    [[nodiscard]] std::string englishCountryName(const std::string& isoCountryCode) const override;

 private slots:
    void hearLocation(const QDBusObjectPath& before, const QDBusObjectPath& now);

 private:
    using Answered = std::function<void(const QDBusMessage& answer)>;

    void begin();
    void end();
    void makeClient();
    void startClient(const QString& owner, const QString& path);
    void setOfClient(const char* property, const QVariant& value);
    void call(const QDBusMessage& message, Answered then);
    void tell(const std::function<void(analytics::LocationDelegate&)>& words);
    void fail(const QString& reason);

    const analytics::UserDefaults& permissions_;
    const Connect connect_;

    // Held while the delegate is told, or its departure could not be waited for. It calls back from there.
    std::recursive_mutex mutex_;
    analytics::LocationDelegate* delegate_ = nullptr;

    // The main thread's: what is being followed. No answer that belongs to `talk_` comes after it.
    std::unique_ptr<QObject> talk_;
    std::optional<QDBusConnection> bus_;
    QString owner_;   ///< unique name of the service
    QString client_;  ///< the object that it made for us; empty before it has
};

}  // namespace trimora::platform
