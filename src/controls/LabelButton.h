#pragma once

#include <QFont>
#include <QString>

#include "controls/ImageLayer.h"
#include "controls/LayerButton.h"
#include "controls/TextLayer.h"

namespace trimora::controls {

/// A rectangular button with an image, a title or both, side by side in its middle: what the quiet
/// buttons of the family share. Its maker draws the body behind them.
class LabelButton : public LayerButton {
 public:
    [[nodiscard]] QSize sizeHint() const override;

 protected:
    LabelButton(const ControlContext& context, Hover hover, QWidget* parent);

    /// Puts image and title into the middle of the box.
    void layOutLabel(const foundation::Rect& box);
    /// Gives them the present image, title and colour.
    void showLabel(const QColor& color);

    /// Under the label; the same size as the button.
    [[nodiscard]] ControlLayer& body() { return body_; }

    cutengine::BezierPath layOut(const foundation::Rect& bounds) override;

 private:
    [[nodiscard]] double imageWidth() const;
    [[nodiscard]] double gap() const;
    [[nodiscard]] double titleWidth() const;

    /// A toolbar asks for it dozens of times before it is first shown.
    struct MeasuredTitle {
        QString text;
        QFont font;
        double width = 0;
    };
    mutable MeasuredTitle title_;

    ControlLayer& body_;
    ImageLayer& imageLayer_;
    TextLayer& textLayer_;
    foundation::Rect box_;
};

}  // namespace trimora::controls
