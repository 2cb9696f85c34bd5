#include "cutengine/kernels/PngRows.h"

#include <spng.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <memory>
#include <string>
#include <string_view>

namespace trimora::cutengine::kernels {

using foundation::Error;
using foundation::PixelBuffer;
using foundation::Result;

Result<PixelBuffer> readPngRows(const std::vector<PngChunk>& chunks, int width, int height) {
    std::vector<std::uint8_t> file(kPngSignature.begin(), kPngSignature.end());
    for (const PngChunk& chunk : chunks) {
        constexpr std::array<std::string_view, 5> kPicture = {"IHDR", "PLTE", "tRNS", "IDAT", "IEND"};
        if (std::find(kPicture.begin(), kPicture.end(), chunk.type) != kPicture.end())
            appendPngChunk(file, chunk);
    }
    constexpr std::size_t kBytesPerPixel = 4;
    const std::size_t size =
        kBytesPerPixel * static_cast<std::size_t>(width) * static_cast<std::size_t>(height);
    PixelBuffer rows = PixelBuffer::allocate(size);
    const std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)> context(spng_ctx_new(0), &spng_ctx_free);
    if (!rows || context == nullptr)
        return Error{"not enough memory to read the PNG file", ENOMEM};
    int failure = spng_set_png_buffer(context.get(), file.data(), file.size());
    if (failure == 0)
        failure = spng_decode_image(context.get(), rows.data(), size, SPNG_FMT_RGBA8, SPNG_DECODE_TRNS);
    if (failure != 0)
        return Error{std::string("the PNG file cannot be read: ") + spng_strerror(failure)};
    return rows;
}

}  // namespace trimora::cutengine::kernels
