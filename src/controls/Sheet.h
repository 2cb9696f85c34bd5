#pragma once

#include <QPainterPath>
#include <QRect>
#include <cstdint>

class QPainter;

namespace trimora::controls {

/// Which corners of a sheet are round: all where it floats, the lower two where it hangs from an edge.
enum class SheetCorners : std::uint8_t { lower, all };

/// What a sheet has on this desktop: lower, but for desktops that let no window choose its place, where
/// every sheet floats. After the application object is made.
[[nodiscard]] SheetCorners sheetCornersHere();

/// The outline of a sheet, in its widget's own coordinates.
[[nodiscard]] QPainterPath sheetOutline(const QRectF& rect, double radius, SheetCorners corners);

/// Paints the ground of a sheet that fills `rect`: dark, with a light hairline round it. What lies outside
/// the round corners stays as it is, so the widget is to be translucent.
void paintSheet(QPainter& painter, const QRect& rect, SheetCorners corners);

}  // namespace trimora::controls
