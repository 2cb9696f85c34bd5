#pragma once

#include <array>

class QWidget;

namespace trimora::controls {
class ButtonOpenAppereance;
class ColorPickerView;
class CustomViewWithButton;
class KrugButton;
class LayerButton;
class SliderVertical;
class ViewWithSliderTextField;
}  // namespace trimora::controls

namespace trimora::editor {

class CursorPreview;
class CutViewWidget;
class DragView;
class HintArrow;
class MiniMap;

/// The views of the editor screen that its controllers work on. Every view bears the name of its member
/// here as its object name, so it is found by that name too.
///
/// The screen owns them and lives longer than whoever holds this. All are there once the screen is made.
struct EditorOutlets {
    CutViewWidget* viCut = nullptr;  ///< the picture, the mask and the brush
    DragView* viDrug = nullptr;      ///< the empty screen; shown while there is no picture
    HintArrow* ivArrow = nullptr;
    controls::ButtonOpenAppereance* openPictureButton = nullptr;

    // The tool strip.
    QWidget* toolStrip = nullptr;
    controls::KrugButton* btnHandNew = nullptr;
    controls::KrugButton* btnEraserNew = nullptr;
    controls::KrugButton* btnEraserHistoryNew = nullptr;
    QWidget* eraserViewSettings = nullptr;  ///< holds eraserSize; one of the two boxes is shown
    QWidget* invertViewSettings = nullptr;  ///< holds invertSize
    controls::ViewWithSliderTextField* eraserSize = nullptr;
    controls::ViewWithSliderTextField* invertSize = nullptr;

    // The right panel.
    QWidget* rightPanelWithMode = nullptr;
    controls::LayerButton* btnEraserMode = nullptr;  ///< nothing behind the cut-out
    controls::LayerButton* btnColorMode = nullptr;   ///< a colour
    controls::LayerButton* btnBlurMode = nullptr;    ///< the blurred picture
    controls::ColorPickerView* colorPickerView = nullptr;
    MiniMap* miniMap = nullptr;
    QWidget* savePictureFromRightPanel = nullptr;  ///< the room in which btnSave slides
    controls::LayerButton* btnSave = nullptr;

    // The quick panels, which slide in from the sides of the cut view.
    QWidget* viLeftPanelVariant1 = nullptr;
    QWidget* viLeftPanelVariant2 = nullptr;
    QWidget* viRightPanelVariant2 = nullptr;
    controls::KrugButton* btnBrush2 = nullptr;
    controls::KrugButton* btnInvertBrush2 = nullptr;
    controls::KrugButton* btnBlur2 = nullptr;
    controls::SliderVertical* sldBrushDiameter2 = nullptr;

    // The set of quick controls in use.
    controls::KrugButton* btnBrush = nullptr;
    controls::KrugButton* btnInvertBrush = nullptr;
    controls::KrugButton* btnBlur = nullptr;
    controls::SliderVertical* sldBrushDiameter = nullptr;

    CursorPreview* ViewForCursor = nullptr;
    controls::CustomViewWithButton* viewWithButton = nullptr;  ///< floats over the cut view
    controls::LayerButton* btnZoomToFit = nullptr;             ///< in it
};

}  // namespace trimora::editor
