#include "main/Wiring.h"

#include <QCoreApplication>
#include <QRandomGenerator>
#include <QUrl>

#include "app/FirstPaint.h"
#include "app/MessageLine.h"
#include "editor/PictureFlows.h"
#include "editor/RecentFiles.h"
#include "files/UserFolders.h"
#include "foundation/Log.h"

namespace trimora {
namespace {

constexpr const char* kWindowPlace = "windowPlace";
constexpr int kPauses = 100'000;  // microseconds that pauses between looks at a growing file differ by

}  // namespace

Wiring::Wiring(ports::Panels& panels)
    : settings_(files::configHome() / "Trimora" / "trimora.ini"),
      telemetrix_({queues_, clock_, scheduler_, notifications_, files::dataHome(), files::configHome()},
                  TelemetrixWiring::Begin::afterFirstFrame),
      workspace_(QDBusConnection::sessionBus()),
      shell_(shellServices()),
      consent_({telemetrix_.consent(), [this] { return &shell_.window(); }, telemetrix_.privacyUrl(),
                [this] { return shell_.window().contentTop(); }}),
      userNotifications_(QDBusConnection::sessionBus(),
                         [this](const auto& notification) { showNotification(notification); }),
      editor_(editorServices(panels)) {
    editor_.setToolbar(&shell_.windowController());
    shell_.setContent(editor_, &editor_.view(),
                      {.cutView = &editor_.cutView(),
                       .recentFiles = [this] { return editor_.recentFiles().files(); },
                       .openRecent = [this](const auto& file) { editor_.openFiles({file}); },
                       .clearRecent = [this] { editor_.recentFiles().clear(); }});
}

void Wiring::show() {
    app::afterFirstPaint(shell_.window(), receiver_, [this] { telemetrix_.beginWork(); });
    shell_.window().show();
    telemetrix_.watchKeyWindow();
}

// Where the desktop has no place for notifications, the window has.
void Wiring::showNotification(const ports::UserNotification& notification) {
    const QUrl file(QString::fromStdString(notification.informativeText));
    shell_.messages().offer(notification.subtitle + ": " + file.fileName().toStdString(),
                            notification.actionTitle, [this, notification] {
                                userNotifications_.activated(notification,
                                                             ports::NotificationActivation::actionButton);
                            });
}

bool Wiring::isBusy() {
    const editor::PictureFlows& flows = editor_.flows();
    return flows.openFlow().isOpening() || flows.saveFlow().isSaving();
}

app::MainInterface::Services Wiring::shellServices() {
    return {.controls = {clock_, scheduler_, mainQueue_, notifications_},
            .application = {.mainQueue = mainQueue_,
                            .workspace = workspace_,
                            .quit = [] { QCoreApplication::quit(); },
                            .startConsent = [this] { consent_.start(); },
                            .privacyUrl = [this] { return consent_.getPrivacyUrl(); },
                            .showUsageData = [this] { consent_.showUsageData(); }},
            .place = {.read = [this] { return settings_.text(kWindowPlace).value_or(""); },
                      .write = [this](const std::string& place) { settings_.setText(kWindowPlace, place); }}};
}

editor::ViewController::Services Wiring::editorServices(ports::Panels& panels) {
    return {.cutView = {queues_, clock_, notifications_, claimHistoryFolder()},
            .scheduler = scheduler_,
            .threadFlows = threadFlows_,
            .decoder = decoder_,
            .encoder = encoder_,
            .panels = panels,
            .settings = settings_,
            .userNotifications = userNotifications_,
            .workspace = workspace_,
            .messages = shell_.messages(),
            .caches = files::cacheHome() / "Trimora",
            .randomMicroseconds = [] { return QRandomGenerator::global()->bounded(kPauses); }};
}

std::filesystem::path Wiring::claimHistoryFolder() {
    const std::filesystem::path base = files::dataHome() / "Trimora";
    auto owned = files::ownedFolder(base, "history");
    if (!owned) {
        foundation::log::warning("no folder for the history: %s", owned.error().message.c_str());
        return {};
    }
    history_ = std::move(*owned);
    return history_->folder.path();
}

}  // namespace trimora
