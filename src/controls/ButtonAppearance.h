#pragma once

#include "controls/ImageLayer.h"
#include "controls/LayerButton.h"
#include "controls/ShapeLayer.h"

namespace trimora::controls {

/// A round button with an image on a disc. The click area is the ellipse inscribed in its bounds; the
/// disc is drawn 5 points further in, so that the grown button still fits.
class ButtonAppearance : public LayerButton {
 public:
    explicit ButtonAppearance(const ControlContext& context, QWidget* parent = nullptr);
    [[nodiscard]] QSize sizeHint() const override;

 protected:
    cutengine::BezierPath layOut(const foundation::Rect& bounds) override;
    void showState() override;

 private:
    ShapeLayer& backLayer_;
    ImageLayer& imageView_;
};

}  // namespace trimora::controls
