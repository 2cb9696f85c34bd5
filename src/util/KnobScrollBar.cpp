#include "util/KnobScrollBar.h"

#include <QPainter>
#include <QStyleOptionSlider>
#include <algorithm>

namespace trimora::util {
namespace {

constexpr double kInset = 4;  // points from the bar's sides to the knob's

// How strongly the knob shows, in the colour of the text.
constexpr double kAtRest = 0.3;
constexpr double kUnderPointer = 0.45;
constexpr double kHeld = 0.6;
constexpr double kDisabled = 0.12;

}  // namespace

double KnobScrollBar::strength() const {
    if (!isEnabled())
        return kDisabled;
    if (isSliderDown())
        return kHeld;
    return underMouse() ? kUnderPointer : kAtRest;
}

void KnobScrollBar::paintEvent(QPaintEvent* /*event*/) {
    QStyleOptionSlider option;
    initStyleOption(&option);
    QRectF knob = style()->subControlRect(QStyle::CC_ScrollBar, &option, QStyle::SC_ScrollBarSlider, this);
    const bool lies = orientation() == Qt::Horizontal;
    knob.adjust(lies ? 0 : kInset, lies ? kInset : 0, lies ? 0 : -kInset, lies ? -kInset : 0);
    const double radius = std::min(knob.width(), knob.height()) / 2;
    QColor colour = palette().color(QPalette::Active, QPalette::WindowText);
    colour.setAlphaF(static_cast<float>(strength()));
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    painter.setBrush(colour);
    painter.drawRoundedRect(knob, radius, radius);
}

void KnobScrollBar::enterEvent(QEnterEvent* event) {
    QScrollBar::enterEvent(event);
    update();
}

void KnobScrollBar::leaveEvent(QEvent* event) {
    QScrollBar::leaveEvent(event);
    update();
}

}  // namespace trimora::util
