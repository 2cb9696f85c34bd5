#include "editor/CutViewInput.h"

#include <QKeyEvent>
#include <QWheelEvent>
#include <cmath>

namespace trimora::editor {

using foundation::IntRect;
using foundation::Point;
using foundation::Rect;

namespace {

constexpr double kNotch = 120;          // a wheel's step in the toolkit's eighths of a degree
constexpr double kPointsPerNotch = 10;  // and in points
constexpr double kPointsPerZoom = 50;   // the cut view zooms by 1 + delta / 50

// Key places as X11 and Wayland number them: the kernel's number and 8.
struct KeyPlace {
    quint32 nativeScanCode;
    Qt::Key letter;
    int keyCode;
};
constexpr KeyPlace kKeyPlaces[] = {
    {31, Qt::Key_I, cutengine::kKeyCodeI},
    {52, Qt::Key_Z, cutengine::kKeyCodeZ},
};

}  // namespace

Point viewPoint(QPointF place, double height) {
    return {place.x(), height - place.y()};
}

QRect widgetRect(const Rect& area, double height) {
    const int left = static_cast<int>(std::floor(area.x));
    const int top = static_cast<int>(std::floor(height - area.maxY()));
    const int right = static_cast<int>(std::ceil(area.maxX()));
    const int bottom = static_cast<int>(std::ceil(height - area.y));
    return {left, top, right - left, bottom - top};
}

IntRect devicePixels(const QRect& area, double scaleFactor) {
    const int left = static_cast<int>(std::floor(area.x() * scaleFactor));
    const int top = static_cast<int>(std::floor(area.y() * scaleFactor));
    const int right = static_cast<int>(std::ceil((area.x() + area.width()) * scaleFactor));
    const int bottom = static_cast<int>(std::ceil((area.y() + area.height()) * scaleFactor));
    return {left, top, right - left, bottom - top};
}

std::optional<cutengine::MouseButton> mouseButton(Qt::MouseButton button) {
    if (button == Qt::LeftButton)
        return cutengine::MouseButton::left;
    if (button == Qt::RightButton)
        return cutengine::MouseButton::right;
    return std::nullopt;
}

cutengine::Modifiers modifiers(Qt::KeyboardModifiers held) {
    return {.option = held.testFlag(Qt::AltModifier), .command = held.testFlag(Qt::ControlModifier)};
}

double scrollDelta(const QWheelEvent& event) {
    const bool trackpad = event.phase() != Qt::NoScrollPhase && !event.pixelDelta().isNull();
    const QPointF delta =
        trackpad ? QPointF(event.pixelDelta()) : QPointF(event.angleDelta()) * (kPointsPerNotch / kNotch);
    const bool sideways = delta.y() == 0 && event.modifiers().testFlag(Qt::AltModifier);
    return sideways ? delta.x() : delta.y();
}

double scrollDeltaOfPinch(double growth) {
    return growth * kPointsPerZoom;
}

std::optional<int> keyCode(const QKeyEvent& event) {
    for (const KeyPlace& place : kKeyPlaces) {
        const bool here = event.nativeScanCode() != 0 ? event.nativeScanCode() == place.nativeScanCode
                                                      : event.key() == place.letter;
        if (here)
            return place.keyCode;
    }
    return std::nullopt;
}

}  // namespace trimora::editor
