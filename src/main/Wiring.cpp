#include "main/Wiring.h"

#include <utility>

#include "app/FirstPaint.h"
#include "app/MessageLine.h"
#include "editor/PictureFlows.h"
#include "editor/RecentFiles.h"
#include "foundation/Log.h"
#include "platform/Application.h"

namespace trimora {
namespace {

constexpr const char* kWindowPlace = "windowPlace";

}  // namespace

Wiring::Wiring(Host host)
    : host_(std::move(host)),
      decoder_(host_.codecWorkers),
      encoder_(host_.codecWorkers),
      threadFlows_(host_.queues, host_.scheduler, host_.clock),
      telemetrix_(
          {host_.queues, host_.clock, host_.scheduler, notifications_, host_.homes.data, host_.homes.config},
          host_.recording, host_.earlierYes),
      shell_(shellServices()),
      consent_({telemetrix_.consent(), [this] { return &shell_.window(); }, telemetrix_.privacyUrl(),
                [this] { return shell_.window().contentTop(); }}),
      editor_(editorServices()) {
    editor_.setToolbar(&shell_.windowController());
    shell_.setContent(editor_, &editor_.view(),
                      {.cutView = [this] { return &editor_.cutView(); },
                       .recentFiles = [this] { return editor_.recentFiles().files(); },
                       .openRecent = [this](const auto& file) { editor_.openFiles({file}); },
                       .clearRecent = [this] { editor_.recentFiles().clear(); }});
    if (const auto* const application = platform::Application::running()) {
        QObject::connect(application, &platform::Application::memoryMissing, &receiver_,
                         [this] { editor_.tellOfMissingMemory(); });
    }
}

void Wiring::show() {
    app::afterFirstPaint(
        shell_.window(), receiver_,
        [this] {
            telemetrix_.beginWork();
            editor_.completeScreen();
        },
        app::kUntilShown);
    shell_.window().show();
    telemetrix_.watchKeyWindow();
}

bool Wiring::isBusy() {
    const editor::PictureFlows& flows = editor_.flows();
    return flows.openFlow().isOpening() || flows.saveFlow().isSaving();
}

app::MainInterface::Services Wiring::shellServices() {
    return {.controls = {host_.clock, host_.scheduler, host_.queues.mainQueue(), notifications_},
            .application = {.mainQueue = host_.queues.mainQueue(),
                            .workspace = host_.workspace,
                            .quit = host_.quit,
                            .startConsent = [this] { consent_.start(); },
                            .privacyUrl = [this] { return consent_.getPrivacyUrl(); },
                            .showUsageData = [this] { consent_.showUsageData(); }},
            .place = {
                .read = [this] { return host_.settings.text(kWindowPlace).value_or(""); },
                .write = [this](const std::string& place) { host_.settings.setText(kWindowPlace, place); }}};
}

editor::ViewController::Services Wiring::editorServices() {
    return {.cutView = {host_.queues, host_.clock, notifications_, claimHistoryFolder()},
            .scheduler = host_.scheduler,
            .threadFlows = threadFlows_,
            .decoder = decoder_,
            .encoder = encoder_,
            .panels = host_.panels,
            .settings = host_.settings,
            .userNotifications = host_.userNotifications,
            .workspace = host_.workspace,
            .messages = shell_.messages(),
            .caches = host_.homes.cache / "Trimora",
            .randomMicroseconds = host_.randomMicroseconds};
}

std::filesystem::path Wiring::claimHistoryFolder() {
    const std::filesystem::path base = host_.homes.data / "Trimora";
    auto owned = files::ownedFolder(base, "history");
    if (!owned) {
        foundation::log::warning("no folder for the history: %s", owned.error().message.c_str());
        return {};
    }
    history_ = std::move(*owned);
    return history_->folder.path();
}

}  // namespace trimora
