#pragma once

#include <cstddef>

#include "cutengine/kernels/PixelDeflate.h"

namespace trimora::codecs {

/// How many bytes of filtered rows are looked at.
inline constexpr std::size_t kRepeatSampleBytes = std::size_t{1} << 14;

/// Whether a search for earlier bytes makes filtered rows so much smaller that it is worth its time, which is
/// twenty times that of packPixels(): drawings, text, patterns. Told from the first rows, and of rows too
/// long for that from pieces all along the first: the margins of a cut-out are clear, and tell nothing of the
/// rest. False where memory is refused by the libraries; may throw std::bad_alloc. Any thread.
[[nodiscard]] bool repeats(const cutengine::kernels::FilteredRows& rows);

}  // namespace trimora::codecs
