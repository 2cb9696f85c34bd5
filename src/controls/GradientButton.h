#pragma once

#include <vector>

#include "controls/GradientLayer.h"
#include "controls/LabelButton.h"

namespace trimora::controls {

/// A button with a border whose fill is a gradient, or one colour where a gradient is empty. Two sets of
/// colours: the active ones, and the pressed ones while the button is held down. Gradients run upwards.
class GradientButton final : public LabelButton {
 public:
    explicit GradientButton(const ControlContext& context, QWidget* parent = nullptr);

    /// Quiet greys to begin with. A change is seen at once.
    struct Colors {
        QColor textColor;
        QColor borderColor;
        QColor activeColor;
        std::vector<QColor> activeGradient;
        QColor pressedColor;
        std::vector<QColor> pressedGradient;
    };
    [[nodiscard]] const Colors& colors() const { return colors_; }
    void setTextColor(const QColor& color);
    void setBorderColor(const QColor& color);
    void setActiveColor(const QColor& color);
    void setActiveGradient(std::vector<QColor> gradient);
    void setPressedColor(const QColor& color);
    void setPressedGradient(std::vector<QColor> gradient);

 protected:
    cutengine::BezierPath layOut(const foundation::Rect& bounds) override;
    void showState() override;

 private:
    GradientLayer& fill_;
    ControlLayer& veil_;
    Colors colors_;
    bool mouseIsDown_ = false;
};

}  // namespace trimora::controls
