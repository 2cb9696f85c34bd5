#pragma once

#include <QCoreApplication>
#include <filesystem>
#include <functional>
#include <memory>
#include <optional>
#include <string>
#include <vector>

#include "cutengine/PictureEncoder.h"
#include "cutengine/RKImageCutView.h"
#include "editor/Messages.h"
#include "foundation/Clock.h"
#include "foundation/Queues.h"
#include "ports/Panels.h"
#include "ports/Settings.h"

namespace trimora::editor {

/// The name that a save proposes: the program's, and this moment of the account's own time.
[[nodiscard]] std::string defaultFileName(foundation::Clock::WallTime now);

/// How the result leaves the editor: a panel asks where to, and a PNG is written there, whatever ending
/// the person gave the name.
///
/// The result is that of the moment of the panel's answer; composing, encoding and writing run on the
/// background queue while the person goes on. The file is written whole or not at all: where that fails the
/// person is told once, and an old file of the name is as it was. Where the picture leaves the view before
/// the panel is answered, what is written is the result that it had (see pictureWillGo()).
///
/// Main thread only. The services outlive the background queue's work. A flow that goes finishes the
/// writing that it began, without a word.
class SaveFlow {
    Q_DECLARE_TR_FUNCTIONS(SaveFlow)

 public:
    struct Services {
        foundation::QueueFactory& queues;
        foundation::Clock& clock;
        cutengine::PictureEncoder& encoder;
        ports::Panels& panels;
        Messages& messages;
        ports::Settings* settings = nullptr;  ///< remembers the folder for the next run, where there is one
    };

    SaveFlow(const Services& services, cutengine::RKImageCutView& view);

    /// Called where the person has confirmed a save in the panel, before anything is written.
    void onConfirmation(std::function<void()> confirmed) { confirmed_ = std::move(confirmed); }
    /// Called with a file that has been written, when it is there.
    void onSaved(std::function<void(const std::filesystem::path&)> saved) { saved_ = std::move(saved); }

    /// Asks where to and saves. Without a picture nothing happens. The panel begins in the folder of the
    /// last save, or in `folder` before there is one. `whenSaved`, where there is one, is called when the
    /// file is there; never where the panel is cancelled or the file cannot be written.
    void savePicture(const std::filesystem::path& folder, std::function<void()> whenSaved = {});

    /// Saves what the view shows now to this file.
    void saveTo(const std::filesystem::path& file);

    /// To be called before the view is given another picture or none: a save panel that is open then
    /// still saves the work that it was opened for.
    void pictureWillGo();

    /// Whether a file is being written.
    [[nodiscard]] bool isSaving() const { return *underWay_ > 0; }

    /// The name that the last panel proposed; none before the first.
    [[nodiscard]] const std::optional<std::string>& proposedName() const { return proposedName_; }

 private:
    /// A panel, and the result of a picture that left the view while it was open.
    struct Question {
        bool isOpen = true;
        std::shared_ptr<const cutengine::PictureRows> result;
        std::function<void()> whenSaved;
    };
    [[nodiscard]] std::filesystem::path folderToBeginIn(const std::filesystem::path& folder) const;
    void answer(const std::filesystem::path& file, const Question& question);
    void write(const std::shared_ptr<const cutengine::PictureRows>& result, const std::filesystem::path& file,
               const std::function<void()>& whenSaved = {});
    void finish(const std::filesystem::path& file, const std::string& problem,
                const std::function<void()>& whenSaved);

    Services services_;
    cutengine::RKImageCutView& view_;
    std::function<void()> confirmed_;
    std::function<void(const std::filesystem::path&)> saved_;
    std::filesystem::path folder_;
    std::optional<std::string> proposedName_;
    std::vector<std::weak_ptr<Question>> questions_;  // each held by its panel's answer
    // How many files are being written. Held by the flow alone: work that finds it gone keeps silent.
    std::shared_ptr<int> underWay_ = std::make_shared<int>(0);
};

}  // namespace trimora::editor
