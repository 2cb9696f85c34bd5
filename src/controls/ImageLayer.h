#pragma once

#include <QIcon>
#include <QSizeF>

#include "controls/ControlLayer.h"

namespace trimora::controls {

/// A layer that shows a drawn image in its middle, at a size of its own whatever the layer's is.
///
/// The image is rendered for the painter's scale factor, and placed on whole device pixels of the
/// unscaled layer, so that it is as sharp as its drawing.
class ImageLayer final : public ControlLayer {
 public:
    QIcon image;
    QSizeF imageSize;  ///< points
    QIcon::Mode mode = QIcon::Normal;
    QIcon::State state = QIcon::Off;

 protected:
    void paintContents(QPainter& painter, const LayerPresentation& shown) const override;
};

}  // namespace trimora::controls
