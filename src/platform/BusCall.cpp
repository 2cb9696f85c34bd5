#include "platform/BusCall.h"

#include <QDBusError>
#include <QDBusPendingCallWatcher>
#include <QDBusPendingReply>
#include <QMetaObject>
#include <utility>

namespace trimora::platform {

void callOnBus(const QDBusConnection& bus, const QDBusMessage& call, std::chrono::milliseconds patience,
               QObject* context, std::function<void(const QDBusMessage& answer)> then) {
    if (!bus.isConnected()) {  // a watcher of such a call would be silent for ever
        const auto answer = [then = std::move(then)] {
            then(QDBusMessage::createError(QDBusError::Disconnected, QStringLiteral("there is no bus")));
        };
        QMetaObject::invokeMethod(context, answer, Qt::QueuedConnection);
        return;
    }
    auto* const watcher =
        new QDBusPendingCallWatcher(bus.asyncCall(call, static_cast<int>(patience.count())), context);
    QObject::connect(watcher, &QDBusPendingCallWatcher::finished, context, [watcher, then = std::move(then)] {
        watcher->deleteLater();
        then(QDBusPendingReply<>(*watcher).reply());
    });
}

}  // namespace trimora::platform
