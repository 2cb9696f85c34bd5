#include "editor/ViewController.h"

#include <QAbstractButton>
#include <utility>

#include "analytics/public/Telemetrix.h"
#include "controls/ControlNotifications.h"
#include "controls/KrugButton.h"
#include "controls/Palette.h"
#include "controls/SliderVertical.h"
#include "editor/BrushMenu.h"
#include "editor/CursorPreview.h"
#include "editor/CutViewWidget.h"
#include "editor/EditorNotifications.h"
#include "editor/EditorToolbar.h"
#include "editor/HintArrow.h"
#include "editor/MiniMap.h"
#include "editor/ViewControllerParts.h"
#include "editor/WarningRestoreImageController.h"
#include "util/ActionBlock.h"

namespace trimora::editor {

namespace palette = controls::palette;

using analytics::Telemetrix;
using controls::KrugButton;
using cutengine::RKImageCutView;

namespace {

// Strokes that follow each other within this time are one burst; seconds.
constexpr float kBurstDelay = 0.5F;
// How long after a burst the pointer is chosen once more, when whatever moved has come to rest.
constexpr double kCursorDelay = 0.1;

}  // namespace

ViewController::Parts::Parts(ViewController& controller, EditorView& editorScreen)
    : screen(editorScreen),
      panels(screen),
      tools(screen.outlets()),
      modes(screen.outlets(), controller.services_.cutView.notifications),
      zoom(screen.outlets()),
      saveState(*screen.outlets().btnSave),
      flows(
          {.open = {controller.services_.cutView.queues, controller.services_.decoder,
                    controller.services_.panels, controller.services_.messages,
                    &controller.services_.settings,
                    cutengine::Patience{controller.services_.cutView.clock,
                                        controller.services_.randomMicroseconds}},
           .save = {controller.services_.cutView.queues, controller.services_.cutView.clock,
                    controller.services_.encoder, controller.services_.panels, controller.services_.messages,
                    &controller.services_.settings},
           .scheduler = controller.services_.scheduler,
           .settings = controller.services_.settings,
           .userNotifications = controller.services_.userNotifications,
           .workspace = controller.services_.workspace,
           .notifications = controller.services_.cutView.notifications},
          {screen, panels, modes, zoom, saveState, [&controller] { controller.cutViewDidEndDraw(nullptr); }}),
      eyedropper(*screen.outlets().viCut) {}

ViewController::ViewController(const Services& services)
    : RuntimeObject(makeClass()),
      services_(services),
      context_{services.cutView.clock, services.scheduler, services.cutView.queues.mainQueue(),
               services.cutView.notifications} {}

ViewController::~ViewController() {
    observations_.clear();
    if (screen_ == nullptr)
        return;
    if (parts_ != nullptr)
        disconnectScreen();
    delete screen_;
}

void ViewController::disconnectScreen() {
    const EditorOutlets& outlets = screen_->outlets();
    cutView().setDelegate(nullptr);
    outlets.viDrug->setDelegate(nullptr);
    outlets.eraserSize->setSliderDelegate(nullptr);
    outlets.invertSize->setSliderDelegate(nullptr);
    outlets.colorPickerView->setColorDelegate(nullptr);
    outlets.sldBrushDiameter2->setTarget(nullptr);
}

// ── The screen ─────────────────────────────────────────────────────────────────────────────────

EditorView& ViewController::view() {
    if (screen_ == nullptr) {
        screen_ = new EditorView({services_.cutView, context_, services_.cutView.queues, services_.caches});
        viewDidLoad();
    }
    return *screen_;
}

ViewController::Parts& ViewController::parts() {
    if (parts_ == nullptr) {
        parts_ = std::make_unique<Parts>(*this, view());
        parts_->saveState.setToolbar(toolbar_);
        connectScreen();
        screenIsComplete();
    }
    return *parts_;
}

void ViewController::viewDidLoad() {
    Telemetrix::startSession();
    addObservers();
    screen_->onWillAppear([this] { viewWillAppear(); });
    screen_->onEmptyPress([this] { performSelector("openPicture:"); });
}

void ViewController::screenIsComplete() {
    util::setWantsLayerToAllSubviews(*screen_);
    updateDesign();
    const EditorOutlets& outlets = screen_->outlets();
    util::layerBackground(*outlets.rightPanelWithMode, palette::kPanel);
    cutView().setBlurOn(false);
    outlets.ViewForCursor->hide();
    if (firstRun_)
        parts_->panels.hideInterfaceNoAnimation();
}

void ViewController::viewWillAppear() {
    if (std::exchange(firstRun_, true))
        return;
    if (parts_ != nullptr)
        parts_->panels.hideInterfaceNoAnimation();
    screen_->arrow().addDownArrowAnimation();
}

void ViewController::updateDesign() {
    EditorOutlets& outlets = screen_->outlets();
    outlets.sldBrushDiameter = outlets.sldBrushDiameter2;
    outlets.viLeftPanelVariant1->hide();
    outlets.btnBlur = outlets.btnBlur2;
    outlets.btnBrush = outlets.btnBrush2;
    outlets.btnInvertBrush = outlets.btnInvertBrush2;
}

void ViewController::addObservers() {
    auto& center = services_.cutView.notifications;
    const auto observe = [this, &center](const char* name, const char* selector) {
        observations_.push_back(
            center.observe(name, [this, selector](const auto&) { performSelector(selector); }));
    };
    observe(notifications::kResetImage, "resetImage");
    observe(controls::notifications::kOpenPicture, "openPictureNew:");
    observe(controls::notifications::kSavePicture, "savePictureNew");
}

void ViewController::connectScreen() {
    const EditorOutlets& outlets = screen_->outlets();
    cutView().setDelegate(this);
    outlets.viDrug->setDelegate(parts_.get());
    outlets.eraserSize->setSliderDelegate(this);
    outlets.invertSize->setSliderDelegate(this);
    outlets.colorPickerView->setColorDelegate(this);
    outlets.colorPickerView->setEyedropper(
        [this](PictureEyedropper::Taken taken) { parts_->eyedropper.start(std::move(taken)); });
    outlets.viCut->onOpenRequest([this] { performSelector("openPicture:"); });
    outlets.viCut->onBrushSwap([this] { parts_->tools.brushWasSwapped(); });
    outlets.viCut->onHistoryTrouble([this](const std::string& reason) {
        const QString line = QCoreApplication::translate("ViewController", "Undo cannot be kept: %1");
        services_.messages.trouble(line.arg(QString::fromStdString(reason)).toStdString());
    });
    outlets.viCut->onMissingMemory([this] { tellOfMissingMemory(); });
    screen_->onPlacementChange([this] { parts_->zoom.showVisiblePart(); });
    connectButtons();
    connectMiniMap();
}

void ViewController::tellOfMissingMemory() {
    services_.messages.trouble(
        QCoreApplication::translate("ViewController", "There is not enough memory for that").toStdString());
}

void ViewController::connectButtons() {
    const EditorOutlets& outlets = screen_->outlets();
    struct Action {
        QAbstractButton* button;
        const char* selector;
    };
    const Action actions[] = {
        {outlets.btnHandNew, "hand_pressed_new:"},
        {outlets.btnEraserNew, "brush_pressed_new:"},
        {outlets.btnEraserHistoryNew, "invertBrush_pressed_new:"},
        {outlets.btnEraserMode, "chooseEraserMode:"},
        {outlets.btnColorMode, "chooseColorMode:"},
        {outlets.btnBlurMode, "chooseBlurMode:"},
        {outlets.btnBrush2, "brush_pressed:"},
        {outlets.btnInvertBrush2, "invertBrush_pressed:"},
        {outlets.btnBlur2, "blur_pressed:"},
        {outlets.btnZoomToFit, "zoomToFit:"},
    };
    for (const Action& action : actions)
        QObject::connect(action.button, &QAbstractButton::clicked, screen_,
                         [this, action] { performSelector(action.selector, std::any(action.button)); });
    for (KrugButton* const button : {outlets.btnHandNew, outlets.btnEraserNew, outlets.btnEraserHistoryNew,
                                     outlets.btnBrush2, outlets.btnInvertBrush2, outlets.btnBlur2})
        button->onShowMenu = [this](KrugButton& sender) { showMenu_withEvent(&sender); };
    outlets.sldBrushDiameter2->setTarget(this);
    outlets.sldBrushDiameter2->setAction("brushDiameter_changed:");
}

void ViewController::connectMiniMap() {
    MiniMap& map = *screen_->outlets().miniMap;
    map.onCentreWanted([this](foundation::Point share) { parts_->zoom.centreOn(share); });
    map.setResultSupply([this]() -> OutgoingPicture {
        const auto result = cutView().resultRows();
        if (result == nullptr)
            return {};
        auto png = pngBytes(services_.encoder, *result);
        return {defaultFileName(services_.cutView.clock.wallTime()), png ? *png : QByteArray()};
    });
}

void ViewController::setToolbar(EditorToolbar* toolbar) {
    toolbar_ = toolbar;
    if (parts_ != nullptr)
        parts_->saveState.setToolbar(toolbar);
}

// ── What others reach ──────────────────────────────────────────────────────────────────────────

void ViewController::draggingFilesComplete_needsWait(const std::vector<std::filesystem::path>& urls,
                                                     bool needsWait) {
    parts().flows.draggingFilesComplete_needsWait(urls, needsWait);
}

void ViewController::openFiles(const std::vector<std::filesystem::path>& urls, bool needsWait) {
    parts().flows.openFiles(urls, needsWait);
}

void ViewController::onFilesOffered(std::function<void(const std::vector<std::filesystem::path>&)> handler) {
    parts().flows.onFilesOffered(std::move(handler));
}

void ViewController::askThen(std::function<void()> then) {
    parts().flows.askThen(std::move(then));
}

EditorOutlets& ViewController::outlets() {
    return parts().screen.outlets();
}

EditorConstraints& ViewController::constraints() {
    return parts().screen.constraints();
}

RKImageCutView& ViewController::cutView() {
    return outlets().viCut->view();
}

RecentFiles& ViewController::recentFiles() {
    return parts().flows.recentFiles();
}

const EditorTools& ViewController::tools() {
    return parts().tools;
}

const PictureFlows& ViewController::flows() {
    return parts().flows;
}

float ViewController::saveEnabled() {
    return parts().saveState.saveEnabled();
}

// ── Brush menu ─────────────────────────────────────────────────────────────────────────────────

void ViewController::showBrushMenu() {
    showMenu_withEvent(screen_->outlets().btnBrush);
}

QMenu* ViewController::showMenu_withEvent(QAbstractButton* sender) {
    KrugButton* const brush = outlets().btnBrush;
    if (sender != brush)
        return nullptr;
    Telemetrix::logEvent("Brush menu opened");
    return BrushMenu::popUp(*brush, {.handSelected = [this] { performSelector("handSelected:"); },
                                     .brushSelected = [this] { performSelector("brushSelected:"); }});
}

// ── History ────────────────────────────────────────────────────────────────────────────────────

void ViewController::back_pressed() {
    cutView().prevHistoryState();
    Telemetrix::logEvent("button History: back toolbar");
}

void ViewController::forward_pressed() {
    cutView().nextHistoryState();
    Telemetrix::logEvent("button History: forward toolbar");
}

void ViewController::reset_pressed() {
    // What comes from outside is not kept away by the sheet; one question is enough.
    if (restoreWarning_ && restoreWarning_->isVisible())
        return restoreWarning_->raise();
    restoreWarning_ = new WarningRestoreImageController(context_, *screen_);
    restoreWarning_->presentAsSheet();
}

void ViewController::resetImage() {
    Telemetrix::logEvent("button reset pressed");
    // The picture may have gone while the person was asked, and a step of nothing could not be undone.
    if (cutView().image() != nullptr)
        cutView().resetMask();
}

// ── What the cut view tells ────────────────────────────────────────────────────────────────────

void ViewController::cutViewWillStartDraw(RKImageCutView* /*view*/) {
    parts_->saveState.strokeBegan();
    parts_->panels.slideSaveIn();
    parts_->panels.hideInterface(InterfacePanels::kStrokeMotion);
    isDrawingStroke_ = true;
}

void ViewController::cutViewDidEndDraw(RKImageCutView* /*view*/) {
    isDrawingStroke_ = false;
    cutView().updateCursor();
    services_.threadFlows
        .flowNamed("showInterface", kBurstDelay,
                   [this, alive = std::weak_ptr(alive_)] {
                       if (!alive.expired())
                           burstOfStrokesEnded();
                   })
        .execute();
}

void ViewController::burstOfStrokesEnded() {
    if (isDrawingStroke_ || screen_ == nullptr)
        return;
    cutView().updateCursor();
    cursorAfterShowing_ = context_.scheduler.after(kCursorDelay, context_.mainQueue, [this] {
        if (screen_ != nullptr)
            cutView().updateCursor();
    });
}

void ViewController::cutViewDidChangeHistoryState(RKImageCutView* view) {
    if (toolbar_ != nullptr && view != nullptr)
        toolbar_->updateHistoryButtons(*view);
}

void ViewController::cutView_didChangeBrushDiameter(RKImageCutView* /*view*/, float diameter) {
    parts_->tools.didChangeBrushDiameter(diameter);
}

void ViewController::RectBorderForMiniMap(RKImageCutView* /*view*/, float SootnX, float SootnY, float SizeW,
                                          float SizeH) {
    screen_->outlets().miniMap->showBorder(SootnX, SootnY, SizeW, SizeH);
}

// ── What the controls tell ─────────────────────────────────────────────────────────────────────

void ViewController::CustomSliderDidChange_withValue(controls::ViewWithSliderTextField& view, double value) {
    parts_->tools.CustomSliderDidChange_withValue(view, static_cast<float>(value));
}

void ViewController::ColorPickerDidSelectNSColor(const cutengine::Colour& color) {
    parts_->modes.ColorPickerDidSelectNSColor(color);
}

}  // namespace trimora::editor
