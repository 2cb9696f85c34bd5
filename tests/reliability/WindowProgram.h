#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

#include "QueuesBeside.h"
#include "cli/RunDesktop.h"
#include "main/Wiring.h"
#include "platform/QtPanels.h"

namespace trimora::reliability {

/// Dialogs to choose a file in that hold one file each, which was chosen beforehand, and two buttons: a file
/// system to wander about in is no place for random presses. Alerts are the program's own.
class OneFilePanels final : public ports::Panels {
 public:
    /// Names the file of a panel that comes up.
    using Next = std::function<std::filesystem::path()>;

    OneFilePanels(Next toOpen, Next toSave) : toOpen_(std::move(toOpen)), toSave_(std::move(toSave)) {}

    void chooseFileToOpen(const std::filesystem::path& folder, FilesAnswer answer) override;
    void chooseFileToSave(const std::filesystem::path& folder, const std::string& name,
                          Answer answer) override;
    void runAlert(const ports::Alert& alert, AlertAnswer answer) override;

 private:
    const Next toOpen_;
    const Next toSave_;
    platform::QtPanels real_;
};

/// The whole program with all its widgets, painted though nobody looks, on virtual time and queues that are
/// run here. Ends as by Quit. One at a time; the next in the same homes is the next start.
class WindowProgram {
 public:
    WindowProgram(Homes homes, ports::Panels& panels);
    ~WindowProgram();
    WindowProgram(const WindowProgram&) = delete;
    WindowProgram& operator=(const WindowProgram&) = delete;

    [[nodiscard]] Wiring& wiring() { return *wiring_; }
    [[nodiscard]] RunTime& time() { return desktop_.time(); }
    [[nodiscard]] app::MainWindow& window() { return wiring_->shell().window(); }
    [[nodiscard]] editor::ViewController& editor() { return wiring_->editor(); }
    [[nodiscard]] cutengine::RKImageCutView& cutView() { return editor().cutView(); }

    /// Lets all that moves come to rest: some seconds go by.
    void rest();

    [[nodiscard]] bool hasQuit() const { return desktop_.hasQuit(); }

    /// The lines that told the person that something could not be done, since the last call.
    [[nodiscard]] std::vector<std::string> takeTroubles() { return std::exchange(troubles_, {}); }

 private:
    std::vector<std::string> troubles_;
    RunDesktop desktop_{RunTime::Pace::virtually};
    QueuesBeside queues_{desktop_.time().queues()};
    std::unique_ptr<Wiring> wiring_;
};

}  // namespace trimora::reliability
