#pragma once

#include <QObject>
#include <filesystem>
#include <optional>

#include "app/GDPRController.h"
#include "app/MainInterface.h"
#include "codecs/PictureFileDecoder.h"
#include "codecs/PngEncoder.h"
#include "editor/ViewController.h"
#include "files/FolderLock.h"
#include "foundation/NotificationCenter.h"
#include "foundation/RealTime.h"
#include "foundation/ThreadQueues.h"
#include "main/TelemetrixWiring.h"
#include "platform/DBusNotifications.h"
#include "platform/DesktopWorkspace.h"
#include "platform/QtMainQueue.h"
#include "platform/QtSettings.h"
#include "util/ThreadFlow.h"

namespace trimora {

/// The whole program put together: every adapter is made here, once, and handed to whoever needs it.
///
/// Made after the QApplication and gone before it. Going waits for files that are being written. The
/// order of the members matters: each one uses only those above it.
class Wiring {
 public:
    /// `panels` ask the person; they outlive the wiring.
    explicit Wiring(ports::Panels& panels);
    Wiring(const Wiring&) = delete;
    Wiring& operator=(const Wiring&) = delete;

    [[nodiscard]] app::MainInterface& shell() { return shell_; }
    [[nodiscard]] editor::ViewController& editor() { return editor_; }

    /// Shows the window. What nobody is to wait for begins once it has been painted.
    void show();

    /// Whether a file is being read or written.
    [[nodiscard]] bool isBusy();

 private:
    [[nodiscard]] std::filesystem::path claimHistoryFolder();
    [[nodiscard]] app::MainInterface::Services shellServices();
    void showNotification(const ports::UserNotification& notification);
    [[nodiscard]] editor::ViewController::Services editorServices(ports::Panels& panels);

    platform::QtMainQueue mainQueue_;
    foundation::ThreadWorkers codecWorkers_;
    codecs::PictureFileDecoder decoder_{codecWorkers_};
    codecs::PngEncoder encoder_{codecWorkers_};
    foundation::ThreadQueueFactory queues_{mainQueue_};
    foundation::RealClock clock_;
    foundation::RealScheduler scheduler_;
    foundation::NotificationCenter notifications_;
    util::ThreadFlowRegistry threadFlows_{queues_, scheduler_, clock_};
    platform::QtSettings settings_;
    TelemetrixWiring telemetrix_;
    platform::DesktopWorkspace workspace_;
    std::optional<files::OwnedFolder> history_;
    app::MainInterface shell_;
    app::GDPRController consent_;
    platform::DBusNotifications userNotifications_;
    editor::ViewController editor_;
    QObject receiver_;  // of what comes after the first picture of the window
};

}  // namespace trimora
