#pragma once

#include "controls/GradientLayer.h"
#include "controls/LayerButton.h"
#include "controls/TextLayer.h"

namespace trimora::controls {

/// The large coloured button that says what to do next. A press that begins and ends inside it, or a
/// key, posts its notification; whoever hears that does the work.
class CallToActionButton : public LayerButton {
 public:
    [[nodiscard]] QSize sizeHint() const override;

 protected:
    /// `notification` is posted without an object; it is a literal that outlives the button.
    CallToActionButton(const ControlContext& context, const char* notification, QWidget* parent);

    cutengine::BezierPath layOut(const foundation::Rect& bounds) override;
    void showState() override;

 private:
    GradientLayer& gradientLayer_;
    ControlLayer& veil_;
    TextLayer& textLayer_;
};

}  // namespace trimora::controls
