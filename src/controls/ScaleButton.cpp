#include "controls/ScaleButton.h"

#include "controls/Metrics.h"
#include "controls/Motion.h"
#include "controls/Palette.h"

namespace trimora::controls {

using cutengine::BezierPath;
using foundation::Rect;

ScaleButton::ScaleButton(const ControlContext& context, QWidget* parent)
    : LabelButton(context, Hover::grows, parent), gradientLayer_(body().make<GradientLayer>()) {
    gradientLayer_.cornerRadius = metrics::kCornerRadius;
}

QSize ScaleButton::sizeHint() const {
    return (QSizeF(LabelButton::sizeHint()) * motion::kHoverScale).toSize() + QSize(1, 1);
}

BezierPath ScaleButton::layOut(const Rect& bounds) {
    const double width = bounds.width / motion::kHoverScale;
    const double height = bounds.height / motion::kHoverScale;
    const Rect box{(bounds.width - width) / 2, (bounds.height - height) / 2, width, height};
    body().setFrame(bounds);
    gradientLayer_.setFrame(box);
    layOutLabel(box);
    return BezierPath::roundedRectangle(box, metrics::kCornerRadius);
}

void ScaleButton::showState() {
    gradientLayer_.colors = {palette::kButtonLow, isDown() ? palette::kButtonLow : palette::kButtonHigh};
    showLabel(palette::kText);
}

}  // namespace trimora::controls
