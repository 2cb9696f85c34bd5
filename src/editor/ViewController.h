#pragma once

#include <QPointer>
#include <any>
#include <filesystem>
#include <functional>
#include <memory>
#include <vector>

#include "controls/ColorPickerView.h"
#include "controls/ControlContext.h"
#include "controls/ViewWithSliderTextField.h"
#include "cutengine/CutViewHost.h"
#include "cutengine/PictureDecoder.h"
#include "cutengine/PictureEncoder.h"
#include "cutengine/RKImageCutView.h"
#include "editor/EditorView.h"
#include "editor/Messages.h"
#include "ports/Panels.h"
#include "ports/Settings.h"
#include "ports/UserNotifications.h"
#include "ports/Workspace.h"
#include "util/ObjectRuntime.h"
#include "util/ThreadFlow.h"

class QAbstractButton;
class QMenu;

namespace trimora::editor {

class EditorToolbar;
class PictureFlows;
class RecentFiles;
class EditorTools;
class WarningRestoreImageController;

/// The controller of the editor screen. It owns the screen and no picture: the picture, its mask and its
/// history are the cut view's, and the tool is what the cut view's properties say.
///
/// Commands come by selector name through performSelector(), from menus, the toolbar and the screen's own
/// buttons; ViewControllerSelectors.cpp is the list of them. The argument is the sender, and is ignored but
/// where the list says so.
///
/// Life cycle. The first call of view(), or the first selector, makes the screen (viewDidLoad), of which a
/// start shows the drop area; whoever needs more of it, or completeScreen(), makes the rest. The screen
/// becomes a window's content from there. Its first appearance hides the quick panels and starts the arrow
/// of the empty screen. The toolbar is handed over before the first picture comes. The analytics library
/// must be installed before the screen is made. A window that takes the screen as its child may delete it;
/// the controller must not be sent anything any more then.
///
/// Main thread only. The services outlive the controller and the background queue's work.
class ViewController final : public util::RuntimeObject,
                             public cutengine::RKImageCutViewDelegate,
                             public controls::ViewWithSliderDelegate,
                             public controls::ColorPickerViewDelegate {
 public:
    struct Services {
        cutengine::RKImageCutView::Services cutView;
        foundation::Scheduler& scheduler;
        util::ThreadFlowRegistry& threadFlows;
        cutengine::PictureDecoder& decoder;
        cutengine::PictureEncoder& encoder;
        ports::Panels& panels;
        ports::Settings& settings;
        ports::UserNotifications& userNotifications;
        ports::Workspace& workspace;
        Messages& messages;
        std::filesystem::path caches;             ///< for files that are dragged in and out
        std::function<int()> randomMicroseconds;  ///< see cutengine::Patience
    };
    explicit ViewController(const Services& services);
    ~ViewController() override;

    /// The screen.
    [[nodiscard]] EditorView& view();

    /// Makes what is still missing of the screen, so that nobody has to wait for it later.
    void completeScreen() { (void)parts(); }

    /// The window's toolbar, borrowed; null takes it off.
    void setToolbar(EditorToolbar* toolbar);

    /// Opens the first readable one of the files, which are still being written where `needsWait` is set.
    /// What is on the screen is replaced without a question.
    void draggingFilesComplete_needsWait(const std::vector<std::filesystem::path>& urls, bool needsWait);

    /// The same for files that come without an open panel (dropped, handed over by another program, taken
    /// from the recent ones): unsaved work is asked about first.
    void openFiles(const std::vector<std::filesystem::path>& urls, bool needsWait = false);

    /// Called with the files that come without an open panel, before anything is asked about them.
    void onFilesOffered(std::function<void(const std::vector<std::filesystem::path>&)> handler);

    /// Asks about unsaved work, where there is some, and then goes on unless the person cancels.
    void askThen(std::function<void()> then);

    /// The brush menu, popped up beside the quick brush button; none, and no menu, for any other sender.
    QMenu* showMenu_withEvent(QAbstractButton* sender);

    /// Says that something could not be done for want of memory.
    void tellOfMissingMemory();

    // ── Delegates ──────────────────────────────────────────────────────────────────────────────
    void cutViewWillStartDraw(cutengine::RKImageCutView* view) override;
    void cutViewDidEndDraw(cutengine::RKImageCutView* view) override;
    void cutViewDidChangeHistoryState(cutengine::RKImageCutView* view) override;
    void cutView_didChangeBrushDiameter(cutengine::RKImageCutView* view, float diameter) override;
    void RectBorderForMiniMap(cutengine::RKImageCutView* view, float SootnX, float SootnY, float SizeW,
                              float SizeH) override;
    void CustomSliderDidChange_withValue(controls::ViewWithSliderTextField& view, double value) override;
    void ColorPickerDidSelectNSColor(const cutengine::Colour& color) override;

    // ── What there is to see, for the window and for those who look inside ─────────────────────
    [[nodiscard]] EditorOutlets& outlets();
    [[nodiscard]] EditorConstraints& constraints();
    [[nodiscard]] cutengine::RKImageCutView& cutView();
    [[nodiscard]] RecentFiles& recentFiles();
    [[nodiscard]] const EditorTools& tools();
    /// With what is being read and written, and the name that the last save panel proposed.
    [[nodiscard]] const PictureFlows& flows();
    /// Whether a stroke is under way.
    [[nodiscard]] bool isDrawingStroke() const { return isDrawingStroke_; }
    /// 1 once a stroke has begun on the present picture, 0 before.
    [[nodiscard]] float saveEnabled();

 private:
    struct Parts;

    static util::RuntimeClassPtr makeClass();

    [[nodiscard]] Parts& parts();
    void viewDidLoad();
    void viewWillAppear();
    void updateDesign();
    void addObservers();
    void screenIsComplete();
    void connectScreen();
    void disconnectScreen();
    void connectButtons();
    void connectMiniMap();

    void showBrushMenu();
    void back_pressed();
    void forward_pressed();
    void reset_pressed();
    void resetImage();

    void burstOfStrokesEnded();

    Services services_;
    controls::ControlContext context_;
    QPointer<EditorView> screen_;
    std::unique_ptr<Parts> parts_;  // what works on the screen; there once that is complete
    QPointer<WarningRestoreImageController> restoreWarning_;
    EditorToolbar* toolbar_ = nullptr;
    bool firstRun_ = false;  // the screen has appeared before
    bool isDrawingStroke_ = false;
    std::vector<foundation::NotificationCenter::Observation> observations_;
    std::unique_ptr<foundation::Timer> cursorAfterShowing_;
    /// The flow of stroke ends is kept by its registry for good: its end looks whether this still lives.
    std::shared_ptr<char> alive_ = std::make_shared<char>();
};

}  // namespace trimora::editor
