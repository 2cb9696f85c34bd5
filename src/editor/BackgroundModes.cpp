#include "editor/BackgroundModes.h"

#include <QString>

#include "controls/ColorPickerView.h"
#include "controls/ControlNotifications.h"
#include "controls/LayerButton.h"
#include "editor/CutViewWidget.h"
#include "foundation/Log.h"

namespace trimora::editor {

using cutengine::RKImageCutView;

namespace {

void setImage(controls::LayerButton& button, const char* name) {
    button.setImage(QString::fromLatin1(name));
}

}  // namespace

BackgroundModes::BackgroundModes(const EditorOutlets& outlets, foundation::NotificationCenter& notifications)
    : outlets_(outlets), notifications_(notifications) {}

RKImageCutView& BackgroundModes::cutView() const {
    return outlets_.viCut->view();
}

void BackgroundModes::chooseEraserMode() {
    apply(Mode::transparent);
    showTransparent();
}

void BackgroundModes::chooseColorMode() {
    apply(Mode::colour);
    shown_ = Mode::colour;
    outlets_.btnColorMode->setChecked(true);
    setImage(*outlets_.btnEraserMode, "btnAlphaBack_unselect");
    setImage(*outlets_.btnBlurMode, "btnBlur_unselect");
    outlets_.colorPickerView->show();
    notifications_.post(controls::notifications::kClickColor);
}

void BackgroundModes::chooseBlurMode() {
    apply(Mode::blurred);
    shown_ = Mode::blurred;
    outlets_.btnBlurMode->setChecked(true);
    setImage(*outlets_.btnEraserMode, "btnAlphaBack_unselect");
    setImage(*outlets_.btnColorMode, "btnColorBack_unselect");
    setImage(*outlets_.btnBlurMode, "btnBlur_select");
    outlets_.colorPickerView->hide();
}

void BackgroundModes::showTransparent() {
    shown_ = Mode::transparent;
    outlets_.btnEraserMode->setChecked(true);
    setImage(*outlets_.btnEraserMode, "btnAlphaBack_select");
    setImage(*outlets_.btnColorMode, "btnColorBack_unselect");
    setImage(*outlets_.btnBlurMode, "btnBlur_unselect");
    outlets_.colorPickerView->hide();
}

void BackgroundModes::apply(Mode mode) {
    RKImageCutView& view = cutView();
    view.setBlurOn(mode == Mode::blurred);
    if (mode != Mode::transparent)
        view.setBlurMode(mode == Mode::blurred);
    view.setColorMode(false);
    // Last: it hides the plane that the blur's setter has shown.
    if (mode == Mode::transparent)
        view.setColorOn(true);
}

void BackgroundModes::applyShownMode() {
    apply(shown_);
}

void BackgroundModes::ColorPickerDidSelectNSColor(const cutengine::Colour& color) {
    foundation::log::debug("%.2f", color.red);
    cutView().setBrushColor(color);
    cutView().setBlurOn(false);
    // The picker tells its first colour by itself some time after it was made, which may be after a picture
    // came.
    if (shown_ == Mode::transparent && cutView().image() != nullptr)
        cutView().setColorOn(true);
    if (shown_ == Mode::colour)
        setImage(*outlets_.btnColorMode, "btnColorBack_select");
}

}  // namespace trimora::editor
