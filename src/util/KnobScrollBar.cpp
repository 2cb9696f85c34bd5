#include "util/KnobScrollBar.h"

#include <QStyleOptionSlider>
#include <QStylePainter>

namespace trimora::util {

void KnobScrollBar::paintEvent(QPaintEvent* /*event*/) {
    QStyleOptionSlider option;
    initStyleOption(&option);
    option.subControls = QStyle::SC_ScrollBarSlider;
    QStylePainter(this).drawComplexControl(QStyle::CC_ScrollBar, option);
}

}  // namespace trimora::util
