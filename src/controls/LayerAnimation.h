#pragma once

#include <QColor>
#include <cstdint>
#include <limits>
#include <optional>
#include <utility>
#include <variant>
#include <vector>

#include "controls/TimingCurve.h"

namespace trimora::controls {

/// What of a layer an animation changes.
enum class KeyPath : std::uint8_t {
    transformScale,         ///< "transform.scale": a factor about the anchor point
    transformTranslationX,  ///< "transform.translation.x": points to the right
    transformTranslationY,  ///< "transform.translation.y": points upwards
    opacity,                ///< 0..1
    colors,                 ///< the stops of a gradient
};

/// What a layer shows at one moment, animations included. Without any it shows its own values.
struct LayerPresentation {
    double scale = 1;
    double translationX = 0;
    double translationY = 0;
    double opacity = 1;
    std::vector<QColor> colors;

    /// Whether both look the same where nobody sees a move of less than `leastMove` points.
    [[nodiscard]] bool looksLike(const LayerPresentation& other, double leastMove) const;
};

inline constexpr double kForever = std::numeric_limits<double>::infinity();

/// When an animation runs. All times are in seconds, counted from the moment at which it was added to
/// its layer, or from the begin of its group.
struct AnimationTiming {
    double beginTime = 0;
    double duration = 0;     ///< of one cycle; one that is not above 0 is at its end at once
    double repeatCount = 1;  ///< cycles, kForever for no end
    /// At the end: true keeps the last value shown until the animation is removed, false lets the
    /// layer's own value come back.
    bool fillForwards = false;

    /// The share 0..1 of its cycle that an animation has gone at `time`; none where it shows nothing:
    /// before its begin, and after its end where it does not fill forwards.
    [[nodiscard]] std::optional<double> progress(double time) const;
    /// Whether what is shown may differ after `time`.
    [[nodiscard]] bool runsAfter(double time) const;
};

/// Moves one property from a value to another. Both values are of the kind that the key path asks for:
/// colours for `colors` (the same number in both), a number for all others.
struct PropertyAnimation {
    /// A number or colours; a plain one stands wherever a value is asked for.
    struct Value {
        Value() = default;
        Value(double value) : number(value) {}                          // NOLINT(google-explicit-constructor)
        Value(std::vector<QColor> value) : colors(std::move(value)) {}  // NOLINT(google-explicit-constructor)

        double number = 0;
        std::vector<QColor> colors;
    };

    KeyPath keyPath = KeyPath::transformScale;
    Value from;
    Value to;
    AnimationTiming timing;
    TimingCurve curve = TimingCurve::standard();

    /// Writes the value of this moment into `shown`, or leaves it alone where there is none.
    void apply(double time, LayerPresentation& shown) const;
};

/// Several animations that run, repeat and end as one. A member that is over, or not begun, shows
/// nothing unless it fills forwards; of two that show the same property, the later in the list counts.
struct AnimationGroup {
    std::vector<PropertyAnimation> members;
    AnimationTiming timing;

    void apply(double time, LayerPresentation& shown) const;
};

using LayerAnimation = std::variant<PropertyAnimation, AnimationGroup>;

}  // namespace trimora::controls
