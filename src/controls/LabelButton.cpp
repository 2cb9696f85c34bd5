#include "controls/LabelButton.h"

#include <QFontMetricsF>
#include <algorithm>
#include <cmath>

#include "controls/Metrics.h"

namespace trimora::controls {

using cutengine::BezierPath;
using foundation::Rect;

LabelButton::LabelButton(const ControlContext& context, Hover hover, QWidget* parent)
    : LayerButton(context, hover, parent),
      body_(layers().root().make<ControlLayer>()),
      imageLayer_(layers().root().make<ImageLayer>()),
      textLayer_(layers().root().make<TextLayer>()) {
    setIconSize(QSize(metrics::kBarIcon, metrics::kBarIcon));
    textLayer_.alignment = Qt::AlignLeft;
}

double LabelButton::imageWidth() const {
    return icon().isNull() ? 0 : iconSize().width();
}

double LabelButton::gap() const {
    return icon().isNull() || text().isEmpty() ? 0 : metrics::kGap;
}

double LabelButton::titleWidth() const {
    if (title_.text != text() || title_.font != font())
        title_ = {text(), font(), std::ceil(QFontMetricsF(font()).horizontalAdvance(text()))};
    return title_.width;
}

QSize LabelButton::sizeHint() const {
    const double content = imageWidth() + gap() + titleWidth();
    const int padding =
        text().isEmpty() ? (metrics::kBarButton - metrics::kBarIcon) / 2 : metrics::kButtonPadding;
    return {static_cast<int>(std::ceil(content)) + 2 * padding, metrics::kBarButton};
}

BezierPath LabelButton::layOut(const Rect& bounds) {
    body_.setFrame(bounds);
    layOutLabel(bounds);
    return BezierPath::roundedRectangle(bounds, metrics::kCornerRadius);
}

void LabelButton::layOutLabel(const Rect& box) {
    box_ = box;
    const double title = std::min(titleWidth(), std::max(box.width - imageWidth() - gap(), 0.0));
    const double content = imageWidth() + gap() + title;
    const double left = std::round(box.x + (box.width - content) / 2);
    const bool mirrored = layoutDirection() == Qt::RightToLeft;
    const double imageX = mirrored ? left + title + gap() : left;
    const double titleX = mirrored ? left : left + imageWidth() + gap();
    imageLayer_.setFrame({imageX, box.y, imageWidth(), box.height});
    textLayer_.setFrame({titleX, box.y, title, box.height});
}

void LabelButton::showLabel(const QColor& color) {
    imageLayer_.image = shownImage();
    imageLayer_.imageSize = iconSize();
    imageLayer_.opacity = shownImageOpacity();
    textLayer_.string = text();
    textLayer_.font = font();
    textLayer_.foregroundColor = color;
    layOutLabel(box_);
}

}  // namespace trimora::controls
