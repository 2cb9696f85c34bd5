#pragma once

#include <memory>

#include "cutengine/Layer.h"
#include "cutengine/Picture.h"
#include "foundation/Bitmap.h"
#include "foundation/Geometry.h"
#include "foundation/Queues.h"

namespace trimora::cutengine {

/// A bitmap that knows where it lies: what image filters take and give.
///
/// The extent is in pixels, y-up; the bitmap covers it exactly. Values: copies share their pixels,
/// which never change. A default-made one is empty, with the zero extent. Any thread.
class FilterImage {
 public:
    FilterImage() = default;

    /// The picture's best bitmap at its own size, extent from the origin; empty for a picture without
    /// pixels. The picture is kept alive.
    [[nodiscard]] static FilterImage fromPicture(const PicturePtr& picture);

    [[nodiscard]] const foundation::Rect& extent() const { return extent_; }
    [[nodiscard]] bool isEmpty() const { return part_.isEmpty(); }
    /// The pixels; kept alive by this object or any copy of it.
    [[nodiscard]] foundation::BitmapView view() const;

    /// Blurred with a flat disc of this radius in pixels; edges repeat, so the extent stays.
    [[nodiscard]] FilterImage discBlurred(double radius, foundation::Workers& workers) const;

    /// The part inside `area` (whole pixels, clipped to the extent), moved so that the area's corner
    /// becomes the origin.
    [[nodiscard]] FilterImage crop(const foundation::Rect& area) const;

    /// The pixels as a picture of the extent's size; none for an empty image or without memory.
    [[nodiscard]] PicturePtr picture() const;

 private:
    explicit FilterImage(BitmapPtr whole);

    foundation::Rect extent_;
    BitmapPtr bitmap_;
    foundation::IntRect part_;  ///< of bitmap_, top row first
};

/// The radius in pixels of the disc that blurs a picture of this size behind its cut-out.
[[nodiscard]] double backgroundBlurRadius(double width, double height);

/// The blurred copy that stands behind a cut-out: a disc of backgroundBlurRadius().
[[nodiscard]] PicturePtr blurredCopy(const PicturePtr& picture, foundation::Workers& workers);

/// The same with its smaller copies, ready to be drawn; none for none, or without memory. Of a large picture
/// the copies of half its size and less are all there is, which take a quarter of the memory: after a large
/// disc nothing is so fine that it shows, and a frame drawn from them differs by one level of 255 at most.
[[nodiscard]] std::shared_ptr<const DrawablePicture> blurredDrawable(const PicturePtr& picture,
                                                                     foundation::Workers& workers);

}  // namespace trimora::cutengine
