#pragma once

#include "cutengine/kernels/PixelDeflate.h"

namespace trimora::codecs {

/// Whether a search for earlier bytes makes filtered rows so much smaller that it is worth its time, which is
/// twenty times that of packPixels(): drawings, text, patterns. Some thousand pixels of a picture tell it for
/// the rows around them. False where a library is refused memory; may throw std::bad_alloc. Any thread.
[[nodiscard]] bool repeats(const cutengine::kernels::FilteredRows& rows);

}  // namespace trimora::codecs
