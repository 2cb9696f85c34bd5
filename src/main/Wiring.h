#pragma once

#include <filesystem>
#include <optional>

#include "app/MainInterface.h"
#include "codecs/PictureFileDecoder.h"
#include "codecs/PngEncoder.h"
#include "editor/ViewController.h"
#include "files/FolderLock.h"
#include "foundation/NotificationCenter.h"
#include "foundation/RealTime.h"
#include "foundation/ThreadQueues.h"
#include "main/PlainDesktop.h"
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

    /// Whether a file is being read or written.
    [[nodiscard]] bool isBusy();

 private:
    [[nodiscard]] std::filesystem::path claimHistoryFolder();
    [[nodiscard]] app::MainInterface::Services shellServices();
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
    ToolkitWorkspace workspace_;
    std::optional<files::OwnedFolder> history_;
    app::MainInterface shell_;
    WindowNotifications userNotifications_;
    editor::ViewController editor_;
};

}  // namespace trimora
