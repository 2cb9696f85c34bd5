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
#include "main/Host.h"
#include "main/TelemetrixWiring.h"
#include "util/ThreadFlow.h"

namespace trimora {

/// The whole program put together on a host: engine, codecs, editor, window and Telemetrix, each made here,
/// once, and handed to whoever needs it.
///
/// Made after the QApplication and gone before it and before the host. Going waits for files that are being
/// written, and ends the session of Telemetrix. One at a time; the next begins afresh. The order of the
/// members matters: each one uses only those above it. Main thread only.
class Wiring {
 public:
    explicit Wiring(Host host);
    Wiring(const Wiring&) = delete;
    Wiring& operator=(const Wiring&) = delete;

    [[nodiscard]] app::MainInterface& shell() { return shell_; }
    [[nodiscard]] editor::ViewController& editor() { return editor_; }
    [[nodiscard]] app::GDPRController& consent() { return consent_; }
    [[nodiscard]] TelemetrixWiring& telemetrix() { return telemetrix_; }
    [[nodiscard]] codecs::PngEncoder& encoder() { return encoder_; }

    /// Shows the window. What nobody is to wait for begins once it has been painted.
    void show();

    /// Whether a file is being read or written.
    [[nodiscard]] bool isBusy();

 private:
    [[nodiscard]] std::filesystem::path claimHistoryFolder();
    [[nodiscard]] app::MainInterface::Services shellServices();
    [[nodiscard]] editor::ViewController::Services editorServices();

    const Host host_;
    codecs::PictureFileDecoder decoder_;
    codecs::PngEncoder encoder_;
    foundation::NotificationCenter notifications_;
    util::ThreadFlowRegistry threadFlows_;
    TelemetrixWiring telemetrix_;
    std::optional<files::OwnedFolder> history_;
    app::MainInterface shell_;
    app::GDPRController consent_;
    editor::ViewController editor_;
    QObject receiver_;  // of what comes after the first picture of the window, and of missing memory
};

}  // namespace trimora
