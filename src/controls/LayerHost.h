#pragma once

#include <memory>

#include "controls/ControlContext.h"
#include "controls/ControlLayer.h"

class QPainter;
class QWidget;

namespace trimora::controls {

/// Shows a tree of layers in a widget and keeps it moving.
///
/// The root layer's space is the widget's, turned y-up. Frames are driven by painting: as long as
/// anything moves, painting one asks for the next that looks different, so a hidden widget costs nothing,
/// and one that moves slowly or rests for a while little. Whoever starts or ends an animation calls the
/// widget's update() once. Main thread only; the widget owns its host.
class LayerHost {
 public:
    LayerHost(QWidget& widget, const ControlContext& context) : widget_(widget), context_(context) {}

    [[nodiscard]] ControlLayer& root() { return root_; }
    [[nodiscard]] const ControlLayer& root() const { return root_; }

    /// The time that animations of this host are added at and read by.
    [[nodiscard]] double now() const { return context_.clock.seconds(); }

    /// Makes the root as large as the widget.
    void fitToWidget();

    /// Paints the layers; called in the widget's paint event with a painter in the widget's own space.
    void paint(QPainter& painter);

 private:
    [[nodiscard]] double timeToNextFrame(double shown) const;

    QWidget& widget_;
    ControlContext context_;
    ControlLayer root_;
    std::unique_ptr<foundation::Timer> nextFrame_;
};

}  // namespace trimora::controls
