#pragma once

#include <QPixmap>

#include "controls/ControlLayer.h"
#include "cutengine/Picture.h"

namespace trimora::editor {

/// A layer that shows a picture in a rectangle of its own space, on whole device pixels.
class PictureLayer final : public controls::ControlLayer {
 public:
    cutengine::PicturePtr picture;  ///< already scaled to the device pixels of its place
    foundation::Rect pictureFrame;

    /// The picture for the toolkit, at this many device pixels to a point; null where there is none.
    [[nodiscard]] QPixmap pixmap(double scaleFactor) const;

 protected:
    void paintContents(QPainter& painter, const controls::LayerPresentation& shown) const override;
};

}  // namespace trimora::editor
