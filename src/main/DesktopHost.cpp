#include "main/DesktopHost.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QUrl>

#include "files/UserFolders.h"

namespace trimora {
namespace {

constexpr int kPauses = 100'000;  // microseconds that pauses between looks at a growing file differ by

}  // namespace

DesktopHost::DesktopHost(ports::Panels& panels)
    : panels_(panels),
      homes_{files::dataHome(), files::configHome(), files::cacheHome()},
      settings_(homes_.config / "Trimora" / "trimora.ini"),
      workspace_(QDBusConnection::sessionBus()),
      userNotifications_(QDBusConnection::sessionBus(),
                         [this](const auto& notification) { offer(notification); }) {}

Host DesktopHost::host() {
    return {.queues = queues_,
            .clock = clock_,
            .scheduler = scheduler_,
            .codecWorkers = codecWorkers_,
            .panels = panels_,
            .settings = settings_,
            .userNotifications = userNotifications_,
            .workspace = workspace_,
            .homes = homes_,
            .recording = TelemetrixWiring::Begin::afterFirstFrame,
            .earlierYes = TelemetrixWiring::EarlierYes::counts,
            .randomMicroseconds = [] { return QRandomGenerator::global()->bounded(kPauses); },
            .quit = [] { QCoreApplication::quit(); }};
}

void DesktopHost::offer(const ports::UserNotification& notification) {
    if (line_ == nullptr)
        return;
    const QUrl file(QString::fromStdString(notification.informativeText));
    line_->offer(notification.subtitle + ": " + file.fileName().toStdString(), notification.actionTitle,
                 [this, notification] {
                     userNotifications_.activated(notification, ports::NotificationActivation::actionButton);
                 });
}

}  // namespace trimora
