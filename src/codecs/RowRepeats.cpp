#include "codecs/RowRepeats.h"

#include <libdeflate.h>

#include <cstdint>
#include <memory>
#include <vector>

namespace trimora::codecs {

namespace kernels = cutengine::kernels;

bool repeats(const kernels::FilteredRows& rows) {
    const kernels::PackedBytes plain = kernels::packPixels(rows);
    const std::unique_ptr<libdeflate_compressor, void (*)(libdeflate_compressor*)> compressor(
        libdeflate_alloc_compressor(1), libdeflate_free_compressor);
    if (!plain.buffer || !compressor)
        return false;
    const std::size_t worthwhile = plain.size - plain.size / 8;
    std::vector<std::uint8_t> searched(worthwhile);
    const std::size_t size = libdeflate_deflate_compress(compressor.get(), rows.bytes.data(),
                                                         rows.bytes.size(), searched.data(), searched.size());
    return size > 0;  // 0: it does not fit
}

}  // namespace trimora::codecs
