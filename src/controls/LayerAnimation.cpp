#include "controls/LayerAnimation.h"

#include <algorithm>
#include <cmath>

namespace trimora::controls {
namespace {

double between(double from, double to, double share) {
    return from + (to - from) * share;
}

/// Component by component; a curve that overshoots must not carry a component past its range.
QColor between(const QColor& from, const QColor& to, double share) {
    const auto part = [share](double a, double b) {
        return static_cast<float>(std::clamp(between(a, b, share), 0.0, 1.0));
    };
    return QColor::fromRgbF(part(from.redF(), to.redF()), part(from.greenF(), to.greenF()),
                            part(from.blueF(), to.blueF()), part(from.alphaF(), to.alphaF()));
}

std::vector<QColor> between(const std::vector<QColor>& from, const std::vector<QColor>& to, double share) {
    std::vector<QColor> mixed;
    for (std::size_t i = 0; i < std::min(from.size(), to.size()); ++i)
        mixed.push_back(between(from[i], to[i], share));
    return mixed;
}

double& number(LayerPresentation& shown, KeyPath keyPath) {
    switch (keyPath) {
        case KeyPath::transformTranslationX:
            return shown.translationX;
        case KeyPath::transformTranslationY:
            return shown.translationY;
        case KeyPath::opacity:
            return shown.opacity;
        default:
            return shown.scale;
    }
}

}  // namespace

bool LayerPresentation::looksLike(const LayerPresentation& other, double leastMove) const {
    return scale == other.scale && opacity == other.opacity && colors == other.colors &&
           std::abs(translationX - other.translationX) < leastMove &&
           std::abs(translationY - other.translationY) < leastMove;
}

std::optional<double> AnimationTiming::progress(double time) const {
    const double since = time - beginTime;
    if (since < 0)
        return std::nullopt;
    if (!runsAfter(time))
        return fillForwards ? std::optional(1.0) : std::nullopt;
    return std::fmod(since, duration) / duration;
}

bool AnimationTiming::runsAfter(double time) const {
    return duration > 0 && time - beginTime < duration * repeatCount;
}

void PropertyAnimation::apply(double time, LayerPresentation& shown) const {
    const std::optional<double> progress = timing.progress(time);
    if (!progress)
        return;
    const double share = curve.at(*progress);
    if (keyPath == KeyPath::colors)
        shown.colors = between(from.colors, to.colors, share);
    else
        number(shown, keyPath) = between(from.number, to.number, share);
}

void AnimationGroup::apply(double time, LayerPresentation& shown) const {
    const std::optional<double> progress = timing.progress(time);
    if (!progress)
        return;
    for (const PropertyAnimation& member : members)
        member.apply(*progress * timing.duration, shown);
}

}  // namespace trimora::controls
