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
inline constexpr QColor kFocus{255, 255, 255, 128};          ///< ring round what the keyboard acts on

}  // namespace trimora::controls::palette
