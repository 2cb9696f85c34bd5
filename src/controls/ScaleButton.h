#pragma once

#include "controls/GradientLayer.h"
#include "controls/LabelButton.h"

namespace trimora::controls {

/// A quiet rectangular button, image and title on a grey gradient, that grows under the pointer. Its
/// body is drawn smaller than its bounds by as much as it may grow, so nothing is cut off.
class ScaleButton final : public LabelButton {
 public:
    explicit ScaleButton(const ControlContext& context, QWidget* parent = nullptr);
    [[nodiscard]] QSize sizeHint() const override;

 protected:
    cutengine::BezierPath layOut(const foundation::Rect& bounds) override;
    void showState() override;

 private:
    GradientLayer& gradientLayer_;
};

}  // namespace trimora::controls
