#pragma once

#include "foundation/Geometry.h"

namespace trimora::controls {

/// The pace of an animation: which share of its way it has gone at which share of its time.
///
/// A cubic curve from (0, 0) to (1, 1) with two control points; x is time and y is way. The x of a
/// control point is in 0..1, so that time never turns back; its y is free, and a y outside 0..1 makes
/// the motion overshoot, as a spring does.
struct TimingCurve {
    foundation::Point control1;
    foundation::Point control2;
    friend bool operator==(const TimingCurve&, const TimingCurve&) = default;

    /// The way gone at time `t`; 0 at and before t = 0, 1 at and after t = 1.
    [[nodiscard]] double at(double t) const;

    [[nodiscard]] static constexpr TimingCurve linear() { return {{0, 0}, {1, 1}}; }
    /// Quick to start and slow to end: what an animation has that asks for nothing else.
    [[nodiscard]] static constexpr TimingCurve standard() { return {{0.25, 0.1}, {0.25, 1}}; }
    [[nodiscard]] static constexpr TimingCurve easeOut() { return {{0, 0}, {0.58, 1}}; }
    [[nodiscard]] static constexpr TimingCurve easeInEaseOut() { return {{0.42, 0}, {0.58, 1}}; }
};

}  // namespace trimora::controls
