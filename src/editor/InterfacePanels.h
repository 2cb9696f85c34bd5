#pragma once

#include "editor/EditorOutlets.h"
#include "editor/EditorView.h"
#include "editor/PanelConstraint.h"

namespace trimora::editor {

/// The sliding of the editor screen's panels. Hiding takes each one's width as it is at that moment. Main
/// thread only; the screen lives longer.
class InterfacePanels {
 public:
    /// Of a panel that nobody asked to move at a pace of its own.
    static constexpr PanelMotion kStandardMotion{0.2, controls::TimingCurve::standard()};
    /// Out of the way of a stroke.
    static constexpr PanelMotion kStrokeMotion{0.2, controls::TimingCurve::easeOut()};

    explicit InterfacePanels(EditorView& screen) : screen_(screen) {}

    /// The quick panels out of sight, moving or at once, and back in.
    void hideInterface(const PanelMotion& motion = kStandardMotion);
    void hideInterfaceNoAnimation();
    void showInterface(const PanelMotion& motion = kStandardMotion);

    /// The right panel comes in.
    void showRightPanel();

    /// The right panel's Save button goes below its room, by its own height, and comes back.
    void slideSaveOut();
    void slideSaveIn();

 private:
    EditorView& screen_;
};

}  // namespace trimora::editor
