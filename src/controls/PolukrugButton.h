#pragma once

#include "controls/LayerButton.h"
#include "controls/ShapeLayer.h"
#include "controls/TextLayer.h"

namespace trimora::controls {

/// A half disc that hangs from the upper edge of its box, with a large title and a ripple round it that
/// never ends. Inverted it stands on the lower edge, round side up.
///
/// With the box w wide, the disc's radius is w / 2.8; its centre lies w / 2 above the lower edge in a
/// box twice as wide as high, which is the size it asks for. Clicks count inside the half disc only.
class PolukrugButton final : public LayerButton {
 public:
    explicit PolukrugButton(const ControlContext& context, QWidget* parent = nullptr);
    [[nodiscard]] QSize sizeHint() const override;

    /// The colour of the disc and its ripple.
    [[nodiscard]] const QColor& mainColor() const { return mainColor_; }
    void setMainColor(const QColor& color);

    /// Turns the shape over; once more turns it back.
    void invert();
    [[nodiscard]] bool inverted() const { return inverted_; }

 protected:
    cutengine::BezierPath layOut(const foundation::Rect& bounds) override;
    void showState() override;

 private:
    void startPulse();

    ShapeLayer& pulseLayer_;
    ControlLayer& mainLayer_;
    TextLayer& title_;
    QColor mainColor_;
    QColor clickColor_;
    bool inverted_ = false;
};

}  // namespace trimora::controls
