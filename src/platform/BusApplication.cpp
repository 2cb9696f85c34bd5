#include "platform/BusApplication.h"

#include <QDBusConnectionInterface>
#include <QDBusMessage>
#include <QDBusMetaType>
#include <QStringList>
#include <optional>
#include <utility>

#include "foundation/Log.h"
#include "platform/FileUri.h"

namespace trimora::platform {

using foundation::Error;
using foundation::Result;

namespace {

const QString kInterface = QStringLiteral("org.freedesktop.Application");
const QString kToken = QStringLiteral("activation-token");
const QString kOldToken = QStringLiteral("desktop-startup-id");

QString pathOf(QString name) {
    return QStringLiteral("/") + name.replace(QLatin1Char('.'), QLatin1Char('/'));
}

std::vector<std::filesystem::path> localFiles(const QStringList& uris) {
    std::vector<std::filesystem::path> files;
    for (const QString& uri : uris) {
        if (auto file = fileOfUri(uri))
            files.push_back(std::move(*file));
        else
            foundation::log::warning("not a file of this machine: %s", qPrintable(uri));
    }
    return files;
}

/// The token in the dictionary that ends every call of the interface.
std::string tokenOf(const QDBusMessage& message) {
    const auto data = qdbus_cast<QVariantMap>(message.arguments().last());
    return data.value(kToken, data.value(kOldToken)).toString().toStdString();
}

/// What a call of the interface asks for; nothing where it is none of its three.
std::optional<LaunchRequest> requestOf(const QDBusMessage& message) {
    const QString call = message.member() + QLatin1Char(' ') + message.signature();
    if (call == QLatin1String("Activate a{sv}"))
        return LaunchRequest{{}, {}, tokenOf(message)};
    const QVariant what = message.arguments().value(0);
    if (call == QLatin1String("Open asa{sv}"))
        return LaunchRequest{localFiles(what.toStringList()), {}, tokenOf(message)};
    if (call == QLatin1String("ActivateAction sava{sv}"))
        return LaunchRequest{{}, what.toString().toStdString(), tokenOf(message)};
    return std::nullopt;
}

}  // namespace

BusApplication::BusApplication(QString applicationId, QDBusConnection bus, Launched launched)
    : name_(std::move(applicationId)),
      path_(pathOf(name_)),
      bus_(std::move(bus)),
      launched_(std::move(launched)) {}

BusApplication::~BusApplication() {
    if (!isFirst_)
        return;
    bus_.unregisterService(name_);
    bus_.unregisterObject(path_);
}

BusApplication::Claim BusApplication::claim() {
    // The object comes before the name, so that whoever sees the name finds the object.
    if (!bus_.isConnected() || !bus_.registerVirtualObject(path_, this))
        return Claim::impossible;
    isFirst_ = bus_.registerService(name_);
    if (isFirst_)
        return Claim::first;
    bus_.unregisterObject(path_);
    return bus_.interface()->isServiceRegistered(name_) ? Claim::taken : Claim::impossible;
}

Result<void> BusApplication::handOver(const LaunchRequest& request, std::chrono::milliseconds patience) {
    QDBusMessage call = callFor(request);
    call.setAutoStartService(false);
    const QDBusMessage answer = bus_.call(call, QDBus::Block, static_cast<int>(patience.count()));
    if (answer.type() == QDBusMessage::ReplyMessage)
        return {};
    return Error{answer.errorMessage().toStdString()};
}

QDBusMessage BusApplication::callFor(const LaunchRequest& request) const {
    const auto call = [this](const char* method) {
        return QDBusMessage::createMethodCall(name_, path_, kInterface, QLatin1String(method));
    };
    QVariantMap data;
    if (const auto token = QString::fromStdString(request.activationToken); !token.isEmpty())
        data = {{kToken, token}, {kOldToken, token}};
    if (!request.action.empty())
        return call("ActivateAction") << QString::fromStdString(request.action) << QVariantList() << data;
    if (request.files.empty())
        return call("Activate") << data;
    QStringList uris;
    for (const auto& file : request.files)
        uris << fileUri(file);
    return call("Open") << uris << data;
}

QString BusApplication::introspect(const QString& path) const {
    if (path != path_)
        return {};
    return QStringLiteral(
        "<interface name=\"org.freedesktop.Application\">"
        "<method name=\"Activate\"><arg name=\"platform_data\" type=\"a{sv}\" direction=\"in\"/></method>"
        "<method name=\"Open\"><arg name=\"uris\" type=\"as\" direction=\"in\"/>"
        "<arg name=\"platform_data\" type=\"a{sv}\" direction=\"in\"/></method>"
        "<method name=\"ActivateAction\"><arg name=\"action_name\" type=\"s\" direction=\"in\"/>"
        "<arg name=\"parameter\" type=\"av\" direction=\"in\"/>"
        "<arg name=\"platform_data\" type=\"a{sv}\" direction=\"in\"/></method></interface>");
}

bool BusApplication::handleMessage(const QDBusMessage& message, const QDBusConnection& connection) {
    if (message.interface() != kInterface)
        return false;
    const auto request = requestOf(message);
    if (!request)
        return false;
    if (!connection.send(message.createReply()))
        foundation::log::warning("a launch could not be answered");
    launched_(*request);
    return true;
}

}  // namespace trimora::platform
