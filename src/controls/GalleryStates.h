#pragma once

#include <array>

class QWidget;

namespace trimora::controls {

/// One state of a control in the gallery: what it is called, how it is put on, and for a state that
/// shows the keyboard which part of the control has it then (null: none).
struct GalleryState {
    const char* name;
    void (*putOn)(QWidget& control);
    QWidget* (*keyboardIn)(QWidget& control);
};

using GalleryStates = std::array<GalleryState, 5>;

/// The states of each kind of control, from rest to disabled. Each may be put on a control of its kind
/// alone: on a LayerButton, ViewWithSliderTextField, SliderVertical, ColorPickerView, SelectableView
/// or QScrollBar.
extern const GalleryStates kButtonStates;
extern const GalleryStates kSliderWithFieldStates;
extern const GalleryStates kUprightSliderStates;
extern const GalleryStates kColorPickerStates;
extern const GalleryStates kTileStates;
extern const GalleryStates kScrollBarStates;

/// Not one kind of control but a panel, that panel blocked, a button blocked, and what takes the two keys
/// back from both.
extern const GalleryStates kBlockerStates;

}  // namespace trimora::controls
