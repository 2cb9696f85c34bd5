#include "controls/ImageLayer.h"

#include <QPaintDevice>
#include <QPainter>
#include <QPixmap>
#include <cmath>

namespace trimora::controls {

void ImageLayer::paintContents(QPainter& painter, const LayerPresentation& /*shown*/) const {
    if (image.isNull() || imageSize.isEmpty())
        return;
    // A half pixel left over goes downwards and to the left: round tool buttons hold their image half a
    // point above the middle, and below a scale factor of 2 that is no whole pixel.
    const double grid = painter.device()->devicePixelRatioF();
    const auto onGrid = [grid](double value) { return std::ceil(value * grid - 0.5) / grid; };
    const auto [width, height] = frame().size();
    const QRectF target(onGrid((width - imageSize.width()) / 2), -onGrid((height + imageSize.height()) / 2),
                        imageSize.width(), imageSize.height());

    // The length of a transformed unit is how many device pixels a point takes, animations included.
    const QTransform& device = painter.deviceTransform();
    const double pixels = std::hypot(device.m11(), device.m12());
    const QSize drawn(static_cast<int>(std::ceil(imageSize.width() * pixels)),
                      static_cast<int>(std::ceil(imageSize.height() * pixels)));
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.scale(1, -1);
    const QPixmap pixmap = image.pixmap(drawn, 1.0, mode, state);
    painter.drawPixmap(target, pixmap, QRectF(pixmap.rect()));
    painter.scale(1, -1);
}

}  // namespace trimora::controls
