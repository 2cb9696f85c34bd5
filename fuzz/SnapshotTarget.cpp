#include <vector>

#include "../tests/reliability/BadPictures.h"
#include "Demand.h"
#include "Targets.h"
#include "cutengine/kernels/MaskCodec.h"

namespace trimora::fuzz {
namespace {

constexpr int kMostPixelsASide = 512;

void read(const std::uint8_t* data, std::size_t size) {
    using namespace cutengine::kernels;
    const auto mask = decodeMask({data, size}, kMostPixelsASide);
    if (!mask) {
        demand(!mask.error().message.empty());
        return;
    }
    demand(mask->width() <= kMostPixelsASide && mask->height() <= kMostPixelsASide);
    const auto written = encodeMask(mask->view());
    demand(written.ok());
    const auto again = decodeMask(*written, kMostPixelsASide);
    demand(again && foundation::samePixels(mask->view(), again->view()));
}

}  // namespace

int readSnapshot(const std::uint8_t* data, std::size_t size) {
    read(data, size);
    // Hardly any change leads past the checksums.
    std::vector<std::uint8_t> right(data, data + size);
    if (reliability::putChecksumsRight(right))
        read(right.data(), right.size());
    return 0;
}

}  // namespace trimora::fuzz
