#pragma once

#include <filesystem>

#include "ports/Panels.h"

namespace trimora {

class Wiring;

/// The panels of a demo: nobody is asked. Pictures are saved where it was told beforehand, an alert's
/// first button is pressed, and nothing is opened.
class DemoPanels final : public ports::Panels {
 public:
    explicit DemoPanels(std::filesystem::path saveTo) : saveTo_(std::move(saveTo)) {}

    void chooseFileToOpen(const std::filesystem::path& folder, FilesAnswer answer) override;
    void chooseFileToSave(const std::filesystem::path& folder, const std::string& name,
                          Answer answer) override;
    void runAlert(const ports::Alert& alert, AlertAnswer answer) override;

    [[nodiscard]] const std::filesystem::path& saveTo() const { return saveTo_; }

 private:
    const std::filesystem::path saveTo_;
};

/// Shows the program at work without a person: opens the picture in the window, cuts with presses and
/// movements of the mouse as the toolkit would deliver them, saves `folder`/cut.png (which `panels` were
/// told of) and a picture of the window, `folder`/screenshot.png, and prints both names. Returns the
/// program's exit status; what could not be done is told on standard error. Main thread, before the event
/// loop.
[[nodiscard]] int runDemo(Wiring& program, const DemoPanels& panels, const std::filesystem::path& picture,
                          const std::filesystem::path& folder);

}  // namespace trimora
