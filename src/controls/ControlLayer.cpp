#include "controls/ControlLayer.h"

#include <QPainter>
#include <QPainterPath>
#include <algorithm>
#include <utility>

#include "controls/PathDrawing.h"

namespace trimora::controls {

using cutengine::BezierPath;

ControlLayer::~ControlLayer() {
    for (const auto& layer : sublayers_)
        layer->superlayer_ = nullptr;
}

void ControlLayer::addSublayer(std::shared_ptr<ControlLayer> layer) {
    layer->removeFromSuperlayer();
    insertSublayer(std::move(layer), sublayers_.size());
}

void ControlLayer::insertSublayer(std::shared_ptr<ControlLayer> layer, std::size_t index) {
    layer->removeFromSuperlayer();
    layer->superlayer_ = this;
    const auto place = sublayers_.begin() + static_cast<std::ptrdiff_t>(std::min(index, sublayers_.size()));
    sublayers_.insert(place, std::move(layer));
}

void ControlLayer::removeFromSuperlayer() {
    if (superlayer_ == nullptr)
        return;
    auto& siblings = std::exchange(superlayer_, nullptr)->sublayers_;
    std::erase_if(siblings, [this](const auto& layer) { return layer.get() == this; });
}

void ControlLayer::addAnimation(LayerAnimation animation, std::string_view key, double now) {
    removeAnimation(key);
    animations_.push_back({std::string(key), std::move(animation), now});
}

void ControlLayer::removeAnimation(std::string_view key) {
    std::erase_if(animations_, [key](const RunningAnimation& running) { return running.key == key; });
}

bool ControlLayer::hasAnimation(std::string_view key) const {
    return std::any_of(animations_.begin(), animations_.end(),
                       [key](const RunningAnimation& running) { return running.key == key; });
}

LayerPresentation ControlLayer::presentation(double now) const {
    LayerPresentation shown;
    shown.opacity = opacity;
    for (const RunningAnimation& running : animations_)
        std::visit([&](const auto& a) { a.apply(now - running.start, shown); }, running.animation);
    return shown;
}

bool ControlLayer::isAnimating(double now) const {
    if (hidden)
        return false;
    const auto runs = [now](const RunningAnimation& running) {
        return std::visit([&](const auto& a) { return a.timing.runsAfter(now - running.start); },
                          running.animation);
    };
    return std::any_of(animations_.begin(), animations_.end(), runs) ||
           std::any_of(sublayers_.begin(), sublayers_.end(),
                       [now](const auto& layer) { return layer->isAnimating(now); });
}

bool ControlLayer::looksAlike(double one, double other, double leastMove) const {
    if (hidden)
        return true;
    return presentation(one).looksLike(presentation(other), leastMove) &&
           std::all_of(sublayers_.begin(), sublayers_.end(),
                       [&](const auto& layer) { return layer->looksAlike(one, other, leastMove); });
}

void ControlLayer::paint(QPainter& painter, double now) const {
    const LayerPresentation shown = presentation(now);
    if (hidden || shown.opacity <= 0)
        return;
    painter.save();
    const double anchorX = anchorPoint.x * frame_.width;
    const double anchorY = anchorPoint.y * frame_.height;
    painter.translate(frame_.x + anchorX + shown.translationX, frame_.y + anchorY + shown.translationY);
    painter.scale(shown.scale, shown.scale);
    painter.translate(-anchorX, -anchorY);
    painter.setOpacity(painter.opacity() * shown.opacity);
    painter.setRenderHint(QPainter::Antialiasing);
    if (mask)
        painter.setClipPath(painterPath(*mask), Qt::IntersectClip);
    BezierPath edge = BezierPath::roundedRectangle(bounds(), cornerRadius);
    if (backgroundColor.alpha() > 0)
        painter.fillPath(painterPath(edge), backgroundColor);
    paintContents(painter, shown);
    for (const auto& layer : sublayers_)
        layer->paint(painter, now);
    if (borderWidth > 0) {
        edge.lineWidth = borderWidth;
        strokeInside(painter, edge, borderColor);
    }
    painter.restore();
}

void ControlLayer::paintContents(QPainter& /*painter*/, const LayerPresentation& /*shown*/) const {}

}  // namespace trimora::controls
