#include "editor/PictureFlows.h"

#include <utility>

#include "analytics/public/Telemetrix.h"
#include "controls/ColorPickerView.h"
#include "controls/ControlNotifications.h"
#include "controls/Metrics.h"
#include "editor/CursorPreview.h"
#include "editor/CutViewWidget.h"
#include "editor/EditorNotifications.h"
#include "editor/EditorToolbar.h"
#include "editor/MiniMap.h"
#include "foundation/Log.h"
#include "foundation/PixelBuffer.h"

namespace trimora::editor {

using cutengine::PicturePtr;
using cutengine::RKImageCutView;
using std::filesystem::path;

namespace metrics = controls::metrics;

namespace {

// The alert's answers, in the order of its buttons.
constexpr int kSave = ports::Alert::kFirstButton;
constexpr int kCancel = kSave + 1;
constexpr int kDoNotSave = kSave + 2;

constexpr double kRest = 10;  // seconds

}  // namespace

PictureFlows::PictureFlows(const Services& services, const Parts& parts)
    : services_(services),
      parts_(parts),
      recentFiles_(services.settings),
      saveNotification_(services.userNotifications, services.workspace),
      clipboard_({services.save.queues, services.save.encoder, services.save.messages}),
      openFlow_(services.open,
                [this](const PicturePtr& picture, const path& file) {
                    if (comesFromFile_)
                        recentFiles_.add(file);
                    showPicture(picture);
                }),
      saveFlow_(services.save, cutView()) {
    openFlow_.onRefusal([this](const path& file) { openingRefused(file); });
    saveFlow_.onConfirmation([this] {
        giveMemoryBackAfterRest();
        const QString event = QStringLiteral("User saved picture: blur = %1");
        analytics::Telemetrix::logEvent(event.arg(cutView().isBlurOn() ? 1 : 0).toStdString());
    });
    saveFlow_.onSaved([this](const path& file) { saveNotification_.showSaveNotification(file); });
}

RKImageCutView& PictureFlows::cutView() const {
    return parts_.screen.outlets().viCut->view();
}

// ── Open ───────────────────────────────────────────────────────────────────────────────────────

void PictureFlows::openPicture() {
    services_.open.queues.mainQueue().async([this, alive = std::weak_ptr(alive_)] {
        if (!alive.expired())
            openFlow_.openPicture([this] { pictureChosen(); });
    });
}

void PictureFlows::pictureChosen() {
    unsavedBeforeOpening_ = parts_.saveState.isUnsaved();
    comesFromFile_ = true;
    parts_.saveState.workGone();
    parts_.panels.slideSaveOut();
}

void PictureFlows::openingRefused(const path& file) {
    giveMemoryBackAfterRest();
    recentFiles_.remove(file);
    if (!std::exchange(unsavedBeforeOpening_, false))
        return;
    parts_.saveState.strokeBegan();
    parts_.panels.slideSaveIn();
}

void PictureFlows::draggingFilesComplete_needsWait(const Files& urls, bool needsWait) {
    if (urls.empty())
        return;
    unsavedBeforeOpening_ = false;
    comesFromFile_ = !needsWait;
    openFlow_.open(urls, needsWait ? OpenFlow::Files::inTheMaking : OpenFlow::Files::complete);
}

void PictureFlows::openFiles(const Files& urls, bool needsWait) {
    if (urls.empty())
        return;
    if (filesOffered_)
        filesOffered_(urls);
    askThen([this, urls, needsWait] { draggingFilesComplete_needsWait(urls, needsWait); });
}

void PictureFlows::showPicture(const PicturePtr& picture) {
    const auto size = picture->size();
    foundation::log::debug("%f %f ", size.width, size.height);
    PanelConstraint& smallestWidth = parts_.screen.constraints().widthMainViewConstraint;
    if (smallestWidth.constant() < metrics::kLoadedWidth) {
        services_.notifications.post(notifications::kViewIsNotEmpty);
        smallestWidth.setConstant(metrics::kLoadedWidth);
    }
    const bool first = cutView().image() == nullptr;
    if (first)
        appearanceAfterAddingImage();
    const EditorOutlets& outlets = parts_.screen.outlets();
    outlets.miniMap->setPicture(picture);
    saveFlow_.pictureWillGo();
    cutView().setImage(picture);
    parts_.saveState.workGone();
    unsavedBeforeOpening_ = false;
    parts_.screen.showEmptyScreen(false);
    parts_.didEndDraw();
    // The cut view hides what is behind the picture with each one that comes.
    if (!first)
        parts_.modes.applyShownMode();
    parts_.zoom.showVisiblePart();
    outlets.viCut->setFocus();
    giveMemoryBackAfterRest();
}

void PictureFlows::appearanceAfterAddingImage() {
    const EditorOutlets& outlets = parts_.screen.outlets();
    outlets.ViewForCursor->hide();
    parts_.panels.showRightPanel();
    parts_.modes.showTransparent();
    outlets.eraserViewSettings->show();
    outlets.invertViewSettings->hide();
    services_.notifications.post(controls::notifications::kAddViewWithButton);
}

// ── Save, and clear ────────────────────────────────────────────────────────────────────────────

void PictureFlows::save_pressed() {
    saveFlow_.savePicture(openFlow_.folder());
}

void PictureFlows::askForSave() {
    askThen([this] { resetState(); });
}

void PictureFlows::askThen(std::function<void()> then) {
    const auto save = [this, then] {
        save_pressed();
        then();
    };
    ask(save, std::move(then));
}

void PictureFlows::askForSaveThen(std::function<void()> then) {
    const auto save = [this, then] { saveFlow_.savePicture(openFlow_.folder(), then); };
    ask(save, std::move(then));
}

void PictureFlows::ask(std::function<void()> save, std::function<void()> goOn) {
    if (!parts_.saveState.isUnsaved()) {
        goOn();
        return;
    }
    const ports::Alert alert{
        tr("Do you want to save result?").toStdString(),
        {tr("Save").toStdString(), tr("Cancel").toStdString(), tr("Don't save").toStdString()},
        kCancel};
    services_.open.panels.runAlert(
        alert, [save = std::move(save), goOn = std::move(goOn), alive = std::weak_ptr(alive_)](int answer) {
            if (alive.expired())
                return;
            if (answer == kSave)
                save();
            if (answer == kDoNotSave)
                goOn();
        });
}

void PictureFlows::resetState() {
    saveFlow_.pictureWillGo();
    cutView().setImage(nullptr);
    cutView().updateCursor();
    parts_.screen.showEmptyScreen(true);
    parts_.saveState.workGone();
    parts_.panels.hideInterfaceNoAnimation();
    parts_.screen.outlets().miniMap->setPicture(nullptr);
    if (EditorToolbar* const toolbar = parts_.saveState.toolbar())
        toolbar->updateHistoryButtons(cutView());
    giveMemoryBackAfterRest();
}

/// A second picture soon after the first spares the machine a lot; one that may come some day does not.
void PictureFlows::giveMemoryBackAfterRest() {
    rest_ = services_.scheduler.after(kRest, services_.open.queues.mainQueue(), [this] {
        if (openFlow_.isOpening() || saveFlow_.isSaving())
            giveMemoryBackAfterRest();
        else
            services_.open.queues.backgroundQueue().async(&foundation::PixelBuffer::trimStock);
    });
}

// ── Clipboard ──────────────────────────────────────────────────────────────────────────────────

void PictureFlows::copy() {
    if (cutView().image() != nullptr)
        clipboard_.copy(cutView().getResult());
}

void PictureFlows::paste() {
    PictureClipboard::Contents contents = clipboard_.paste();
    if (!contents.files.empty())
        openFiles(contents.files, false);
    else if (contents.picture != nullptr)
        askThen([this, picture = std::move(contents.picture)] {
            showPicture(cutengine::Picture::withCopies(picture, services_.open.queues.workers()));
        });
}

}  // namespace trimora::editor
