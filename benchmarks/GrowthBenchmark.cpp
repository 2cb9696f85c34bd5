// What a pixel costs in pictures of 1 to 400 megapixels. growth_benchmark [MEGAPIXELS]: how far to go.
#include <algorithm>
#include <cmath>
#include <cstdint>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <functional>
#include <limits>
#include <optional>
#include <span>
#include <vector>

#include "PaintedMask.h"
#include "Photograph.h"
#include "codecs/PictureFileDecoder.h"
#include "codecs/PngEncoder.h"
#include "cutengine/kernels/DiscBlur.h"
#include "cutengine/kernels/ResultComposer.h"
#include "cutengine/kernels/ViewRenderer.h"
#include "foundation/ThreadQueues.h"

namespace {

using namespace trimora;
namespace kernels = cutengine::kernels;
using foundation::Bitmap;

constexpr int kRounds = 3;
constexpr int kLargestMask = 2000;

/// Milliseconds of processor time, the least of some rounds.
double costOf(const std::function<void()>& job) {
    double least = std::numeric_limits<double>::max();
    for (int round = 0; round < kRounds; ++round) {
        const std::clock_t start = std::clock();
        job();
        least = std::min(least, 1000.0 * static_cast<double>(std::clock() - start) / CLOCKS_PER_SEC);
    }
    return least;
}

void tell(const char* job, double milliseconds, double pixels) {
    std::printf("  %-34s %10.2f ms  %8.3f ns a pixel\n", job, milliseconds, milliseconds * 1e6 / pixels);
    std::fflush(stdout);
}

void measure(int megapixels) {
    const int width = static_cast<int>(std::lround(std::sqrt(megapixels * 1.5e6)));
    const int height = width * 2 / 3;
    const double pixels = static_cast<double>(width) * height;
    std::printf("%d MP, %d x %d\n", megapixels, width, height);
    foundation::InlineWorkers one;
    const Bitmap picture = benchmarks::photograph(width, height);
    const int maskWidth = std::min(width, kLargestMask);
    const Bitmap plane = benchmarks::paintedMask(maskWidth, maskWidth * 2 / 3, 12);
    kernels::MaskSnapshotter snapshotter;
    const auto mask = snapshotter.take(plane.view(), plane.view().bounds());

    std::optional<kernels::MipPyramid> levels;
    tell("smaller copies", costOf([&] { levels = kernels::MipPyramid::build(picture.view(), one); }), pixels);

    Bitmap target = Bitmap::create(1600, 1000).value();
    kernels::ViewScene scene;
    scene.picture = &*levels;
    scene.pictureSize = {static_cast<double>(width), static_cast<double>(height)};
    scene.mask = mask.get();
    const double zoom = 1500.0 / width;
    scene.pictureToView = {zoom, 0, 0, zoom, 50, 0};
    tell("whole frame, of pixels on screen",
         costOf([&] { kernels::renderView(scene, target.view(), target.view().bounds(), one); }), 1.6e6);
    tell("repaint of 256 x 256 after a stamp", costOf([&] {
             const auto shown = snapshotter.take(plane.view(), {900, 500, 30, 30});
             scene.mask = shown.get();
             kernels::renderView(scene, target.view(), {700, 400, 256, 256}, one);
         }),
         256 * 256);
    levels.reset();

    {
        Bitmap result = Bitmap::create(width, height, foundation::AlphaMode::straight).value();
        tell("compose over nothing",
             costOf([&] { kernels::composeResult(picture.view(), mask.get(), {}, result.view(), one); }),
             pixels);
        std::vector<std::uint8_t> file;
        tell("save a cut-out PNG", costOf([&] {
                 file.clear();
                 (void)codecs::PngEncoder(one).encodePng(
                     result.view(), [&](std::span<const std::uint8_t> bytes) {
                         file.insert(file.end(), bytes.begin(), bytes.end());
                         return foundation::Result<void>();
                     });
             }),
             pixels);
        codecs::PictureFileDecoder decoder(one);
        tell("open it", costOf([&] { (void)decoder.decodeBytes(file); }), pixels);
    }
    Bitmap blurred = Bitmap::create(width, height, picture.alphaMode()).value();
    const double radius = (width + height) / 200.0;
    tell("blur, radius (width + height) / 200",
         costOf([&] { kernels::discBlur(picture.view(), blurred.view(), radius, one); }), pixels);
    foundation::PixelBuffer::trimStock();
}

}  // namespace

int main(int argc, char** argv) {
    const int most = argc > 1 ? std::atoi(argv[1]) : 400;
    for (const int megapixels : {1, 6, 24, 100, 400}) {
        if (megapixels <= most)
            measure(megapixels);
    }
    return 0;
}
