#pragma once

#include <QDBusConnection>
#include <QDBusContext>
#include <QObject>
#include <QStringList>
#include <functional>
#include <map>

#include "ports/UserNotifications.h"

class QDBusMessage;

namespace trimora::platform {

/// User notifications through the desktop's notification server (org.freedesktop.Notifications).
///
/// The title is the summary; subtitle and text are the body's lines. The button is shown where the
/// server has buttons. Every call is asynchronous: a server that starts slowly, hangs or does not exist
/// never holds up the window. Made and used on the main thread, after the QApplication.
class DBusNotifications final : public QObject, public ports::UserNotifications, protected QDBusContext {
    Q_OBJECT

 public:
    /// Shows a notification some other way; may call activated() later for it.
    using Fallback = std::function<void(const ports::UserNotification&)>;

    /// `fallback` is handed every notification that no server takes.
    DBusNotifications(QDBusConnection bus, Fallback fallback);

    void post(const ports::UserNotification& notification) override;
    void onActivation(Activated activated) override { activated_ = std::move(activated); }

    /// For the fallback: the person answered a notification that it shows.
    void activated(const ports::UserNotification& notification,
                   ports::NotificationActivation activation) const;

 private slots:
    void hearAction(uint id, const QString& key);
    void hearToken(uint id, const QString& token);
    void hearClosed(uint id, uint reason);

 private:
    /// What a server shows for us, until it is closed.
    struct Shown {
        ports::UserNotification notification;
        QString server;  ///< its unique name; nobody else's word about it counts
    };

    void whenAnswered(const QDBusMessage& call, const ports::UserNotification& notification,
                      std::function<void(const QDBusMessage&)> then);
    void show(const ports::UserNotification& notification, const QStringList& capabilities);
    [[nodiscard]] const Shown* find(uint id) const;

    QDBusConnection bus_;
    Fallback fallback_;
    Activated activated_;
    std::map<uint, Shown> shown_;
};

}  // namespace trimora::platform
