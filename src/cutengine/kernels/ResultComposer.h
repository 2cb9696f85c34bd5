#pragma once

#include "cutengine/kernels/MaskSnapshot.h"
#include "foundation/Bitmap.h"
#include "foundation/Queues.h"

namespace trimora::cutengine::kernels {

/// What shows where the picture is cut away.
struct Background {
    enum class Kind : std::uint8_t { hidden, colour, picture, rows };
    Kind kind = Kind::hidden;
    foundation::Pixel colour;  ///< premultiplied; of Kind::colour
    /// Of Kind::picture: stretched over the whole picture's rectangle. Of Kind::rows: as wide as the picture,
    /// and only the rows that are composed; it may be the very memory that they are written to.
    foundation::BitmapView picture;
};

/// Flattens background and masked picture into `result`, which has the picture's size and is written
/// in straight alpha: a soft edge keeps the picture's own colour, and where alpha is 0 colour is 0.
///
/// The mask is stretched over the picture bilinearly, pixel centres on pixel centres, edges repeated;
/// none means that all of the picture shows. With m the mask, p the picture and b the background, all
/// premultiplied and in 0..1:  out = p m + b (1 - alpha(p) m), rounded to 8 bits once, at the end.
///
/// The arithmetic is in whole numbers, so that every processor gives the same bytes: places in the mask
/// are rounded to 4096ths of a mask pixel, the mask there to 65536ths of a level, and the rest is exact
/// (ComposedPixel.h). A background picture of another size is first stretched to the picture's in the
/// same way as the mask, and rounded. Bands of rows run on `workers`.
void composeResult(foundation::BitmapView picture, const MaskSnapshot* mask, const Background& background,
                   foundation::MutableBitmapView result, foundation::Workers& workers);

/// The same pixels, but no more than some rows of them: `rows` is as wide as `picture`, which is whole, and
/// its first row is row `firstRow` of the result.
void composeRows(foundation::BitmapView picture, const MaskSnapshot* mask, const Background& background,
                 int firstRow, foundation::MutableBitmapView rows, foundation::Workers& workers);

}  // namespace trimora::cutengine::kernels
