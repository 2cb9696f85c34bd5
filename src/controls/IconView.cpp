#include "controls/IconView.h"

#include <QPainter>

namespace trimora::controls {

IconView::IconView(QWidget* parent) : QWidget(parent) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
}

void IconView::setImage(const QIcon& image) {
    image_ = image;
    update();
}

void IconView::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    image_.paint(&painter, rect(), Qt::AlignCenter, isEnabled() ? QIcon::Normal : QIcon::Disabled);
}

}  // namespace trimora::controls
