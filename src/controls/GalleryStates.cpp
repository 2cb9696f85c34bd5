#include "controls/GalleryStates.h"

#include <QCoreApplication>
#include <QLineEdit>
#include <QMouseEvent>
#include <QScrollBar>

#include "controls/ColorPickerView.h"
#include "controls/CustomSlider.h"
#include "controls/CustomTextField.h"
#include "controls/GallerySpecimens.h"
#include "controls/LayerButton.h"
#include "controls/SelectableView.h"
#include "controls/SliderVertical.h"
#include "controls/ViewWithSliderTextField.h"

namespace trimora::controls {
namespace {

constexpr int kLeast = 1;
constexpr int kMost = 100;

void leave(QWidget& /*control*/) {}

void disable(QWidget& control) {
    control.setEnabled(false);
}

QWidget* itself(QWidget& control) {
    return &control;
}

void showHovered(QWidget& control) {
    const QPointF inside(control.width() / 2.0, control.height() / 2.0);
    QMouseEvent move(QEvent::MouseMove, inside, control.mapToGlobal(inside), Qt::NoButton, Qt::NoButton, {});
    QCoreApplication::sendEvent(&control, &move);
}

void showHeld(QWidget& control) {
    auto& button = static_cast<LayerButton&>(control);
    button.setDown(true);
    emit button.pressed();
}

CustomSlider& sliderOf(QWidget& control) {
    return static_cast<ViewWithSliderTextField&>(control).sliderClass();
}

template <int Value>
void slideTo(QWidget& control) {
    static_cast<SliderVertical&>(control).setFloatValue(Value);
}

template <int Value>
void scrollTo(QWidget& control) {
    static_cast<QScrollBar&>(control).setValue(Value);
}

void holdScrollBar(QWidget& control) {
    static_cast<QScrollBar&>(control).setSliderDown(true);
}

ColorPickerView& pickerOf(QWidget& control) {
    return static_cast<ColorPickerView&>(control);
}

void select(QWidget& control) {
    static_cast<SelectableView&>(control).setSelected(true);
}

}  // namespace

const GalleryStates kButtonStates{{
    {"rest", leave, nullptr},
    {"pointer", showHovered, nullptr},
    {"held", showHeld, nullptr},
    {"keyboard", leave, itself},
    {"disabled", disable, nullptr},
}};

const GalleryStates kSliderWithFieldStates{{
    {"rest", leave, nullptr},
    {"least", [](QWidget& control) { sliderOf(control).setFloatValue(kLeast); }, nullptr},
    {"slider by keyboard", [](QWidget& control) { sliderOf(control).setFloatValue(kMost); },
     [](QWidget& control) -> QWidget* { return &sliderOf(control); }},
    {"field by keyboard", leave,
     [](QWidget& control) -> QWidget* {
         return &static_cast<ViewWithSliderTextField&>(control).textField();
     }},
    {"disabled", disable, nullptr},
}};

const GalleryStates kUprightSliderStates{{
    {"rest", leave, nullptr},
    {"least", slideTo<kLeast>, nullptr},
    {"most", slideTo<kMost>, nullptr},
    {"keyboard", leave, itself},
    {"disabled", disable, nullptr},
}};

const GalleryStates kColorPickerStates{{
    {"rest", leave, nullptr},
    {"hue by keyboard", leave,
     [](QWidget& control) -> QWidget* { return &pickerOf(control).mainColorSelectorView(); }},
    {"shade by keyboard",
     [](QWidget& control) {
         pickerOf(control).chooseColor({0.1, 0.5, 0.4, 1});
     },
     [](QWidget& control) -> QWidget* { return &pickerOf(control).secondColorSelectorView(); }},
    {"text by keyboard", leave,
     [](QWidget& control) -> QWidget* { return pickerOf(control).findChild<QLineEdit*>(); }},
    {"disabled", disable, nullptr},
}};

const GalleryStates kScrollBarStates{{
    {"rest", leave, nullptr},
    {"middle", scrollTo<kMost / 2>, nullptr},
    {"most", scrollTo<kMost>, nullptr},
    {"held", holdScrollBar, nullptr},
    {"disabled", disable, nullptr},
}};

const GalleryStates kBlockerStates{{
    {"rest", leave, nullptr},
    {"blocked", blockView, nullptr},
    {"blocked button", [](QWidget& control) { blockButton(static_cast<LayerButton&>(control)); }, nullptr},
    {"first key", leave, nullptr},
    {"second key", leave, nullptr},
}};

const GalleryStates kTileStates{{
    {"rest", leave, nullptr},
    {"selected", select, nullptr},
    {"keyboard", leave, itself},
    {"both", select, itself},
    {"disabled", disable, nullptr},
}};

}  // namespace trimora::controls
