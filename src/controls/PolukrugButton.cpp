#include "controls/PolukrugButton.h"

#include <QFontMetricsF>
#include <algorithm>
#include <numbers>

#include "controls/Metrics.h"
#include "controls/Motion.h"
#include "controls/Palette.h"

namespace trimora::controls {

using cutengine::BezierPath;
using foundation::AffineTransform;
using foundation::Point;
using foundation::Rect;

namespace {

BezierPath halfDisc(Point centre, double radius) {
    return quartzPath(BezierPath::bezierPathWithArcInCenter(centre, radius, std::numbers::pi, 0));
}

QFont titleFont() {
    QFont font(QStringLiteral("FiraSansExtraCondensed-Bold"));
    font.setFamilies({QStringLiteral("Fira Sans Extra Condensed"), QFont().family()});
    font.setWeight(QFont::Bold);
    font.setStretch(QFont::ExtraCondensed);
    return font;
}

}  // namespace

PolukrugButton::PolukrugButton(const ControlContext& context, QWidget* parent)
    : LayerButton(context, Hover::grows, parent),
      pulseLayer_(layers().root().make<ShapeLayer>()),
      mainLayer_(layers().root().make<ControlLayer>()),
      title_(layers().root().make<TextLayer>()),
      mainColor_(palette::kAccent),
      clickColor_(palette::kAccentPressed) {
    title_.foregroundColor = palette::kCallText;
}

QSize PolukrugButton::sizeHint() const {
    return {metrics::kHalfDisc, metrics::kHalfDisc / 2};
}

void PolukrugButton::setMainColor(const QColor& color) {
    mainColor_ = color;
    update();
}

void PolukrugButton::invert() {
    inverted_ = !inverted_;
    refit();
}

BezierPath PolukrugButton::layOut(const Rect& bounds) {
    const Point centre{bounds.width / 2, bounds.width / 2};
    const double radius = bounds.width / metrics::kHalfDiscShare;
    const AffineTransform turned =
        inverted_ ? AffineTransform{1, 0, 0, -1, 0, bounds.height} : AffineTransform{};
    BezierPath shape = halfDisc(centre, radius).transformed(turned);

    mainLayer_.setFrame(bounds);
    mainLayer_.mask = shape;
    // The title's middle lies at the half disc's centre of mass, a little nearer to the flat side.
    const double deep = radius * 8 / (3 * std::numbers::pi);
    const double low = inverted_ ? turned.apply(centre).y : centre.y - deep;
    title_.setFrame({centre.x - radius, low, radius * 2, deep});
    pulseLayer_.setFrame(bounds);
    pulseLayer_.path = halfDisc(centre, bounds.width / 2 / motion::kHoverScale).transformed(turned);
    // All growing is about the middle of the flat side, which stays on its edge.
    const Point anchor = turned.apply(centre);
    pulseLayer_.anchorPoint = {anchor.x / bounds.width, anchor.y / bounds.height};
    layers().root().anchorPoint = pulseLayer_.anchorPoint;
    return shape;
}

void PolukrugButton::showState() {
    mainLayer_.backgroundColor = isDown() ? clickColor_ : mainColor_;
    pulseLayer_.fillColor = mainColor_;
    pulseLayer_.hidden = !isEnabled();
    title_.string = text();
    title_.font = titleFont();
    title_.font.setPixelSize(static_cast<int>(metrics::kHalfDiscFont));
    // Where the title is wider than the disc's middle it shrinks: half a title says nothing.
    const double room = title_.frame().width * metrics::kHalfDiscTextShare;
    const double width = QFontMetricsF(title_.font).horizontalAdvance(text());
    if (width > room && room > 0)
        title_.font.setPixelSize(std::max(1, static_cast<int>(metrics::kHalfDiscFont * room / width)));
    if (!pulseLayer_.hasAnimation("pulse"))
        startPulse();
}

void PolukrugButton::startPulse() {
    const auto endless = [this](KeyPath keyPath, double from, double to, const char* key) {
        pulseLayer_.addAnimation(
            PropertyAnimation{.keyPath = keyPath,
                              .from = from,
                              .to = to,
                              .timing = {.duration = motion::kPulse, .repeatCount = kForever}},
            key, layers().now());
    };
    endless(KeyPath::transformScale, motion::kPulseFromScale, 1, "pulse");
    endless(KeyPath::opacity, motion::kPulseFromOpacity, 0, "opac");
}

}  // namespace trimora::controls
