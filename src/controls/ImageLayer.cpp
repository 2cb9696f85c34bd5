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

    // Grown or shrunk, the image is drawn anew and put on whole pixels again: stretched it would blur.
    painter.scale(1, -1);
    const QRect pixels = painter.deviceTransform().mapRect(target).toRect();
    const QTransform toDevice = painter.worldTransform().inverted() * painter.deviceTransform();
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setWorldTransform(toDevice.inverted());
    painter.drawPixmap(pixels, image.pixmap(pixels.size(), 1.0, mode, state));
    painter.restore();
    painter.scale(1, -1);
}

}  // namespace trimora::controls
