#include "controls/ArrowKeys.h"

#include <QKeyEvent>

#include "controls/Metrics.h"

namespace trimora::controls {

QPoint arrowStep(const QKeyEvent& event) {
    const int length = event.modifiers() & Qt::ShiftModifier ? metrics::kLongArrowStep : metrics::kArrowStep;
    switch (event.key()) {
        case Qt::Key_Left:
            return {-length, 0};
        case Qt::Key_Right:
            return {length, 0};
        case Qt::Key_Up:
            return {0, -length};
        case Qt::Key_Down:
            return {0, length};
        default:
            return {};
    }
}

}  // namespace trimora::controls
