#pragma once

#include "foundation/Bitmap.h"
#include "foundation/Result.h"

namespace trimora::batch {

/// Whether the file that a mask came from has room for transparency.
enum class AlphaRoom { none, some };

/// What a picture says as a mask, as a bitmap of its size whose alpha alone counts: 255 keeps, 0 cuts away.
///
/// Where a pixel of the picture is not opaque its alpha is the mask, and colour means nothing. Else its
/// grey is (the brightness of colours): white keeps. One that is opaque and black all over in a file with
/// room for transparency is a mask of the first kind in which nothing happens to be cut.
/// `picture` is premultiplied or opaque. Fails only for want of memory.
[[nodiscard]] foundation::Result<foundation::Bitmap> maskFrom(foundation::BitmapView picture, AlphaRoom room);

/// The picture in which a mask is kept: white wherever it keeps, as transparent as it cuts away. Both who
/// looks at alpha and who looks at grey on black reads the same. Premultiplied. Fails only for want of
/// memory.
[[nodiscard]] foundation::Result<foundation::Bitmap> keptMask(foundation::BitmapView mask);

/// The smallest rectangle (pixels, top row first) that holds every pixel which is not wholly transparent;
/// empty where all are.
[[nodiscard]] foundation::IntRect visibleBox(foundation::BitmapView picture);

}  // namespace trimora::batch
