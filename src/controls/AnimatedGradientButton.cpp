#include "controls/AnimatedGradientButton.h"

#include "controls/Metrics.h"
#include "controls/Motion.h"
#include "controls/Palette.h"

namespace trimora::controls {

using cutengine::BezierPath;
using foundation::Rect;

namespace {

/// To a value and back again, evenly eased, inside an endless group as long as both together.
std::vector<PropertyAnimation> thereAndBack(KeyPath keyPath, const PropertyAnimation::Value& rest,
                                            const PropertyAnimation::Value& far, double duration) {
    const auto half = [&](const auto& from, const auto& to, double begin) {
        return PropertyAnimation{.keyPath = keyPath,
                                 .from = from,
                                 .to = to,
                                 .timing = {.beginTime = begin, .duration = duration / 2},
                                 .curve = TimingCurve::easeInEaseOut()};
    };
    return {half(rest, far, 0), half(far, rest, duration / 2)};
}

}  // namespace

AnimatedGradientButton::AnimatedGradientButton(const ControlContext& context, QWidget* parent)
    : LabelButton(context, Hover::still, parent),
      topLayer_(body().make<GradientLayer>()),
      bottomLayer_(body().make<GradientLayer>()),
      veil_(body().make<ControlLayer>()) {
    // The halves meet in the middle colour and keep it there, so that no seam shows.
    bottomLayer_.colors = {palette::kCallStart, palette::kCallMiddle};
    topLayer_.colors = {palette::kCallMiddle, palette::kCallEnd};
    veil_.cornerRadius = metrics::kCornerRadius;
    layers().root().anchorPoint = {0, 0};
}

BezierPath AnimatedGradientButton::layOut(const Rect& bounds) {
    const double width = bounds.width / motion::kBreathScale;
    const double height = bounds.height / motion::kBreathScale;
    const Rect box{(bounds.width - width) / 2, (bounds.height - height) / 2, width, height};
    BezierPath shape = BezierPath::roundedRectangle(box, metrics::kCornerRadius);
    body().setFrame(bounds);
    body().mask = shape;
    bottomLayer_.setFrame({box.x, box.y, width, height / 2});
    topLayer_.setFrame({box.x, box.y + height / 2, width, height / 2});
    veil_.setFrame(box);
    layOutLabel(box);
    if (isAnimating())
        breathe();  // how far it moves depends on the size
    return shape;
}

void AnimatedGradientButton::showState() {
    veil_.backgroundColor = veilColor();
    showLabel(isDown() ? palette::kCallPressedText : palette::kCallText);
}

bool AnimatedGradientButton::isAnimating() const {
    return topLayer_.hasAnimation("animate1Gradient");
}

void AnimatedGradientButton::startAnimation() {
    if (isAnimating())
        return;
    sweep(topLayer_, "animate1Gradient", {palette::kCallMiddle, palette::kCallStart});
    sweep(bottomLayer_, "animate2Gradient", {palette::kCallEnd, palette::kCallMiddle});
    breathe();
    update();
}

void AnimatedGradientButton::stopAnimation() {
    topLayer_.removeAnimation("animate1Gradient");
    bottomLayer_.removeAnimation("animate2Gradient");
    layers().root().removeAnimation("animateScale");
    update();
}

void AnimatedGradientButton::sweep(GradientLayer& layer, const char* key, const std::vector<QColor>& far) {
    layer.addAnimation(
        AnimationGroup{.members = thereAndBack(KeyPath::colors, layer.colors, far, motion::kGradientSweep),
                       .timing = {.duration = motion::kGradientSweep, .repeatCount = kForever}},
        key, layers().now());
}

void AnimatedGradientButton::breathe() {
    // The root's anchor is its corner; moving it back by half of what it grows keeps its middle in place.
    const auto [width, height] = layers().root().frame().size();
    const double growth = motion::kBreathScale - 1;
    AnimationGroup breath{.members = {}, .timing = {.duration = motion::kBreath, .repeatCount = kForever}};
    const auto add = [&](KeyPath keyPath, double rest, double far) {
        for (PropertyAnimation& step : thereAndBack(keyPath, rest, far, motion::kBreath))
            breath.members.push_back(std::move(step));
    };
    add(KeyPath::transformScale, 1, motion::kBreathScale);
    add(KeyPath::transformTranslationX, 0, -growth * width / 2);
    add(KeyPath::transformTranslationY, 0, -growth * height / 2);
    layers().root().addAnimation(std::move(breath), "animateScale", layers().now());
}

}  // namespace trimora::controls
