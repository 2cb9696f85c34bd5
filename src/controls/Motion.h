#pragma once

#include "controls/TimingCurve.h"

/// Every movement of the controls, by what it is for. Times are seconds.
namespace trimora::controls::motion {

inline constexpr double kFrame = 1.0 / 60;  ///< between two pictures of an animation

inline constexpr double kHoverScale = 1.15;       ///< how large a button grows under the pointer
inline constexpr double kGrowTimePerScale = 1.5;  ///< per unit of scale still to go, so speed is even
inline constexpr double kShrinkTimePerScale = 1;
inline constexpr TimingCurve kGrowCurve{{0.85, 2.5}, {0.3, -0.6}};  ///< a spring

inline constexpr double kHoldForMenu = 1.5;  ///< a pointer that rests so long opens a tool's menu

inline constexpr double kPulse = 2;             ///< one ripple of a half-disc button
inline constexpr double kPulseFromScale = 0.7;  ///< where the disc still hides it
inline constexpr double kPulseFromOpacity = 0.5;

inline constexpr double kGradientSweep = 2.4;  ///< there and back of a moving gradient
inline constexpr double kBreath = 2.4;         ///< there and back of the body that it is on
inline constexpr double kBreathScale = 1.04;

}  // namespace trimora::controls::motion
