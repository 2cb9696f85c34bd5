#pragma once

#include <QCoreApplication>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "editor/BackgroundModes.h"
#include "editor/EditorView.h"
#include "editor/InterfacePanels.h"
#include "editor/OpenFlow.h"
#include "editor/PictureClipboard.h"
#include "editor/RecentFiles.h"
#include "editor/SaveFlow.h"
#include "editor/SaveNotification.h"
#include "editor/SaveState.h"
#include "editor/ViewZoom.h"
#include "foundation/Clock.h"
#include "foundation/NotificationCenter.h"

namespace trimora::editor {

/// How pictures come onto the editor screen and go from it, and the question before work is thrown away.
///
/// A picture that is told to come later (a file is read in the background) finds the screen as it is then.
/// What pictures that have gone leave behind serves the next ones for some seconds, then the system gets it.
/// Main thread only; services and parts outlive the object and what it has begun.
class PictureFlows {
    Q_DECLARE_TR_FUNCTIONS(PictureFlows)

 public:
    using Files = std::vector<std::filesystem::path>;

    struct Services {
        OpenFlow::Services open;
        SaveFlow::Services save;
        foundation::Scheduler& scheduler;
        ports::Settings& settings;
        ports::UserNotifications& userNotifications;
        ports::Workspace& workspace;
        foundation::NotificationCenter& notifications;
    };
    /// What of the screen the flows change.
    struct Parts {
        EditorView& screen;
        InterfacePanels& panels;
        BackgroundModes& modes;
        ViewZoom& zoom;
        SaveState& saveState;
        /// The controller's own answer to the end of a stroke; called for a picture that has come.
        std::function<void()> didEndDraw;
    };
    PictureFlows(const Services& services, const Parts& parts);

    /// Asks for a file, once the present event is over, and opens it.
    void openPicture();

    /// Opens the first readable one of the files, which are still being written where `needsWait` is set.
    void draggingFilesComplete_needsWait(const Files& urls, bool needsWait);

    /// The same for files that come unasked: unsaved work is asked about first.
    void openFiles(const Files& urls, bool needsWait);

    /// Asks where to and saves the result.
    void save_pressed();

    /// Clears the screen, unsaved work being asked about first.
    void askForSave();

    /// Clears the screen.
    void resetState();

    /// Asks about unsaved work, where there is some, and then goes on unless the person cancels. Saving
    /// asks where to at once, and goes on without waiting for the answer.
    void askThen(std::function<void()> then);

    /// The same for what ends the program: goes on only when the file of a save is there.
    void askForSaveThen(std::function<void()> then);

    /// The result to the clipboard, and a picture from it (unsaved work being asked about first).
    void copy();
    void paste();

    /// Called with the files that come unasked, before anything is asked about them.
    void onFilesOffered(std::function<void(const Files&)> handler) { filesOffered_ = std::move(handler); }

    [[nodiscard]] RecentFiles& recentFiles() { return recentFiles_; }
    [[nodiscard]] const OpenFlow& openFlow() const { return openFlow_; }
    [[nodiscard]] const SaveFlow& saveFlow() const { return saveFlow_; }

 private:
    [[nodiscard]] cutengine::RKImageCutView& cutView() const;
    void ask(std::function<void()> save, std::function<void()> goOn);
    void pictureChosen();
    void openingRefused(const std::filesystem::path& file);
    void showPicture(const cutengine::PicturePtr& picture);
    void appearanceAfterAddingImage();
    void giveMemoryBackAfterRest();

    Services services_;
    Parts parts_;
    RecentFiles recentFiles_;
    SaveNotification saveNotification_;
    PictureClipboard clipboard_;
    OpenFlow openFlow_;
    SaveFlow saveFlow_;
    std::function<void(const Files&)> filesOffered_;
    bool comesFromFile_ = false;         // what is being opened is a file of the person's, to be found again
    bool unsavedBeforeOpening_ = false;  // Save was switched off for a file that may be refused
    std::unique_ptr<foundation::Timer> rest_;
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace trimora::editor
