#include "controls/ColorableView.h"

#include <QPainter>

namespace trimora::controls {

void ColorableView::setBackgroundColor(const QColor& color) {
    backgroundColor_ = color;
    update();
}

void ColorableView::paintEvent(QPaintEvent* /*event*/) {
    QPainter(this).fillRect(rect(), backgroundColor_);
}

}  // namespace trimora::controls
