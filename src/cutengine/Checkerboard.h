#pragma once

#include "foundation/Bitmap.h"

namespace trimora::cutengine {

/// The pattern that stands for transparency: one tile of two by two squares, 8 view points each, in
/// two dark greys that leave the picture the brightest thing on the screen. `scaleFactor` is device
/// pixels per view point; squares are whole device pixels. An empty bitmap where there is no memory.
[[nodiscard]] foundation::Bitmap makeCheckerboardTile(double scaleFactor);

}  // namespace trimora::cutengine
