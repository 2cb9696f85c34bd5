#include "platform/DBusNotifications.h"

#include <QDBusMessage>
#include <QVariantMap>
#include <chrono>
#include <utility>

#include "foundation/Log.h"
#include "platform/ActivationToken.h"
#include "platform/ApplicationId.h"
#include "platform/BusCall.h"

namespace trimora::platform {

using ports::NotificationActivation;
using ports::UserNotification;

namespace {

const QString kService = QStringLiteral("org.freedesktop.Notifications");
const QString kPath = QStringLiteral("/org/freedesktop/Notifications");
const QString kDefaultAction = QStringLiteral("default");
const QString kButton = QStringLiteral("button");
constexpr std::chrono::seconds kPatience{5};
constexpr int kServersOwnTime = -1;  // how long it stays on the screen

QDBusMessage callOf(const char* method) {
    return QDBusMessage::createMethodCall(kService, kPath, kService, QLatin1String(method));
}

QString bodyOf(const UserNotification& notification, const QStringList& capabilities) {
    QStringList lines{QString::fromStdString(notification.subtitle),
                      QString::fromStdString(notification.informativeText)};
    lines.removeAll(QString());
    const QString body = lines.join(QLatin1Char('\n'));
    return capabilities.contains(QLatin1String("body-markup")) ? body.toHtmlEscaped() : body;
}

/// Keys and titles by turns. The first is a click on the notification itself.
QStringList actionsOf(const UserNotification& notification, const QStringList& capabilities) {
    if (!capabilities.contains(QLatin1String("actions")))
        return {};
    QStringList actions{kDefaultAction, QString()};
    if (!notification.actionTitle.empty())
        actions << kButton << QString::fromStdString(notification.actionTitle);
    return actions;
}

}  // namespace

DBusNotifications::DBusNotifications(QDBusConnection bus, Fallback fallback)
    : bus_(std::move(bus)), fallback_(std::move(fallback)) {
    // With no sender named, this needs no answer of the bus; the slots look who speaks.
    const auto hear = [this](const char* signal, const char* slot) {
        return bus_.connect(QString(), kPath, kService, QLatin1String(signal), this, slot);
    };
    const bool heard = hear("ActionInvoked", SLOT(hearAction(uint, QString))) &&
                       hear("ActivationToken", SLOT(hearToken(uint, QString))) &&
                       hear("NotificationClosed", SLOT(hearClosed(uint, uint)));
    if (!heard)
        foundation::log::info("no session bus for notifications");
}

void DBusNotifications::post(const UserNotification& notification) {
    whenAnswered(callOf("GetCapabilities"), notification, [this, notification](const QDBusMessage& answer) {
        show(notification, answer.arguments().value(0).toStringList());
    });
}

void DBusNotifications::show(const UserNotification& notification, const QStringList& capabilities) {
    const QString id = QLatin1String(kApplicationId);
    QDBusMessage call = callOf("Notify");
    call << QStringLiteral("Trimora") << 0U << id << QString::fromStdString(notification.title)
         << bodyOf(notification, capabilities) << actionsOf(notification, capabilities)
         << QVariantMap{{QStringLiteral("desktop-entry"), id}} << kServersOwnTime;
    whenAnswered(call, notification, [this, notification](const QDBusMessage& answer) {
        shown_[answer.arguments().value(0).toUInt()] = {notification, answer.service()};
    });
}

void DBusNotifications::whenAnswered(const QDBusMessage& call, const UserNotification& notification,
                                     std::function<void(const QDBusMessage&)> then) {
    callOnBus(bus_, call, kPatience, this, [this, notification, then = std::move(then)](const auto& answer) {
        if (answer.type() == QDBusMessage::ReplyMessage)
            return then(answer);
        foundation::log::info("no notification server: %s", qPrintable(answer.errorMessage()));
        fallback_(notification);
    });
}

void DBusNotifications::activated(const UserNotification& notification,
                                  NotificationActivation activation) const {
    if (activated_)
        activated_(notification, activation);
}

const DBusNotifications::Shown* DBusNotifications::find(uint id) const {
    const auto found = shown_.find(id);
    return found != shown_.end() && found->second.server == message().service() ? &found->second : nullptr;
}

void DBusNotifications::hearAction(uint id, const QString& key) {
    const Shown* const shown = find(id);
    if (shown == nullptr)
        return;
    const UserNotification notification = shown->notification;
    if (key == kButton)
        activated(notification, NotificationActivation::actionButton);
    else if (key == kDefaultAction)
        activated(notification, NotificationActivation::contentsClicked);
}

void DBusNotifications::hearToken(uint id, const QString& token) {
    if (find(id) != nullptr)
        activation_token::keep(token.toStdString());
}

void DBusNotifications::hearClosed(uint id, uint /*reason*/) {
    if (find(id) != nullptr)
        shown_.erase(id);
}

}  // namespace trimora::platform
