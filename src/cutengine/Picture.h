#pragma once

#include <memory>
#include <vector>

#include "cutengine/kernels/MipPyramid.h"
#include "foundation/Bitmap.h"
#include "foundation/Geometry.h"
#include "foundation/Queues.h"

namespace trimora::cutengine {

class Picture;
using PicturePtr = std::shared_ptr<const Picture>;
using BitmapPtr = std::shared_ptr<const foundation::Bitmap>;
using MipPyramidPtr = std::shared_ptr<const kernels::MipPyramid>;

/// A picture that never changes: one or more bitmaps of the same scene, and a size in points.
///
/// One point is one pixel: the size is the largest pixel width and the largest pixel height over all
/// bitmaps, each maximum taken by itself, whatever resolution the file declares. The picture is
/// upright and in sRGB. Always held by PicturePtr, so any thread may read it at any time.
class Picture {
 public:
    /// A picture of all these bitmaps; none where the list is empty or only holds empty bitmaps.
    /// `copies` are those of the only one, where they have been made already.
    [[nodiscard]] static PicturePtr create(std::vector<foundation::Bitmap> representations,
                                           kernels::MipPyramid copies = {});
    [[nodiscard]] static PicturePtr create(foundation::Bitmap only);
    [[nodiscard]] static PicturePtr create(BitmapPtr only);

    /// A picture of a stated size in points, which may be zero; it may hold no bitmap at all.
    [[nodiscard]] static PicturePtr createSized(foundation::Size size,
                                                std::vector<foundation::Bitmap> representations);

    /// The picture together with its smaller copies, so that all who draw it small share them: the picture
    /// itself where it has them, or has no pixels.
    [[nodiscard]] static PicturePtr withCopies(const PicturePtr& picture, foundation::Workers& workers);

    [[nodiscard]] foundation::Size size() const { return size_; }
    /// The size in points truncated to whole pixels.
    [[nodiscard]] int pixelWidth() const { return static_cast<int>(size_.width); }
    [[nodiscard]] int pixelHeight() const { return static_cast<int>(size_.height); }

    [[nodiscard]] const std::vector<BitmapPtr>& representations() const { return representations_; }

    /// Whether there are pixels to draw.
    [[nodiscard]] bool isValid() const { return !representations_.empty() && !size_.isEmpty(); }

    /// The bitmap to draw at the given size in pixels: the smallest that is at least as large both
    /// ways, or the largest of all. None where the picture is not valid.
    [[nodiscard]] BitmapPtr bestRepresentation(double pixelWidth, double pixelHeight) const;
    /// The one to draw at the picture's own size.
    [[nodiscard]] BitmapPtr bestRepresentation() const {
        return bestRepresentation(size_.width, size_.height);
    }

    /// That bitmap with its smaller copies; none where nobody has made them.
    [[nodiscard]] const MipPyramidPtr& copies() const { return copies_; }

    Picture(const Picture&) = delete;
    Picture& operator=(const Picture&) = delete;

 private:
    Picture() = default;
    [[nodiscard]] static std::shared_ptr<Picture> make(foundation::Size size,
                                                       std::vector<foundation::Bitmap> representations);

    foundation::Size size_;
    std::vector<BitmapPtr> representations_;
    MipPyramidPtr copies_;
};

}  // namespace trimora::cutengine
