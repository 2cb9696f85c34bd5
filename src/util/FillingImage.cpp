#include "util/FillingImage.h"

#include <QPainter>
#include <utility>

namespace trimora::util {

FillingImage::FillingImage(QImage image, QWidget* parent) : QWidget(parent), image_(std::move(image)) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void FillingImage::paintEvent(QPaintEvent* /*event*/) {
    QRectF target({}, QSizeF(image_.size()).scaled(size(), Qt::KeepAspectRatioByExpanding));
    target.moveCenter(QRectF(rect()).center());
    QPainter painter(this);
    painter.setRenderHint(QPainter::SmoothPixmapTransform);
    painter.drawImage(target, image_);
}

}  // namespace trimora::util
