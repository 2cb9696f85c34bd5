#include "codecs/PixelBudget.h"

#include <fstream>
#include <string>

#include "foundation/Bitmap.h"

namespace trimora::codecs {
namespace {

using foundation::Bitmap;
using foundation::Error;

constexpr std::uint64_t kBytesPerPixel = 16;
constexpr std::uint64_t kAssumedFreeKibibytes = 4 << 20;  // where the system does not say
constexpr std::uint64_t kMillion = 1'000'000;

std::uint64_t freeKibibytes() {
    std::ifstream file("/proc/meminfo");
    std::string label;
    std::uint64_t kibibytes = 0;
    std::string unit;
    while (file >> label >> kibibytes && std::getline(file, unit)) {
        if (label == "MemAvailable:")
            return kibibytes;
    }
    return kAssumedFreeKibibytes;
}

}  // namespace

PixelBudget PixelBudget::fromFreeMemory() {
    return PixelBudget(freeKibibytes() * 1024 / 4 * 3 / kBytesPerPixel);
}

std::optional<Error> PixelBudget::refusal(std::uint64_t width, std::uint64_t height) const {
    if (width == 0 || height == 0)
        return Error{"the picture has no pixels"};
    if (width > Bitmap::kMaxSide || height > Bitmap::kMaxSide)
        return Error{"the picture is " + std::to_string(width) + " x " + std::to_string(height) +
                     " pixels, and a side may be at most " + std::to_string(Bitmap::kMaxSide)};
    return refusal(width * height);
}

std::optional<Error> PixelBudget::refusal(std::uint64_t pixels) const {
    if (pixels <= pixels_)
        return std::nullopt;
    return Error{"the picture has " + std::to_string((pixels + kMillion - 1) / kMillion) +
                 " megapixels, and the free memory is enough for " + std::to_string(pixels_ / kMillion)};
}

}  // namespace trimora::codecs
