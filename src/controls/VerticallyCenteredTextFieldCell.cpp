#include "controls/VerticallyCenteredTextFieldCell.h"

#include <QFontMetricsF>
#include <QPainter>
#include <algorithm>

namespace trimora::controls {

QRectF VerticallyCenteredTextFieldCell::titleRectForBounds(const QRectF& bounds) const {
    const double height = std::min(QFontMetricsF(font).height(), bounds.height());
    return {bounds.x(), bounds.y() + (bounds.height() - height) / 2, bounds.width(), height};
}

void VerticallyCenteredTextFieldCell::drawInteriorWithFrame_inView(const QRectF& frame,
                                                                   QPainter& view) const {
    const QRectF rect = titleRectForBounds(frame);
    view.save();
    view.setFont(font);
    view.setPen(color);
    view.drawText(rect, static_cast<int>(alignment | Qt::AlignVCenter),
                  QFontMetricsF(font).elidedText(title, Qt::ElideRight, rect.width()));
    view.restore();
}

}  // namespace trimora::controls
