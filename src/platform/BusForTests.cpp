#include "platform/BusForTests.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QDeadlineTimer>
#include <fstream>
#include <utility>

namespace trimora::platform {

namespace {

constexpr int kPatienceMs = 20'000;

// No folders of services: nothing of the machine is ever started by this bus.
const char* const kConfiguration =
    R"(<!DOCTYPE busconfig PUBLIC "-//freedesktop//DTD D-Bus Bus Configuration 1.0//EN"
 "http://www.freedesktop.org/standards/dbus/1.0/busconfig.dtd">
<busconfig>
  <type>session</type>
  <listen>unix:dir=FOLDER</listen>
  <auth>EXTERNAL</auth>
  <policy context="default">
    <allow send_destination="*" eavesdrop="true"/>
    <allow eavesdrop="true"/>
    <allow own="*"/>
  </policy>
</busconfig>
)";

}  // namespace

BusForTests::BusForTests() {
    std::string configuration = kConfiguration;
    configuration.replace(configuration.find("FOLDER"), 6, folder_.path().string());
    const auto file = folder_.path() / "bus.conf";
    std::ofstream(file) << configuration;
    daemon_.start(QStringLiteral("dbus-daemon"),
                  {QStringLiteral("--nofork"), QStringLiteral("--print-address"),
                   QStringLiteral("--config-file=") + QString::fromStdString(file.string())});
    while (!daemon_.canReadLine() && daemon_.waitForReadyRead(kPatienceMs)) {
    }
    address_ = QString::fromUtf8(daemon_.readLine()).trimmed();
    EXPECT_FALSE(address_.isEmpty()) << "dbus-daemon does not start";
}

BusForTests::~BusForTests() {
    for (const QString& name : names_)
        QDBusConnection::disconnectFromBus(name);
    stop();
}

void BusForTests::stop() {
    daemon_.terminate();
    daemon_.waitForFinished();
}

QDBusConnection BusForTests::connect() {
    static int number = 0;
    names_ << QStringLiteral("connection of a test %1").arg(++number);
    auto bus = QDBusConnection::connectToBus(address_, names_.back());
    EXPECT_TRUE(bus.isConnected()) << bus.lastError().message().toStdString();
    return bus;
}

ServiceForTests::ServiceForTests(QDBusConnection bus, const QString& name, const QString& path, Answer answer)
    : bus_(std::move(bus)), name_(name), path_(path), answer_(std::move(answer)) {
    EXPECT_TRUE(bus_.registerVirtualObject(path_, this, QDBusConnection::SubPath));
    EXPECT_TRUE(bus_.registerService(name_));
}

ServiceForTests::~ServiceForTests() {
    bus_.unregisterService(name_);
    bus_.unregisterObject(path_);
}

std::vector<QVariantList> ServiceForTests::calls(const QString& method) const {
    std::vector<QVariantList> result;
    for (const QDBusMessage& call : calls_) {
        if (call.member() == method)
            result.push_back(call.arguments());
    }
    return result;
}

void ServiceForTests::emitSignal(const QString& name, const QVariantList& arguments) {
    QDBusMessage signal = QDBusMessage::createSignal(path_, name_, name);
    signal.setArguments(arguments);
    EXPECT_TRUE(bus_.send(signal));
}

bool ServiceForTests::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    calls_.push_back(message);
    const QDBusMessage answer = answer_(message);
    if (answer.type() == QDBusMessage::InvalidMessage)
        message.setDelayedReply(true);
    else
        EXPECT_TRUE(connection.send(answer));
    return true;
}

void pumpUntil(const std::function<bool()>& condition) {
    const QDeadlineTimer deadline(kPatienceMs);
    while (!condition()) {
        ASSERT_FALSE(deadline.hasExpired()) << "what the test waits for does not come";
        QCoreApplication::processEvents(QEventLoop::AllEvents, 10);
    }
}

}  // namespace trimora::platform
