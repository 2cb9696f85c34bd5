#include "controls/IconView.h"

#include <QPainter>

#include "controls/Palette.h"

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
    if (!isEnabled())
        painter.setOpacity(palette::kUnusableSlider);
    image_.paint(&painter, rect());
}

}  // namespace trimora::controls
