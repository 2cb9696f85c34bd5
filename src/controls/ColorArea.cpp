#include "controls/ColorArea.h"

#include <QAccessible>
#include <QKeyEvent>
#include <QMouseEvent>
#include <QPainter>
#include <QRegularExpression>
#include <algorithm>
#include <cmath>
#include <limits>
#include <utility>

#include "controls/ArrowKeys.h"
#include "controls/ColorAreaAccess.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "controls/PathDrawing.h"

namespace trimora::controls {

using cutengine::BezierPath;
using cutengine::Colour;
using foundation::Point;
using foundation::Rect;

namespace {

constexpr double kByte = 255;

double distance(QRgb pixel, const Colour& colour) {
    const double red = qRed(pixel) / kByte - colour.red;
    const double green = qGreen(pixel) / kByte - colour.green;
    const double blue = qBlue(pixel) / kByte - colour.blue;
    return red * red + green * green + blue * blue;
}

void stroke(QPainter& painter, const Rect& frame, double radius, double width, const QColor& color) {
    BezierPath path = BezierPath::roundedRectangle(frame, radius);
    path.lineWidth = width;
    strokeInside(painter, path, color);
}

Rect grown(const Rect& rect, double by) {
    return {rect.x - by, rect.y - by, rect.width + 2 * by, rect.height + 2 * by};
}

}  // namespace

ColorArea::ColorArea(const ControlContext& context, const QSize& size, const QSize& marker, QWidget* parent)
    : QWidget(parent),
      layers_(*this, context),
      marker_{0, 0, static_cast<double>(marker.width()), static_cast<double>(marker.height())} {
    installColorAreaAccess();
    setFixedSize(size);
    layers_.fitToWidget();
    setFocusPolicy(Qt::TabFocus);
    setCursor(Qt::CrossCursor);
}

void ColorArea::setMarkerCentre(Point centre) {
    marker_.x = centre.x - marker_.width * 0.5;
    marker_.y = centre.y - marker_.height * 0.5;
    update();
    QAccessibleValueChangeEvent changed(this, marker_.y);
    QAccessible::updateAccessibility(&changed);
}

Point ColorArea::clamped(Point centre) const {
    const auto inside = [](double value, double marker, double area) {
        return std::clamp(value, marker * 0.5, area - marker * 0.5);
    };
    return {inside(centre.x, marker_.width, width()), inside(centre.y, marker_.height, height())};
}

QImage ColorArea::rendered(Point origin, const QSize& size) const {
    QImage image(size, QImage::Format_RGBA8888_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    painter.translate(0, size.height());
    painter.scale(1, -1);
    painter.translate(-origin.x, -origin.y);
    layers_.root().paint(painter, layers_.now());
    return image;
}

Colour ColorArea::colorOfPoint(Point point) const {
    const QImage pixel = rendered(point, QSize(1, 1));
    const uchar* const bytes = pixel.constBits();
    return {bytes[0] / kByte, bytes[1] / kByte, bytes[2] / kByte, bytes[3] / kByte};
}

Colour ColorArea::colorAtMarker() const {
    return colorOfPoint({marker_.x, marker_.y});
}

Point ColorArea::placeOf(const Colour& colour) const {
    const QImage image = rendered({}, size());
    double nearest = std::numeric_limits<double>::max();
    QPoint place;
    for (int y = 0; y < image.height(); ++y) {
        for (int x = 0; x < image.width(); ++x) {
            const double far = distance(image.pixel(x, y), colour);
            if (far < nearest) {
                nearest = far;
                place = {x, y};
            }
        }
    }
    return {static_cast<double>(place.x()), static_cast<double>(image.height() - 1 - place.y())};
}

Point ColorArea::location(const QPointF& position) const {
    return {position.x(), height() - position.y()};
}

void ColorArea::mousePressEvent(QMouseEvent* event) {
    panned_ = false;
    if (event->button() == Qt::LeftButton && onPress)
        onPress(location(event->position()));
}

void ColorArea::mouseMoveEvent(QMouseEvent* event) {
    if (!(event->buttons() & Qt::LeftButton))
        return;
    panned_ = true;
    if (onPan)
        onPan(location(event->position()));
}

void ColorArea::mouseReleaseEvent(QMouseEvent* event) {
    if (event->button() == Qt::LeftButton && std::exchange(panned_, false) && onPress)
        onPress(location(event->position()));
}

void ColorArea::keyPressEvent(QKeyEvent* event) {
    const QPoint step = arrowStep(*event);
    if (step.isNull()) {
        QWidget::keyPressEvent(event);
        return;
    }
    const Point centre = marker_.centre();
    if (onPress)
        onPress({centre.x + step.x(), centre.y - step.y()});
}

void ColorArea::focusInEvent(QFocusEvent* event) {
    QWidget::focusInEvent(event);
    update();
}

void ColorArea::focusOutEvent(QFocusEvent* event) {
    QWidget::focusOutEvent(event);
    update();
}

void ColorArea::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    painter.setRenderHint(QPainter::Antialiasing);
    if (!isEnabled())
        painter.setOpacity(palette::kDisabledOpacity);
    layers_.paint(painter);
    painter.translate(0, height());
    painter.scale(1, -1);
    const double radius = std::min(marker_.width, marker_.height) / 2;
    stroke(painter, grown(marker_, metrics::kMarkerEdge), radius + metrics::kMarkerEdge, metrics::kMarkerEdge,
           palette::kMarkerEdge);
    stroke(painter, marker_, radius, metrics::kMarkerLine, palette::kMarker);
    if (hasFocus())
        stroke(painter, layers_.root().bounds(), metrics::kCornerRadius, metrics::kFocusLine,
               palette::kMarker);
}

QString hexText(const Colour& colour) {
    const auto part = [](double value) { return static_cast<float>(std::clamp(value, 0.0, 1.0)); };
    return QColor::fromRgbF(part(colour.red), part(colour.green), part(colour.blue)).name().toUpper();
}

std::optional<Colour> colourOfHexText(const QString& text) {
    static const QRegularExpression form(QStringLiteral("^\\s*#?([0-9A-Fa-f]{6})\\s*$"));
    const QRegularExpressionMatch match = form.match(text);
    if (!match.hasMatch())
        return std::nullopt;
    const QRgb parts = match.captured(1).toUInt(nullptr, 16);
    return Colour{qRed(parts) / kByte, qGreen(parts) / kByte, qBlue(parts) / kByte, 1};
}

}  // namespace trimora::controls
