#pragma once

#include <QColor>

/// Every colour of the window, by what it is for. The picture is the only colourful thing until
/// something is active: all is grey but the accent.
namespace trimora::controls::palette {

inline constexpr QColor kWindow{0, 0, 0};           ///< behind everything, the cut view's surround
inline constexpr QColor kPanel{14, 14, 14};         ///< toolbar, tool strip, right panel, status line
inline constexpr QColor kRaised{33, 33, 33};        ///< boxes on a panel, menus, a control under the pointer
inline constexpr QColor kField{44, 44, 44};         ///< fields to type into, grooves of sliders
inline constexpr QColor kLine{44, 44, 44};          ///< hairlines between panels
inline constexpr QColor kText{255, 255, 255, 235};  ///< text and symbols
inline constexpr QColor kSecondaryText{255, 255, 255, 153};  ///< hints, captions, numbers
inline constexpr QColor kDisabledText{255, 255, 255, 77};    ///< what cannot be used now
inline constexpr QColor kAccent{230, 27, 85};                ///< the active tool or mode; trouble
inline constexpr QColor kAccentStart{249, 35, 95};           ///< the accent as a gradient, where it begins
inline constexpr QColor kAccentEnd{253, 73, 73};             ///< and where it ends
inline constexpr QColor kFrame{255, 255, 255, 77};           ///< dashed frame of the empty view
inline constexpr QColor kDropText{255, 255, 255, 179};       ///< words of the empty view
inline constexpr QColor kProgress{51, 230, 51};              ///< the part of a half-disc gauge that is done
inline constexpr QColor kProgressLine{255, 255, 255, 102};   ///< and its outline
inline constexpr QColor kMapEdge{255, 255, 255};             ///< mini-map: line round the part in view
inline constexpr QColor kMapShade{0, 0, 0, 140};             ///< over the part that is out of view
inline constexpr QColor kSheet{255, 255, 255};               ///< a question's sheet, under its background
inline constexpr QColor kScrim{0, 0, 0, 128};                ///< behind the brush preview
inline constexpr QColor kFocus{255, 255, 255, 128};          ///< ring round what the keyboard acts on
inline constexpr QColor kFocusOnField{150, 150, 150};        ///< the same where corners are drawn twice

inline constexpr QColor kTrack{0, 0, 0};               ///< a slider's line beyond its knob
inline constexpr QColor kVerticalTrack{23, 23, 23};    ///< the same of an upright slider
inline constexpr double kUnusableSlider = 0.35;        ///< opacity of a slider that cannot be used
inline constexpr QColor kDisc{25, 25, 25};             ///< the disc of a round tool button
inline constexpr QColor kDiscEdge{75, 75, 75};         ///< the line round it
inline constexpr QColor kDiscPressed{44, 44, 44};      ///< the disc while it is held down
inline constexpr QColor kAccentPressed{255, 35, 100};  ///< the accent while it is held down
inline constexpr QColor kCallStart{253, 30, 93};       ///< a call to action, where its gradient begins
inline constexpr QColor kCallEnd{255, 87, 87};         ///< and where it ends
inline constexpr QColor kCallMiddle{254, 58, 90};      ///< and half way
inline constexpr QColor kCallText{255, 255, 255};
inline constexpr QColor kCallPressedText{0, 0, 0};
inline constexpr QColor kCallPressedTitle{128, 128, 128};  ///< the title's own colour meanwhile
inline constexpr QColor kHoverVeil{255, 255, 255, 26};     ///< over a filled button under the pointer
inline constexpr QColor kPressedVeil{0, 0, 0, 38};         ///< over a filled button that is held down
inline constexpr QColor kButtonHigh{52, 52, 52};           ///< upper end of a quiet button's gradient
inline constexpr QColor kButtonLow{36, 36, 36};            ///< lower end
inline constexpr QColor kButtonEdge{75, 75, 75};           ///< the line round a bordered button
inline constexpr QColor kMarker{255, 255, 255};            ///< ring of a colour picker's marker
inline constexpr QColor kMarkerEdge{0, 0, 0, 153};   ///< dark line round that ring, seen on light colours
inline constexpr double kDisabledOpacity = 0.3;      ///< of everything on a button that cannot be used
inline constexpr double kPressedImageOpacity = 0.7;  ///< of an image without a second one for the press

}  // namespace trimora::controls::palette
