#pragma once

#include <filesystem>
#include <memory>
#include <string>

#include "cutengine/PictureEncoder.h"
#include "cutengine/RKImageCutView.h"
#include "editor/Messages.h"
#include "foundation/Clock.h"
#include "foundation/Queues.h"
#include "ports/Panels.h"

namespace trimora::editor {

/// The name that a save proposes: the program's, and this moment of the account's own time.
[[nodiscard]] std::string defaultFileName(foundation::Clock::WallTime now);

/// How the result leaves the editor: a panel asks where to, and a PNG is written there, whatever ending
/// the person gave the name.
///
/// The result is taken at the moment of the panel's answer; encoding and writing run on the background
/// queue while the person goes on. The file is written whole or not at all: where that fails the person
/// is told once, and an old file of the name is as it was.
///
/// Main thread only. The services outlive the background queue's work. A flow that goes finishes the
/// writing that it began, without a word.
class SaveFlow {
 public:
    struct Services {
        foundation::QueueFactory& queues;
        foundation::Clock& clock;
        cutengine::PictureEncoder& encoder;
        ports::Panels& panels;
        Messages& messages;
    };

    SaveFlow(const Services& services, cutengine::RKImageCutView& view);

    /// Asks where to and saves. Without a picture nothing happens. The panel begins in the folder of the
    /// last save, or in `folder` before there is one.
    void savePicture(const std::filesystem::path& folder);

    /// Saves what the view shows now to this file.
    void saveTo(const std::filesystem::path& file);

    /// Whether a file is being written.
    [[nodiscard]] bool isSaving() const { return *underWay_ > 0; }

 private:
    Services services_;
    cutengine::RKImageCutView& view_;
    std::filesystem::path folder_;
    // How many files are being written. Held by the flow alone: work that finds it gone keeps silent.
    std::shared_ptr<int> underWay_ = std::make_shared<int>(0);
};

}  // namespace trimora::editor
