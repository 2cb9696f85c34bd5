#pragma once

#include <QWidget>
#include <filesystem>
#include <functional>

#include "controls/ControlContext.h"
#include "cutengine/RKImageCutView.h"
#include "editor/EditorOutlets.h"
#include "editor/PanelConstraint.h"
#include "foundation/Queues.h"

namespace trimora::editor {

/// The offsets that the editor screen's layout reads; points. A panel whose constant is 0 is where it
/// belongs, with minus its own extent it is out of sight.
struct EditorConstraints {
    PanelConstraint constrLeftPanelLeading;     ///< viLeftPanelVariant1, from the cut view's left edge
    PanelConstraint constrLeftPanelLeading2;    ///< viLeftPanelVariant2, from the same edge
    PanelConstraint constrRightPanelTrailing2;  ///< viRightPanelVariant2, from the cut view's right edge
    PanelConstraint constrRightPanelWithMode;   ///< rightPanelWithMode, from the screen's right edge
    PanelConstraint constrBtnSaveBottom;        ///< btnSave, from the lower edge of its room
    PanelConstraint widthMainViewConstraint;    ///< the screen's smallest width
    PanelConstraint heightMainViewConstraint;   ///< and height
};

/// The editor screen as one view: makes all its parts and keeps each in its place.
///
/// The tool strip is on the left, the right panel on the right, the cut view between them; the quick panels,
/// the brush preview and the floating panel lie over the cut view. The cut view's own place depends on the
/// screen's size alone, so nothing that slides moves the picture. While there is no picture the drop area
/// covers everything.
///
/// The drop area with what lies on it is all that a start shows, so all that is made at once. The rest is
/// made by whoever first asks for an outlet.
///
/// Main thread only. What the services refer to outlives the view, which must be gone before them.
class EditorView final : public QWidget {
 public:
    struct Services {
        cutengine::RKImageCutView::Services cutView;
        controls::ControlContext control;
        foundation::QueueFactory& queues;
        std::filesystem::path caches;  ///< for files that are dragged in and out
    };
    explicit EditorView(const Services& services);
    ~EditorView() override;

    [[nodiscard]] EditorOutlets& outlets();
    /// The arrow of the drop area; the rest of the screen is not made for it.
    [[nodiscard]] HintArrow& arrow() { return *outlets_.ivArrow; }
    [[nodiscard]] EditorConstraints& constraints() { return constraints_; }

    /// Shows the drop area over everything, or takes it away. What it covers takes no keyboard focus.
    void showEmptyScreen(bool empty);

    /// From now on the screen can be made as small as anybody likes; its constraints say what they say.
    void letShrink();

    /// Called each time the view is about to appear.
    void onWillAppear(std::function<void()> handler) { willAppear_ = std::move(handler); }
    /// Called for a left press on the drop area.
    void onEmptyPress(std::function<void()> handler) { emptyPressed_ = std::move(handler); }
    /// Called a moment after the cut view was zoomed or got another size by the person's hand.
    void onPlacementChange(std::function<void()> handler) { placementChanged_ = std::move(handler); }

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void showEvent(QShowEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    void makeEmptyScreen();
    void makeRest();
    void layOut();
    void layOutRest();
    void layOutStage();
    void layOutEmptyScreen();

    const Services services_;
    EditorConstraints constraints_;
    EditorOutlets outlets_;
    bool isWhole_ = false;
    bool shrinks_ = false;
    QWidget* stage_ = nullptr;  // the middle, which cuts off what slides out of it
    std::function<void()> willAppear_;
    std::function<void()> emptyPressed_;
    std::function<void()> placementChanged_;
};

}  // namespace trimora::editor
