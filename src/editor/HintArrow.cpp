#include "editor/HintArrow.h"

#include <QPainter>

#include "controls/Icons.h"
#include "controls/Metrics.h"

namespace trimora::editor {

namespace metrics = controls::metrics;
using controls::AnimationGroup;
using controls::PropertyAnimation;
using controls::TimingCurve;

namespace {

constexpr float kRise = 14;   ///< points of the way up
constexpr float kBounce = 7;  ///< and of the bounce after the drop
constexpr double kCycle = 2;  ///< seconds, the rest at the end among them

}  // namespace

HintArrow::HintArrow(const controls::ControlContext& context, QWidget* parent)
    : QWidget(parent), layers_(*this, context), arrow_(layers_.root().make<controls::ImageLayer>()) {
    setAttribute(Qt::WA_TransparentForMouseEvents);
    arrow_.image = controls::icon(QStringLiteral("arrow_down"));
    arrow_.imageSize = {metrics::kHintArrow, metrics::kHintArrow};
    resize(sizeHint());
}

PropertyAnimation HintArrow::animationYFrom_to_beginTime_duration(float fromY, float toY, float beginTime,
                                                                  float duration) {
    return {
        .keyPath = controls::KeyPath::transformTranslationY,
        .from = static_cast<double>(fromY),
        .to = static_cast<double>(toY),
        .timing = {.beginTime = static_cast<double>(beginTime), .duration = static_cast<double>(duration)}};
}

void HintArrow::addDownArrowAnimation() {
    constexpr TimingCurve kFall{{0.4, 0}, {0.9, 0.6}};
    constexpr TimingCurve kRebound{{0, 0.3}, {1, 0.7}};
    AnimationGroup group;
    float begin = 0;
    const auto then = [&](float from, float to, float duration, const TimingCurve& curve) {
        group.members.push_back(animationYFrom_to_beginTime_duration(from, to, begin, duration));
        group.members.back().curve = curve;
        begin += duration;
    };
    then(0, kRise, 1.2F, TimingCurve::linear());
    then(kRise, 0, 0.15F, kFall);
    then(0, kBounce, 0.075F, kRebound);
    then(kBounce, 0, 0.075F, kRebound);
    group.timing = {.duration = kCycle, .repeatCount = controls::kForever};
    arrow_.addAnimation(std::move(group), "group", layers_.now());
    update();
}

QSize HintArrow::sizeHint() const {
    return {metrics::kHintArrow, metrics::kHintArrow + static_cast<int>(kRise)};
}

void HintArrow::paintEvent(QPaintEvent* /*event*/) {
    QPainter painter(this);
    layers_.paint(painter);
}

void HintArrow::resizeEvent(QResizeEvent* /*event*/) {
    layers_.fitToWidget();
    const double side = metrics::kHintArrow;
    arrow_.setFrame({(width() - side) / 2, 0, side, side});
}

}  // namespace trimora::editor
