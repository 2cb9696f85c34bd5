#include "controls/ValueSlider.h"

#include <QAccessible>
#include <QApplication>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QPainterPath>
#include <QWheelEvent>

#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "controls/ValueSliderAccess.h"

namespace trimora::controls {

ValueSlider::ValueSlider(Qt::Orientation orientation, QWidget* parent)
    : ValueControl(parent), orientation_(orientation) {
    ValueSliderAccess::install();
    // A press leaves the keyboard where it is: the tools' keys go on working while sizes are tried.
    setFocusPolicy(Qt::TabFocus);
    if (orientation == Qt::Horizontal)
        setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    else
        setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Expanding);
}

void ValueSlider::setSteps(double singleStep, double pageStep) {
    singleStep_ = singleStep;
    pageStep_ = pageStep;
}

QSize ValueSlider::sizeHint() const {
    const QSize lying(metrics::kSliderLength, metrics::kSliderAcross);
    return orientation_ == Qt::Horizontal ? lying : lying.transposed();
}

QSize ValueSlider::minimumSizeHint() const {
    const QSize lying(metrics::kSliderShortest, metrics::kSliderAcross);
    return orientation_ == Qt::Horizontal ? lying : lying.transposed();
}

QSvgRenderer& ValueSlider::scrubber() const {
    if (!scrubber_.isValid())
        scrubber_.load(QStringLiteral(":/images/Scrubber.svg"));
    return scrubber_;
}

QSizeF ValueSlider::knobSize() const {
    return scrubber().defaultSize();
}

bool ValueSlider::isMirrored() const {
    return orientation_ == Qt::Horizontal && isRightToLeft();
}

double ValueSlider::along() const {
    return orientation_ == Qt::Horizontal ? width() : height();
}

SliderParts ValueSlider::parts() const {
    if (orientation_ == Qt::Horizontal) {
        SliderParts lying = sliderParts(width(), height(), knobSize(), fraction());
        if (isMirrored()) {
            for (QRectF* const part : {&lying.filled, &lying.unfilled, &lying.knob})
                part->moveLeft(width() - part->right());
        }
        return lying;
    }
    SliderParts standing = sliderParts(height(), width(), knobSize().transposed(), fraction());
    for (QRectF* const part : {&standing.filled, &standing.unfilled, &standing.knob})
        *part = QRectF(part->y(), height() - part->right(), part->height(), part->width());
    return standing;
}

void ValueSlider::beginPainting(QPainter& painter, const QRectF& knob) const {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.setPen(Qt::NoPen);
    if (isEnabled())
        return;
    painter.setOpacity(palette::kUnusableSlider);
    QPainterPath besideKnob;
    besideKnob.addRect(rect());
    besideKnob.addEllipse(knob);
    painter.setClipPath(besideKnob);
}

void ValueSlider::paintKnob(QPainter& painter, const QRectF& place) {
    painter.setClipping(false);
    scrubber().render(&painter, place);
    if (!hasFocus())
        return;
    const double out = metrics::kKnobRing;
    painter.setPen(QPen(palette::kFocus, metrics::kKnobRing));
    painter.setBrush(Qt::NoBrush);
    painter.drawEllipse(place.adjusted(-out, -out, out, out));
}

void ValueSlider::valueDidChange() {
    ValueControl::valueDidChange();
    QAccessibleValueChangeEvent changed(this, doubleValue());
    QAccessible::updateAccessibility(&changed);
}

double ValueSlider::placeAlong(QPointF point) const {
    if (orientation_ == Qt::Vertical)
        return height() - point.y();
    return isMirrored() ? width() - point.x() : point.x();
}

double ValueSlider::valueAt(double place) const {
    const double knob = orientation_ == Qt::Horizontal ? knobSize().width() : knobSize().height();
    return minValue() + fractionAt(place, along(), knob) * (maxValue() - minValue());
}

void ValueSlider::trackTo(double value) {
    tracking_ = true;
    setDoubleValue(value);
    sendAction();
}

void ValueSlider::endTracking() {
    if (!tracking_)
        return;
    tracking_ = false;
    didEndTracking();
}

void ValueSlider::mousePressEvent(QMouseEvent* event) {
    if (event->button() != Qt::LeftButton)
        return event->ignore();
    const double place = placeAlong(event->position());
    const bool onKnob = parts().knob.contains(event->position());
    const double knob = orientation_ == Qt::Horizontal ? knobSize().width() : knobSize().height();
    grip_ = onKnob ? place - knobCentre(fraction(), along(), knob) : 0;
    trackTo(onKnob ? doubleValue() : valueAt(place));
}

void ValueSlider::mouseMoveEvent(QMouseEvent* event) {
    if (tracking_)
        trackTo(valueAt(placeAlong(event->position()) - grip_));
}

void ValueSlider::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton)
        endTracking();
}

void ValueSlider::stepTo(double value) {
    const double before = doubleValue();
    setDoubleValue(value);
    if (doubleValue() != before)
        sendAction();
}

void ValueSlider::wheelEvent(QWheelEvent* event) {
    constexpr double kNotch = 120;  // the toolkit's measure of one click of a wheel
    const QPoint turned = event->angleDelta();
    const double notches = (turned.y() != 0 ? turned.y() : -turned.x()) / kNotch;
    stepTo(doubleValue() + notches * QApplication::wheelScrollLines() * singleStep_);
    event->accept();
}

std::optional<double> ValueSlider::valueAfterKey(int key) const {
    const double right = isMirrored() ? -singleStep_ : singleStep_;
    switch (key) {
        case Qt::Key_Right:
            return doubleValue() + right;
        case Qt::Key_Left:
            return doubleValue() - right;
        case Qt::Key_Up:
            return doubleValue() + singleStep_;
        case Qt::Key_Down:
            return doubleValue() - singleStep_;
        case Qt::Key_PageUp:
            return doubleValue() + pageStep_;
        case Qt::Key_PageDown:
            return doubleValue() - pageStep_;
        case Qt::Key_Home:
            return minValue();
        case Qt::Key_End:
            return maxValue();
        default:
            return std::nullopt;
    }
}

void ValueSlider::keyPressEvent(QKeyEvent* event) {
    const std::optional<double> value = valueAfterKey(event->key());
    if (value)
        stepTo(*value);
    else
        ValueControl::keyPressEvent(event);
}

void ValueSlider::focusInEvent(QFocusEvent* event) {
    ValueControl::focusInEvent(event);
    update();
}

void ValueSlider::focusOutEvent(QFocusEvent* event) {
    ValueControl::focusOutEvent(event);
    update();
}

void ValueSlider::changeEvent(QEvent* event) {
    ValueControl::changeEvent(event);
    if (event->type() == QEvent::EnabledChange && !isEnabled())
        endTracking();
    update();
}

void ValueSlider::hideEvent(QHideEvent* event) {
    endTracking();
    ValueControl::hideEvent(event);
}

}  // namespace trimora::controls
