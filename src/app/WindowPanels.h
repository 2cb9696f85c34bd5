#pragma once

#include <QFrame>

#include "app/Commands.h"

namespace trimora::controls {
class SizeControl;
}

namespace trimora::app {

/// The bar along the top: open and save, the program's name, undo, redo and restore.
[[nodiscard]] QFrame* makeToolbar(const Commands& commands);

/// The strip at the left: the three tools over the size of the brush. Takes `size` over.
[[nodiscard]] QFrame* makeToolStrip(const Commands& commands, controls::SizeControl* size);

/// The panel at the right: the three backgrounds, the colour, and the save button.
[[nodiscard]] QFrame* makeRightPanel(const Commands& commands);

}  // namespace trimora::app
