#include "controls/CallToActionButton.h"

#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "util/ButtonBlocker.h"

namespace trimora::controls {

using cutengine::BezierPath;
using foundation::Rect;

CallToActionButton::CallToActionButton(const ControlContext& context, const char* notification,
                                       QWidget* parent)
    : LayerButton(context, Hover::still, parent),
      gradientLayer_(layers().root().make<GradientLayer>()),
      veil_(layers().root().make<ControlLayer>()),
      textLayer_(layers().root().make<TextLayer>()) {
    gradientLayer_.colors = {palette::kCallStart, palette::kCallEnd};
    gradientLayer_.startPoint = {0, 0.25};
    gradientLayer_.endPoint = {1, 0.75};
    gradientLayer_.cornerRadius = metrics::kCornerRadius;
    veil_.cornerRadius = metrics::kCornerRadius;
    util::setTitleColor(*this, palette::kCallText);
    connect(this, &QAbstractButton::pressed, this,
            [this] { util::setTitleColor(*this, palette::kCallPressedTitle); });
    connect(this, &QAbstractButton::released, this,
            [this] { util::setTitleColor(*this, palette::kCallText); });
    connect(this, &QAbstractButton::clicked, this,
            [this, notification] { this->context().notifications.post(notification); });
}

QSize CallToActionButton::sizeHint() const {
    return {metrics::kCallWidth, metrics::kCallHeight};
}

BezierPath CallToActionButton::layOut(const Rect& bounds) {
    gradientLayer_.setFrame(bounds);
    veil_.setFrame(bounds);
    textLayer_.setFrame({0, bounds.height / 4, bounds.width, bounds.height / 2});
    return BezierPath::roundedRectangle(bounds, metrics::kCornerRadius);
}

void CallToActionButton::showState() {
    veil_.backgroundColor = veilColor();
    textLayer_.string = text();
    textLayer_.font = font();
    textLayer_.font.setPixelSize(static_cast<int>(metrics::kCallFont));
    textLayer_.foregroundColor = isDown() ? palette::kCallPressedText : palette::kCallText;
}

}  // namespace trimora::controls
