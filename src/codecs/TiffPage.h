#pragma once

#include "codecs/RawPicture.h"
#include "codecs/TiffFile.h"
#include "foundation/Queues.h"
#include "foundation/Result.h"

namespace trimora::codecs {

/// Decodes the current page of the file, whose size has been admitted, and finishes it: upright, sRGB,
/// premultiplied or opaque.
///
/// Pages of whole samples of 8 or 16 bits (grey, RGB, CMYK; strips or tiles) are read as they are and
/// converted at full precision; all other kinds (palettes, 1 to 4 bits, YCbCr, Lab, separate planes) go
/// through libtiff's own conversion to 8 bits.
///
/// `whole` becomes false where rows at the end could not be read; they are transparent. Where no row can
/// be read, returns an error.
[[nodiscard]] foundation::Result<foundation::Bitmap> decodeTiffPage(const TiffFile& file, bool& whole,
                                                                    foundation::Workers& workers);

}  // namespace trimora::codecs
