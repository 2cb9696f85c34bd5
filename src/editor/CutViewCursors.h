#pragma once

#include <QCursor>

#include "cutengine/Cursor.h"

namespace trimora::editor {

/// The pointer that the cut view asks for, as one of the toolkit's. A brush keeps its own picture,
/// `scaleFactor` device pixels to a point, with the circle's centre as its hot spot; one without a
/// picture is the arrow.
[[nodiscard]] QCursor toolkitCursor(const cutengine::Cursor& cursor, double scaleFactor);

}  // namespace trimora::editor
