#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <QDBusVirtualObject>
#include <QProcess>
#include <functional>
#include <vector>

#include "testing/TemporaryFolder.h"

namespace trimora::platform {

/// A session bus of the test's own, with nobody on it and nothing that it could start. Goes with all
/// connections to it when the object goes.
class BusForTests {
 public:
    BusForTests();
    ~BusForTests();
    BusForTests(const BusForTests&) = delete;
    BusForTests& operator=(const BusForTests&) = delete;

    /// Where programs find it.
    [[nodiscard]] const QString& address() const { return address_; }

    /// A connection of its own, as another process has it.
    [[nodiscard]] QDBusConnection connect();

    /// Ends the bus while its connections live.
    void stop();

 private:
    testing::TemporaryFolder folder_;
    QProcess daemon_;
    QString address_;
    QStringList names_;
};

/// A stand-in for a program on the bus: keeps the calls that it gets, to the object at its path and all
/// below it, and answers them as it is told.
class ServiceForTests final : public QDBusVirtualObject {
 public:
    /// What is answered to a call; one of type InvalidMessage leaves it unanswered.
    using Answer = std::function<QDBusMessage(const QDBusMessage&)>;

    ServiceForTests(QDBusConnection bus, const QString& name, const QString& path, Answer answer);
    ~ServiceForTests() override;

    /// Arguments of every call of this method, in order.
    [[nodiscard]] std::vector<QVariantList> calls(const QString& method) const;
    void emitSignal(const QString& name, const QVariantList& arguments);

    [[nodiscard]] QString introspect(const QString& /*path*/) const override { return {}; }
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
    QDBusConnection bus_;
    QString name_;
    QString path_;
    Answer answer_;
    std::vector<QDBusMessage> calls_;
};

/// Runs the event loop until the condition holds; fails the test where it does not in good time.
void pumpUntil(const std::function<bool()>& condition);

}  // namespace trimora::platform
