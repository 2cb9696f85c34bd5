#include "controls/GradientButton.h"

#include <utility>

#include "controls/Metrics.h"
#include "controls/Palette.h"

namespace trimora::controls {

using cutengine::BezierPath;
using foundation::Rect;

GradientButton::GradientButton(const ControlContext& context, QWidget* parent)
    : LabelButton(context, Hover::still, parent),
      fill_(body().make<GradientLayer>()),
      veil_(body().make<ControlLayer>()),
      colors_{.textColor = palette::kText,
              .borderColor = palette::kButtonEdge,
              .activeColor = palette::kRaised,
              .activeGradient = {palette::kButtonLow, palette::kButtonHigh},
              .pressedColor = palette::kPanel,
              .pressedGradient = {palette::kPanel, palette::kButtonLow}} {
    fill_.cornerRadius = metrics::kCornerRadius;
    fill_.borderWidth = 1;
    veil_.cornerRadius = metrics::kCornerRadius;
    veil_.backgroundColor = palette::kHoverVeil;
    connect(this, &QAbstractButton::pressed, this, [this] { mouseIsDown_ = true; });
    connect(this, &QAbstractButton::released, this, [this] { mouseIsDown_ = false; });
}

void GradientButton::setTextColor(const QColor& color) {
    colors_.textColor = color;
    update();
}

void GradientButton::setBorderColor(const QColor& color) {
    colors_.borderColor = color;
    update();
}

void GradientButton::setActiveColor(const QColor& color) {
    colors_.activeColor = color;
    update();
}

void GradientButton::setActiveGradient(std::vector<QColor> gradient) {
    colors_.activeGradient = std::move(gradient);
    update();
}

void GradientButton::setPressedColor(const QColor& color) {
    colors_.pressedColor = color;
    update();
}

void GradientButton::setPressedGradient(std::vector<QColor> gradient) {
    colors_.pressedGradient = std::move(gradient);
    update();
}

BezierPath GradientButton::layOut(const Rect& bounds) {
    fill_.setFrame(bounds);
    veil_.setFrame(bounds);
    return LabelButton::layOut(bounds);
}

void GradientButton::showState() {
    fill_.colors = mouseIsDown_ ? colors_.pressedGradient : colors_.activeGradient;
    fill_.backgroundColor = mouseIsDown_ ? colors_.pressedColor : colors_.activeColor;
    fill_.borderColor = colors_.borderColor;
    veil_.hidden = mouseIsDown_ || !mouseIn();
    showLabel(colors_.textColor);
}

}  // namespace trimora::controls
