#include "controls/ButtonAppearance.h"

#include "controls/Metrics.h"
#include "controls/Palette.h"

namespace trimora::controls {

using cutengine::BezierPath;
using foundation::Rect;

ButtonAppearance::ButtonAppearance(const ControlContext& context, QWidget* parent)
    : LayerButton(context, Hover::grows, parent),
      backLayer_(layers().root().make<ShapeLayer>()),
      imageView_(layers().root().make<ImageLayer>()) {
    backLayer_.strokeColor = palette::kDiscEdge;
}

QSize ButtonAppearance::sizeHint() const {
    return {metrics::kToolButton, metrics::kToolButton};
}

BezierPath ButtonAppearance::layOut(const Rect& bounds) {
    constexpr double kInset = metrics::kDiscInset;
    imageView_.setFrame({0, 0, bounds.width, bounds.height + metrics::kImageRise});
    backLayer_.setFrame(bounds);
    backLayer_.path =
        BezierPath::oval({kInset, kInset, bounds.width - 2 * kInset, bounds.height - 2 * kInset});
    return BezierPath::oval(bounds);
}

void ButtonAppearance::showState() {
    backLayer_.fillColor = isDown() ? palette::kDiscPressed : palette::kDisc;
    imageView_.image = shownImage();
    imageView_.imageSize = iconSize();
    imageView_.opacity = shownImageOpacity();
}

}  // namespace trimora::controls
