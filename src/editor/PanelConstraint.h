#pragma once

#include <functional>
#include <memory>

#include "controls/ControlContext.h"
#include "controls/TimingCurve.h"

namespace trimora::editor {

/// How long a change of a constraint takes, and at which pace it goes.
struct PanelMotion {
    double duration;  ///< seconds
    controls::TimingCurve curve;
};

/// A number of points that a layout reads: how far a panel stands from where it belongs. It is set at
/// once, or moves to its new value along a curve.
///
/// Frames follow the clock of the context; a test that owns the clock sees every one. Main thread only.
class PanelConstraint {
 public:
    /// `changed` is called after every change of the constant; it may be empty.
    PanelConstraint(double constant, const controls::ControlContext& context, std::function<void()> changed);

    /// What the layout uses now, in points.
    [[nodiscard]] double constant() const { return constant_; }
    /// Where it comes to rest.
    [[nodiscard]] double target() const { return to_; }

    /// At once; an animation that is under way ends.
    void setConstant(double constant);
    /// From where it is now. A duration that is not above 0 is at its end at once.
    void animateTo(double constant, const PanelMotion& motion);

 private:
    void nextFrame();
    void apply(double constant);

    controls::ControlContext context_;
    std::function<void()> changed_;
    double constant_;
    double from_;
    double to_;
    double start_ = 0;
    PanelMotion motion_{0, controls::TimingCurve::linear()};
    std::unique_ptr<foundation::Timer> frame_;
};

}  // namespace trimora::editor
