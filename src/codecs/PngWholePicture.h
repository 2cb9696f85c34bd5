#pragma once

#include <optional>

#include "codecs/PngChunks.h"
#include "foundation/Bitmap.h"

namespace trimora::codecs {

/// The picture of a PNG file of the commonest kind, taken in one piece: 8 bits a sample, with colour, not
/// interlaced. In no more memory than the picture's own and the file's. Straight or opaque.
///
/// None for every other kind, where anything at all is wrong with the data, and where memory is refused:
/// such files are to be read row by row, which can tell how much of them is good.
[[nodiscard]] std::optional<foundation::Bitmap> readWholePicture(const PngChunks& chunks);

}  // namespace trimora::codecs
