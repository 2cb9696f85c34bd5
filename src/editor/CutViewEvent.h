#pragma once

#include <variant>

#include "cutengine/InputEvents.h"
#include "cutengine/RKImageCutView.h"

/// What happens to the cut view, in its own terms: all that mouse, wheel, pinch and keys come to. Fed to a
/// cut view in the same state again, in the same order, they do the same again.
namespace trimora::editor {

struct MousePressed {
    cutengine::MouseEvent mouse;
};
struct MouseDragged {
    cutengine::MouseEvent mouse;
};
struct MouseReleased {
    cutengine::MouseEvent mouse;
};
/// The pointer came into the view, or left it.
struct PointerInside {
    bool inside = false;
};
/// The pan that a held key lends, or the tool's own drag mode again.
struct DragModeHeld {
    cutengine::DragMode mode = cutengine::DragMode::paint;
};

/// The picture is taken to another place, by so many view points, y-up.
struct PictureMoved {
    foundation::Point way;
};

using CutViewEvent =
    std::variant<MousePressed, MouseDragged, MouseReleased, PointerInside, cutengine::ScrollEvent,
                 cutengine::Modifiers, cutengine::KeyEvent, DragModeHeld, PictureMoved>;

}  // namespace trimora::editor
