#include "editor/PanelConstraint.h"

#include <utility>

#include "controls/Motion.h"

namespace trimora::editor {

PanelConstraint::PanelConstraint(double constant, const controls::ControlContext& context,
                                 std::function<void()> changed)
    : context_(context), changed_(std::move(changed)), constant_(constant), from_(constant), to_(constant) {}

void PanelConstraint::setConstant(double constant) {
    frame_.reset();
    from_ = to_ = constant;
    apply(constant);
}

void PanelConstraint::animateTo(double constant, const PanelMotion& motion) {
    if (motion.duration <= 0) {
        setConstant(constant);
        return;
    }
    from_ = constant_;
    to_ = constant;
    motion_ = motion;
    start_ = context_.clock.seconds();
    nextFrame();
}

void PanelConstraint::nextFrame() {
    const double share = (context_.clock.seconds() - start_) / motion_.duration;
    if (share >= 1 || from_ == to_) {
        setConstant(to_);
        return;
    }
    apply(from_ + (to_ - from_) * motion_.curve.at(share));
    frame_ = context_.scheduler.after(controls::motion::kFrame, context_.mainQueue, [this] { nextFrame(); });
}

void PanelConstraint::apply(double constant) {
    if (constant == constant_)
        return;
    constant_ = constant;
    if (changed_)
        changed_();
}

}  // namespace trimora::editor
