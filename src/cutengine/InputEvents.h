#pragma once

#include <cstdint>

#include "foundation/Geometry.h"

/// What a host tells the cut view of mouse and keyboard. Places are view points, y-up, origin at the
/// view's bottom left corner.
namespace trimora::cutengine {

enum class MouseButton : std::uint8_t { left, right };

struct MouseEvent {
    MouseButton button = MouseButton::left;
    foundation::Point location;
    /// Movement since the event before, as the platform reports it: y grows downwards.
    double deltaX = 0;
    double deltaY = 0;
};

struct ScrollEvent {
    foundation::Point location;
    double deltaY = 0;  ///< above 0 zooms in or makes the brush larger
};

/// The modifier keys held on the keyboard. Option is Alt and Command is Ctrl where keys bear those names.
struct Modifiers {
    bool option = false;
    bool command = false;
    friend bool operator==(const Modifiers&, const Modifiers&) = default;
};

/// Key codes are numbers of places on the keyboard, not of letters.
inline constexpr int kKeyCodeI = 34;
inline constexpr int kKeyCodeZ = 6;

struct KeyEvent {
    int keyCode = 0;
    Modifiers modifiers;
};

}  // namespace trimora::cutengine
