#pragma once

#include "editor/EditorOutlets.h"

namespace trimora::controls {
class ViewWithSliderTextField;
}
namespace trimora::cutengine {
class RKImageCutView;
}

namespace trimora::editor {

/// The tools: Hand, Brush and Restore, their sizes, and the quick controls that turn them.
///
/// What a tool is lies in the cut view (drag mode, brush alpha, diameter); the images of the buttons only
/// mirror it. No action asks whether there is a picture. Main thread only; the outlets live longer.
class EditorTools {
 public:
    explicit EditorTools(const EditorOutlets& outlets);

    // ── The tool strip ─────────────────────────────────────────────────────────────────────────
    void hand_pressed_new();
    void brush_pressed_new();
    void invertBrush_pressed_new();

    void handSelected();
    void brushSelected();
    void invertBrushSelected();

    /// From the brush to the restore brush, or back; from the hand too.
    void swapBrushes();

    // ── The quick controls ─────────────────────────────────────────────────────────────────────
    /// The brush where the hand is, else the hand.
    void brush_pressed();
    /// Bringing back instead of cutting, or the other way round; the hand stays as it is.
    void invertBrush_pressed();
    /// The blurred background on or off. A brush that brings back cuts again first.
    void blur_pressed();
    /// The brush as large as the quick slider says.
    void brushDiameter_changed();

    // ── Sizes ──────────────────────────────────────────────────────────────────────────────────
    /// A size control was moved: the brush follows, and the preview shows it.
    void CustomSliderDidChange_withValue(const controls::ViewWithSliderTextField& sender, float value);
    void hideViewWithSizeCursor();
    void smallerBrush();
    void largerBrush();

    /// The diameter that the size control of the brush, and of the restore brush, reported last.
    [[nodiscard]] float eraserSizeValue() const { return eraserSizeValue_; }
    [[nodiscard]] float invertSizeValue() const { return invertSizeValue_; }

    // ── What the cut view did by itself ────────────────────────────────────────────────────────
    /// A key turned the brush over: the buttons follow.
    void brushWasSwapped();
    void didChangeBrushDiameter(float diameter);

 private:
    [[nodiscard]] cutengine::RKImageCutView& cutView() const;
    void showTool(const char* hand, const char* brush, const char* restore);
    void showSizeBox(bool restores);
    void showInvert(bool restores);
    void changeBrush(double by);

    const EditorOutlets& outlets_;
    // The brush has none of its own until its control reports one: the cut view's smallest counts then.
    float eraserSizeValue_ = 0;
    float invertSizeValue_ = 70;
};

}  // namespace trimora::editor
