#include <cstdlib>

#include "Targets.h"
#include "cutengine/kernels/MaskCodec.h"

namespace trimora::fuzz {
namespace {

constexpr int kMostPixelsASide = 512;

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
    if (!again || !foundation::samePixels(mask->view(), again->view()))
        std::abort();
    return 0;
}

}  // namespace trimora::fuzz
