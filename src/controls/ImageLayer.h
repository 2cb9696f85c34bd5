#pragma once

#include <QIcon>
#include <QSizeF>

#include "controls/ControlLayer.h"

namespace trimora::controls {

/// A layer that shows a drawn image in its middle, at a size of its own whatever the layer's is.
///
/// The image is rendered for the size in device pixels at which it is shown, and put on whole ones: it
/// is as sharp as its drawing at every scale factor, and on a layer that has grown.
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
