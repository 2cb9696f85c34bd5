#include "codecs/JpegParts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <cstdint>
#include <functional>

#include "codecs/JpegDecoder.h"
#include "codecs/SampleFilesForTests.h"
#include "foundation/ThreadQueues.h"
#include "testing/Depth.h"
#include "testing/Seed.h"

namespace trimora::codecs {
namespace {

using foundation::AlphaMode;
using foundation::Bitmap;

/// One part after the other, the lowest first: every part gets a share.
class LowestFirst final : public foundation::Workers {
 public:
    explicit LowestFirst(int width) : width_(width) {}
    [[nodiscard]] int width() const override { return width_; }
    void run(int count, const std::function<void(int)>& part) override {
        for (int i = count - 1; i >= 0; --i)
            part(i);
    }

 private:
    int width_;
};

/// Colours that change from pixel to pixel, so that a row from a wrong place is seen.
Bitmap grainy(int width, int height, std::mt19937_64& random) {
    Bitmap made = Bitmap::create(width, height, AlphaMode::opaque).value();
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto noise = static_cast<std::uint32_t>(random());
            const auto at = [noise](int shift, int base) {
                return static_cast<std::uint8_t>(base + ((noise >> shift) & 63));
            };
            made.setPixel(x, y, {at(0, x % 180), at(8, y % 180), at(16, (x + y) % 180), 255});
        }
    }
    return made;
}

struct Decoded {
    bool isWhole = false;
    Bitmap pixels;
};

Bitmap blank(const JpegReading& header) {
    Bitmap made = Bitmap::create(static_cast<int>(header.width()), static_cast<int>(header.height())).value();
    made.fill({1, 2, 3, 4});
    return made;
}

Decoded byOneReading(const samples::Buffer& file) {
    JpegReading reading(file);
    Decoded decoded;
    if (!reading.readHeader())
        return decoded;
    decoded.pixels = blank(reading);
    decoded.isWhole = reading.start() && reading.readRows(decoded.pixels.view(), decoded.pixels.height());
    return decoded;
}

Decoded inParts(const samples::Buffer& file, foundation::Workers& workers) {
    JpegReading header(file);
    Decoded decoded;
    if (!header.readHeader())
        return decoded;
    decoded.pixels = blank(header);
    decoded.isWhole = readJpegInParts(header, file, decoded.pixels.view(), workers);
    return decoded;
}

struct Kind {
    const char* name;
    samples::JpegOptions options;
};

std::vector<Kind> kinds() {
    std::vector<Kind> kinds = {{"4:4:4", {}}, {"grey", {}}, {"inks", {}}, {"4:2:0 with marks", {}}};
    kinds[1].options.grey = true;
    kinds[2].options.cmyk = true;
    kinds[3].options.across = kinds[3].options.down = 2;
    kinds[3].options.restartRows = 1;
    for (const auto& [name, across, down] :
         {std::tuple{"4:2:2", 2, 1}, {"4:2:0", 2, 2}, {"4:4:0", 1, 2}, {"4:1:1", 4, 1}, {"1:4", 1, 4}}) {
        Kind kind{name, {}};
        kind.options.across = across;
        kind.options.down = down;
        kinds.push_back(kind);
    }
    for (Kind& kind : kinds)
        kind.options.quality = 90;
    return kinds;
}

void expectSame(const samples::Buffer& file, foundation::Workers& workers, const std::string& what) {
    const Decoded one = byOneReading(file);
    const Decoded parts = inParts(file, workers);
    EXPECT_TRUE(one.isWhole) << what;
    EXPECT_TRUE(parts.isWhole) << what;
    EXPECT_TRUE(samePixels(one.pixels.view(), parts.pixels.view())) << what;
}

TEST(JpegParts, GiveTheBytesOfOneReadingForEverySamplingAndSize) {
    std::mt19937_64 random = testing::seededGenerator();
    for (const Kind& kind : kinds()) {
        for (int round = 0; round < testing::byDepth(6, 100, 500); ++round) {
            const int width = 1 + static_cast<int>(random() % 250);
            const int height = 1 + static_cast<int>(random() % 300);
            const samples::Buffer file = samples::jpeg(grainy(width, height, random).view(), kind.options);
            for (int parts = 2; parts <= 5; ++parts) {
                LowestFirst workers(parts);
                expectSame(file, workers,
                           std::string(kind.name) + " " + std::to_string(width) + " x " +
                               std::to_string(height) + " in " + std::to_string(parts));
            }
        }
    }
}

TEST(JpegParts, GiveTheBytesOfOneReadingOnThreads) {
    std::mt19937_64 random = testing::seededGenerator();
    foundation::ThreadWorkers threads(4);
    samples::JpegOptions options;
    options.across = options.down = 2;
    const samples::Buffer file = samples::jpeg(grainy(333, 1501, random).view(), options);
    for (int round = 0; round < testing::byDepth(4, 100, 500); ++round)
        expectSame(file, threads, "round " + std::to_string(round));
}

TEST(JpegParts, LeaveProgressiveFilesAndOneCoreToOneReading) {
    const Bitmap picture = samples::quarters(64, 300);
    LowestFirst three(3);
    samples::JpegOptions progressive;
    progressive.progressive = true;
    EXPECT_FALSE(inParts(samples::jpeg(picture.view(), progressive), three).isWhole);
    foundation::InlineWorkers one;
    EXPECT_FALSE(inParts(samples::jpeg(picture.view()), one).isWhole);
}

/// What each of two decoders makes of a file: the same picture with the same remark, or the same refusal.
void expectSameAnswer(const JpegDecoder& a, const JpegDecoder& b, const samples::Buffer& file, int round) {
    const auto first = a.decode(file);
    const auto second = b.decode(file);
    ASSERT_EQ(static_cast<bool>(first), static_cast<bool>(second)) << round;
    if (!first) {
        EXPECT_EQ(first.error().message, second.error().message) << round;
        return;
    }
    EXPECT_EQ(first->notice, second->notice) << round;
    EXPECT_TRUE(samePixels(first->representations[0].view(), second->representations[0].view())) << round;
}

TEST(JpegParts, DamageAndMissingEndsGetTheAnswerOfOneReading) {
    std::mt19937_64 random = testing::seededGenerator();
    LowestFirst three(3);
    foundation::InlineWorkers one;
    const PixelBudget budget(10'000'000);
    const JpegDecoder alone(budget, one);
    const JpegDecoder shared(budget, three);
    for (const int down : {1, 2}) {
        samples::JpegOptions options;
        options.quality = 85;
        options.across = 2;
        options.down = down;
        const samples::Buffer whole = samples::jpeg(grainy(1000, 1003, random).view(), options);
        expectSameAnswer(alone, shared, whole, -1);
        for (int round = 0; round < testing::byDepth(6, 60, 300); ++round) {
            samples::Buffer file = whole;
            if (round % 2 == 0)
                file.resize(random() % file.size());
            else
                std::generate_n(file.begin() + static_cast<std::ptrdiff_t>(random() % (file.size() - 4)), 4,
                                [&] { return static_cast<std::uint8_t>(random()); });
            expectSameAnswer(alone, shared, file, round);
        }
    }
}

}  // namespace
}  // namespace trimora::codecs
