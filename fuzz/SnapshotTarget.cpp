#include <cstdlib>
#include <cstring>

#include "Targets.h"
#include "cutengine/kernels/MaskCodec.h"

namespace trimora::fuzz {
namespace {

using foundation::BitmapView;

constexpr int kMostPixelsASide = 512;

bool areEqual(BitmapView one, BitmapView other) {
    if (one.width != other.width || one.height != other.height)
        return false;
    for (int y = 0; y < one.height; ++y) {
        if (std::memcmp(one.row(y), other.row(y), static_cast<std::size_t>(one.width) * 4) != 0)
            return false;
    }
    return true;
}

}  // namespace

int readSnapshot(const std::uint8_t* data, std::size_t size) {
    using namespace cutengine::kernels;
    const auto mask = decodeMask({data, size}, kMostPixelsASide);
    if (!mask) {
        if (mask.error().message.empty())
            std::abort();
        return 0;
    }
    if (mask->width() > kMostPixelsASide || mask->height() > kMostPixelsASide)
        std::abort();
    const auto written = encodeMask(mask->view());
    if (!written)
        std::abort();
    const auto again = decodeMask(*written, kMostPixelsASide);
    if (!again || !areEqual(mask->view(), again->view()))
        std::abort();
    return 0;
}

}  // namespace trimora::fuzz
