#include "controls/Sheet.h"

#include <QGuiApplication>
#include <QPainter>

#include "controls/Metrics.h"
#include "controls/Palette.h"

namespace trimora::controls {

SheetCorners sheetCornersHere() {
    const bool placesItself = !QGuiApplication::platformName().startsWith(QLatin1String("wayland"));
    return placesItself ? SheetCorners::lower : SheetCorners::all;
}

QPainterPath sheetOutline(const QRectF& rect, double radius, SheetCorners corners) {
    QPainterPath outline;
    outline.addRoundedRect(rect, radius, radius);
    if (corners == SheetCorners::lower) {
        QPainterPath upperHalf;
        upperHalf.addRect(rect.x(), rect.y(), rect.width(), rect.height() / 2);
        outline = outline.united(upperHalf);
    }
    return outline;
}

void paintSheet(QPainter& painter, const QRect& rect, SheetCorners corners) {
    painter.setRenderHint(QPainter::Antialiasing);
    painter.fillPath(sheetOutline(rect, metrics::kSheetCorner, corners), palette::kSheet);
    // The white stays as a hairline round the dark background, which sets the sheet off the black window.
    const QRectF inside =
        QRectF(rect).adjusted(metrics::kSheetEdge, corners == SheetCorners::all ? metrics::kSheetEdge : 0,
                              -metrics::kSheetEdge, -metrics::kSheetEdge);
    painter.fillPath(sheetOutline(inside, metrics::kSheetCorner - metrics::kSheetEdge, corners),
                     palette::kRaised);
}

}  // namespace trimora::controls
