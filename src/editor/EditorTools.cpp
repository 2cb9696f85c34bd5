#include "editor/EditorTools.h"

#include <QString>

#include "analytics/public/Telemetrix.h"
#include "controls/CustomSlider.h"
#include "controls/KrugButton.h"
#include "controls/SliderVertical.h"
#include "controls/ViewWithSliderTextField.h"
#include "editor/CursorPreview.h"
#include "editor/CutViewWidget.h"
#include "foundation/Log.h"

namespace trimora::editor {

using analytics::Telemetrix;
using controls::ViewWithSliderTextField;
using cutengine::DragMode;
using cutengine::RKImageCutView;

namespace {

constexpr double kSizeStep = 5;  // of the keys, in points

}  // namespace

EditorTools::EditorTools(const EditorOutlets& outlets) : outlets_(outlets) {}

RKImageCutView& EditorTools::cutView() const {
    return outlets_.viCut->view();
}

// ── The tool strip ─────────────────────────────────────────────────────────────────────────────

void EditorTools::hand_pressed_new() {
    handSelected();
}

void EditorTools::brush_pressed_new() {
    brushSelected();
    cutView().setBrushDiameterSilent(eraserSizeValue_);
    showSizeBox(false);
}

void EditorTools::invertBrush_pressed_new() {
    invertBrushSelected();
    cutView().setBrushDiameterSilent(invertSizeValue_);
    showSizeBox(true);
}

void EditorTools::handSelected() {
    outlets_.viCut->setToolDragMode(DragMode::pan);
    outlets_.btnHandNew->setChecked(true);
    showTool("hand_active_new", "eraser_noActive", "history_brush_noActive_new");
}

void EditorTools::brushSelected() {
    cutView().setBrushAlphaValue(0);
    outlets_.viCut->setToolDragMode(DragMode::paint);
    outlets_.btnEraserNew->setChecked(true);
    showTool("hand_noActive_new", "eraser_active", "history_brush_noActive_new");
}

void EditorTools::invertBrushSelected() {
    cutView().setBrushAlphaValue(1);
    outlets_.viCut->setToolDragMode(DragMode::paint);
    outlets_.btnEraserHistoryNew->setChecked(true);
    showTool("hand_noActive_new", "eraser_noActive", "history_brush_active_new2");
}

void EditorTools::showTool(const char* hand, const char* brush, const char* restore) {
    outlets_.btnHandNew->setImage(QString::fromLatin1(hand));
    outlets_.btnEraserNew->setImage(QString::fromLatin1(brush));
    outlets_.btnEraserHistoryNew->setImage(QString::fromLatin1(restore));
}

void EditorTools::showSizeBox(bool restores) {
    outlets_.eraserViewSettings->setVisible(!restores);
    outlets_.invertViewSettings->setVisible(restores);
    // The brush may be another one than the control was left at, which must not tell an untruth.
    const ViewWithSliderTextField& size = restores ? *outlets_.invertSize : *outlets_.eraserSize;
    size.sliderClass().setFloatValue(cutView().brushDiameter());
    cutView().updateCursor();
}

void EditorTools::swapBrushes() {
    if (cutView().brushAlphaValue() > 0.5F)
        brush_pressed_new();
    else
        invertBrush_pressed_new();
}

// ── The quick controls ─────────────────────────────────────────────────────────────────────────

void EditorTools::brush_pressed() {
    if (cutView().dragMode() == DragMode::pan)
        brushSelected();
    else
        handSelected();
}

void EditorTools::invertBrush_pressed() {
    Telemetrix::logEvent("button invert pressed");
    const bool restores = cutView().brushAlphaValue() < 0.5F;
    cutView().setBrushAlphaValue(restores ? 1 : 0);
    showInvert(restores);
}

void EditorTools::showInvert(bool restores) {
    outlets_.btnInvertBrush->setImage(restores ? QStringLiteral("restore__active")
                                               : QStringLiteral("restore"));
    outlets_.btnInvertBrush->setAlternateImage(restores ? QStringLiteral("restore")
                                                        : QStringLiteral("restore__active"));
}

void EditorTools::blur_pressed() {
    Telemetrix::logEvent("button blur pressed");
    if (cutView().brushAlphaValue() > 0.5F)
        invertBrush_pressed();
    const bool blurs = !cutView().isBlurOn();
    cutView().setBlurOn(blurs);
    outlets_.btnBlur->setImage(blurs ? QStringLiteral("blur__active") : QStringLiteral("blur"));
    outlets_.btnBlur->setAlternateImage(blurs ? QStringLiteral("blur") : QStringLiteral("blur__active"));
}

void EditorTools::brushDiameter_changed() {
    cutView().setBrushDiameterSilent(outlets_.sldBrushDiameter->floatValue());
    cutView().updateCursor();
}

// ── Sizes ──────────────────────────────────────────────────────────────────────────────────────

void EditorTools::CustomSliderDidChange_withValue(const ViewWithSliderTextField& sender, float value) {
    if (cutView().image() != nullptr)
        outlets_.ViewForCursor->show();
    if (&sender != outlets_.eraserSize && &sender != outlets_.invertSize)
        return;
    cutView().setBrushDiameterSilent(value);
    (&sender == outlets_.eraserSize ? eraserSizeValue_ : invertSizeValue_) = value;
    outlets_.ViewForCursor->showCursor(value);
}

void EditorTools::hideViewWithSizeCursor() {
    foundation::log::debug("stop stiop");
    outlets_.ViewForCursor->hide();
    cutView().updateCursor();
}

void EditorTools::smallerBrush() {
    changeBrush(-kSizeStep);
}

void EditorTools::largerBrush() {
    changeBrush(kSizeStep);
}

void EditorTools::changeBrush(double by) {
    const bool restores = cutView().brushAlphaValue() > 0.5F;
    controls::CustomSlider& slider = (restores ? outlets_.invertSize : outlets_.eraserSize)->sliderClass();
    // From the brush as it is, which the control need not show: the wheel sizes it too.
    slider.setFloatValue(cutView().brushDiameter());
    slider.stepTo(slider.doubleValue() + by);
    cutView().updateCursor();
}

// ── What the cut view did by itself ────────────────────────────────────────────────────────────

void EditorTools::brushWasSwapped() {
    const bool restores = cutView().brushAlphaValue() > 0.5F;
    showInvert(restores);
    if (cutView().dragMode() == DragMode::pan)
        return;
    if (restores)
        invertBrushSelected();
    else
        brushSelected();
}

void EditorTools::didChangeBrushDiameter(float diameter) {
    outlets_.sldBrushDiameter->setFloatValue(diameter);
}

}  // namespace trimora::editor
