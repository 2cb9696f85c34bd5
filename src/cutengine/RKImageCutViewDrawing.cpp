// What the cut view shows: its frames and its pointer.

#include "cutengine/Checkerboard.h"
#include "cutengine/RKImageCutView.h"
#include "cutengine/kernels/ViewRenderer.h"
#include "foundation/Log.h"

namespace trimora::cutengine {

using foundation::IntRect;
using foundation::MutableBitmapView;
using foundation::Pixel;

void RKImageCutView::drawRect(MutableBitmapView target, const IntRect& area) {
    kernels::ViewScene scene;
    scene.scaleFactor = host_.scaleFactor();
    if (!hasPlacedPicture()) {
        kernels::renderView(scene, target, area, services_.queues.workers());
        return;
    }
    if (tileScale_ != scene.scaleFactor) {
        tile_ = makeCheckerboardTile(scene.scaleFactor);
        tileScale_ = scene.scaleFactor;
    }
    scene.tile = tile_.view();

    const double now = services_.clock.seconds();
    scene.pictureSize = imageLayer_->size();
    scene.pictureToView = imageLayer_->toView(imageLayer_->presentation(now));
    scene.backgroundToView = bluredLayer_->toView(bluredLayer_->presentation(now));
    const LayerContents picture = imageLayer_->contents();
    if (const auto* drawable = std::get_if<std::shared_ptr<const DrawablePicture>>(&picture))
        scene.picture = (*drawable)->pyramid.get();
    const kernels::MaskSnapshotPtr shownMask = mask();
    scene.mask = shownMask.get();
    const LayerContents behind = bluredLayer_->contents();
    scene.backgroundHidden = bluredLayer_->isHidden() || std::holds_alternative<std::monostate>(behind);
    if (const auto* blurred = std::get_if<std::shared_ptr<const DrawablePicture>>(&behind))
        scene.background = (*blurred)->pyramid.get();
    else if (const auto* colour = std::get_if<Pixel>(&behind))
        scene.backgroundColour = *colour;
    kernels::renderView(scene, target, area, services_.queues.workers());
}

void RKImageCutView::updateCursor() {
    Cursor cursor;
    if (!mouseIn_ || !image_)
        cursor.kind = Cursor::Kind::arrow;
    else if (dragging_)
        cursor.kind = Cursor::Kind::closedHand;
    else if (pressPans())
        cursor.kind = Cursor::Kind::openHand;
    else
        cursor = brushCursor();
    cursorKind_ = cursor.kind;
    host_.setCursor(cursor);
}

/// The outline of the brush, or the arrow where it cannot be made.
Cursor RKImageCutView::brushCursor() const {
    const BrushCursorShape shape = BrushCursorShape::forDiameter(brushDiameter_);
    auto picture = drawBrushCursor(shape, host_.scaleFactor());
    if (!picture) {
        foundation::log::warning("no brush cursor: %s", picture.error().message.c_str());
        return {};
    }
    return {Cursor::Kind::brush, shape, std::make_shared<const foundation::Bitmap>(std::move(*picture))};
}

}  // namespace trimora::cutengine
