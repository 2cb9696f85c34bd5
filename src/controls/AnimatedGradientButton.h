#pragma once

#include "controls/GradientLayer.h"
#include "controls/LabelButton.h"

namespace trimora::controls {

/// A button that asks for attention: while it is started, two gradients, over its upper and its lower
/// half, trade their outer colours back and forth, and the whole breathes. Stopped it rests as it was
/// drawn. Its body is drawn smaller than its bounds by as much as it breathes.
class AnimatedGradientButton final : public LabelButton {
 public:
    explicit AnimatedGradientButton(const ControlContext& context, QWidget* parent = nullptr);

    void startAnimation();
    void stopAnimation();
    [[nodiscard]] bool isAnimating() const;

 protected:
    cutengine::BezierPath layOut(const foundation::Rect& bounds) override;
    void showState() override;

 private:
    void sweep(GradientLayer& layer, const char* key, const std::vector<QColor>& far);
    void breathe();

    GradientLayer& topLayer_;
    GradientLayer& bottomLayer_;
    ControlLayer& veil_;
};

}  // namespace trimora::controls
