#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "cutengine/kernels/PngChunks.h"
#include "foundation/PixelBuffer.h"
#include "foundation/Result.h"

namespace trimora::cutengine::kernels {

/// The rows of a PNG of any kind, width x height as its header says, as R, G, B, A, 8 bits each, straight,
/// without gaps. Only the chunks that make the picture are handed to the library: nothing else in the file
/// can cost time or memory. Memory that runs out is the error ENOMEM.
[[nodiscard]] foundation::Result<foundation::PixelBuffer> readPngRows(const std::vector<PngChunk>& chunks,
                                                                      int width, int height);

}  // namespace trimora::cutengine::kernels
