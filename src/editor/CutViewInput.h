#pragma once

#include <QPointF>
#include <QRect>
#include <optional>

#include "cutengine/InputEvents.h"
#include "foundation/Geometry.h"

class QKeyEvent;
class QWheelEvent;

/// How the toolkit's events read in the cut view's terms. This is the one place where y is turned: the
/// toolkit counts it down from a widget's top edge, the cut view up from the bottom.
namespace trimora::editor {

/// A place in a widget of this height (points) as a view point.
[[nodiscard]] foundation::Point viewPoint(QPointF place, double height);

/// The smallest whole-point rectangle of the widget that covers an area in view points.
[[nodiscard]] QRect widgetRect(const foundation::Rect& area, double height);

/// The whole device pixels that a rectangle of the widget touches, top row first. `scaleFactor` is device
/// pixels per point; fractions of a pixel round outwards, so neighbours may overlap by one.
[[nodiscard]] foundation::IntRect devicePixels(const QRect& area, double scaleFactor);

/// Left or right; the other buttons mean nothing to the cut view.
[[nodiscard]] std::optional<cutengine::MouseButton> mouseButton(Qt::MouseButton button);

[[nodiscard]] cutengine::Modifiers modifiers(Qt::KeyboardModifiers held);

/// The vertical delta in points: ten for one notch of a wheel, and what a trackpad reports as it stands.
/// With Alt held some platforms turn a wheel's notches sideways; they are turned back.
[[nodiscard]] double scrollDelta(const QWheelEvent& event);

/// The scroll delta that zooms by as much as a pinch which grew by `growth` (0.1: a tenth larger).
[[nodiscard]] double scrollDeltaOfPinch(double growth);

/// The cut view's number for a place on the keyboard, or none for one that it does not know. The key's
/// place counts, not the letter that the layout puts there; where the platform tells no place, the letter.
[[nodiscard]] std::optional<int> keyCode(const QKeyEvent& event);

}  // namespace trimora::editor
