#pragma once

#include <QPoint>

class QKeyEvent;

namespace trimora::controls {

/// Where an arrow key leads, in points, y-down: one point, or ten with Shift held. Nowhere for any
/// other key.
[[nodiscard]] QPoint arrowStep(const QKeyEvent& event);

}  // namespace trimora::controls
