#include "controls/TextLayer.h"

#include <QFontMetricsF>
#include <QPainter>

namespace trimora::controls {

void TextLayer::paintContents(QPainter& painter, const LayerPresentation& /*shown*/) const {
    const auto [width, height] = frame().size();
    // Letters stand upright in the toolkit's own direction only.
    painter.translate(0, height);
    painter.scale(1, -1);
    painter.setFont(font);
    painter.setPen(foregroundColor);
    const QString fitting = QFontMetricsF(font).elidedText(string, Qt::ElideRight, width);
    painter.drawText(QRectF(0, 0, width, height), static_cast<int>(alignment | Qt::AlignVCenter), fitting);
    painter.scale(1, -1);
    painter.translate(0, -height);
}

}  // namespace trimora::controls
