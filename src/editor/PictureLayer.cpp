#include "editor/PictureLayer.h"

#include <QPainter>

#include "util/BitmapImage.h"

namespace trimora::editor {

QPixmap PictureLayer::pixmap(double scaleFactor) const {
    if (picture == nullptr)
        return {};
    QPixmap made = QPixmap::fromImage(util::sharedImage(picture->bestRepresentation()->view()).copy());
    made.setDevicePixelRatio(scaleFactor);
    return made;
}

void PictureLayer::paintContents(QPainter& painter, const controls::LayerPresentation& /*shown*/) const {
    if (picture == nullptr)
        return;
    const QRectF place(pictureFrame.x, pictureFrame.y, pictureFrame.width, pictureFrame.height);
    const QRect pixels = painter.deviceTransform().mapRect(place).toRect();
    const QTransform toDevice = painter.worldTransform().inverted() * painter.deviceTransform();
    painter.save();
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.setWorldTransform(toDevice.inverted());
    painter.drawImage(pixels, util::sharedImage(picture->bestRepresentation()->view()));
    painter.restore();
}

}  // namespace trimora::editor
