#pragma once

#include <filesystem>
#include <optional>

#include "app/EditorWindow.h"
#include "codecs/PictureFileDecoder.h"
#include "codecs/PngEncoder.h"
#include "files/FolderLock.h"
#include "foundation/NotificationCenter.h"
#include "foundation/RealTime.h"
#include "foundation/ThreadQueues.h"
#include "platform/QtMainQueue.h"
#include "platform/QtPanels.h"

namespace trimora {

/// The whole program put together: every adapter is made here, once, and handed to whoever needs it.
///
/// Made after the QApplication and gone before it. Going waits for files that are being written. The
/// order of the members matters: each one uses only those above it.
class Wiring {
 public:
    Wiring();
    Wiring(const Wiring&) = delete;
    Wiring& operator=(const Wiring&) = delete;

    [[nodiscard]] app::EditorWindow& window() { return window_; }

 private:
    [[nodiscard]] std::filesystem::path claimHistoryFolder();

    platform::QtMainQueue mainQueue_;
    foundation::ThreadWorkers codecWorkers_;
    codecs::PictureFileDecoder decoder_{codecWorkers_};
    codecs::PngEncoder encoder_{codecWorkers_};
    foundation::ThreadQueueFactory queues_{mainQueue_};
    foundation::RealClock clock_;
    foundation::NotificationCenter notifications_;
    platform::QtPanels panels_;
    std::optional<files::OwnedFolder> history_;
    app::EditorWindow window_;
};

}  // namespace trimora
