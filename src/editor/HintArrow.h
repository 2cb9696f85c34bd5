#pragma once

#include <QWidget>

#include "controls/ImageLayer.h"
#include "controls/LayerAnimation.h"
#include "controls/LayerHost.h"

namespace trimora::editor {

/// ivArrow: the arrow of the empty editor. It rises slowly, drops, bounces once, rests, and begins again.
///
/// The image lies at the bottom of the widget, whose height leaves room for the way up. Lets every press
/// through. Main thread only.
class HintArrow final : public QWidget {
 public:
    explicit HintArrow(const controls::ControlContext& context, QWidget* parent = nullptr);

    /// Starts the motion, for ever; started again it begins anew. Its key on the layer is "group".
    void addDownArrowAnimation();

    /// Moves a layer's "transform.translation.y" from one value to the other. Points, y-up; times in
    /// seconds, the begin counted from that of the group.
    [[nodiscard]] static controls::PropertyAnimation animationYFrom_to_beginTime_duration(float fromY,
                                                                                          float toY,
                                                                                          float beginTime,
                                                                                          float duration);

    /// The layer that moves.
    [[nodiscard]] const controls::ImageLayer& layer() const { return arrow_; }

    [[nodiscard]] QSize sizeHint() const override;

 protected:
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;

 private:
    controls::LayerHost layers_;
    controls::ImageLayer& arrow_;
};

}  // namespace trimora::editor
