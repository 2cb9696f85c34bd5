#include "codecs/JpegParts.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <array>
#include <cstdint>

#include "codecs/JpegDecoder.h"
#include "codecs/SampleFilesForTests.h"
#include "cutengine/kernels/MipBands.h"
#include "foundation/ThreadQueues.h"
#include "testing/Depth.h"
#include "testing/LowestFirst.h"
#include "testing/Seed.h"

namespace trimora::codecs {
namespace {

using cutengine::kernels::MipBands;
using cutengine::kernels::MipPyramid;
using foundation::AlphaMode;
using foundation::Bitmap;
using testing::LowestFirst;

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
    MipPyramid copies;
};

/// Whether they are the smaller copies that are made of a finished picture.
bool areCopiesOf(const Bitmap& picture, const MipPyramid& copies) {
    foundation::InlineWorkers here;
    const MipPyramid plain = MipPyramid::build(picture.view(), here);
    bool same = copies.levelCount() == plain.levelCount();
    for (int level = 0; same && level < plain.levelCount(); ++level)
        same = samePixels(copies.level(level), plain.level(level));
    return same;
}

Bitmap blank(const JpegReading& header) {
    Bitmap made = Bitmap::create(static_cast<int>(header.width()), static_cast<int>(header.height())).value();
    made.fill({1, 2, 3, 4});
    return made;
}

/// As damage to its header may make a picture.
bool isHuge(const JpegReading& header) {
    return header.width() * header.height() > 4'000'000;
}

Decoded byOneReading(const samples::Buffer& file) {
    JpegReading reading(file);
    Decoded decoded;
    if (!reading.readHeader() || isHuge(reading))
        return decoded;
    decoded.pixels = blank(reading);
    decoded.isWhole = reading.start() && reading.readRows(decoded.pixels.view(), 0, decoded.pixels.height());
    return decoded;
}

Decoded inParts(const samples::Buffer& file, foundation::Workers& workers) {
    JpegReading header(file);
    Decoded decoded;
    if (!header.readHeader() || isHuge(header))
        return decoded;
    decoded.pixels = blank(header);
    MipBands copies(decoded.pixels.view());
    decoded.isWhole = readJpegInParts(header, file, {decoded.pixels.view(), &copies}, workers);
    decoded.copies = std::move(copies).finished(workers);
    return decoded;
}

struct Kind {
    const char* name;
    samples::JpegOptions options;
};

std::vector<Kind> kinds() {
    std::vector<Kind> kinds = {
        {"4:4:4", {}}, {"grey", {}}, {"inks", {}}, {"4:2:0 with marks", {}}, {"codes of its own", {}}};
    kinds[1].options.grey = true;
    kinds[2].options.cmyk = true;
    kinds[3].options.across = kinds[3].options.down = 2;
    kinds[3].options.restartRows = 1;
    kinds[4].options.ownCodes = true;
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
    EXPECT_TRUE(areCopiesOf(one.pixels, parts.copies)) << what;
}

TEST(JpegParts, GiveTheBytesOfOneReadingForEverySamplingAndSize) {
    std::mt19937_64 random = testing::seededGenerator();
    for (const Kind& kind : kinds()) {
        for (int round = 0; round < testing::byDepth(6, 100, 500); ++round) {
            const int width = 1 + static_cast<int>(random() % 250);
            const int height = 1 + static_cast<int>(random() % 300);
            const Bitmap picture =
                round % 3 == 0 ? samples::quarters(width, height) : grainy(width, height, random);
            const samples::Buffer file = samples::jpeg(picture.view(), kind.options);
            for (int parts = 2; parts <= 5; ++parts) {
                LowestFirst workers(parts);
                expectSame(file, workers,
                           std::string(kind.name) + " " + std::to_string(width) + " x " +
                               std::to_string(height) + " in " + std::to_string(parts));
            }
        }
    }
}

TEST(JpegParts, LowerPartReadsTheLowerHalfByItselfOfEveryKind) {
    std::mt19937_64 random = testing::seededGenerator();
    const Bitmap picture = grainy(400, 400, random);
    for (const Kind& kind : kinds()) {
        const samples::Buffer file = samples::jpeg(picture.view(), kind.options);
        const Bitmap whole = byOneReading(file).pixels;
        JpegReading header(file);
        ASSERT_TRUE(header.readHeader());
        Bitmap read = blank(header);
        LowestFirst two(2, [&] {
            const foundation::IntRect lower{0, 240, 400, 160};
            EXPECT_TRUE(samePixels(subview(read.view(), lower), subview(whole.view(), lower))) << kind.name;
            EXPECT_EQ(read.pixel(0, 100), (foundation::Pixel{1, 2, 3, 4})) << kind.name;
        });
        EXPECT_TRUE(readJpegInParts(header, file, {read.view(), nullptr}, two)) << kind.name;
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

TEST(JpegParts, CodesThatNoFileCanHaveAreNotLookedFor) {
    const samples::Buffer sound = samples::jpeg(samples::quarters(64, 300).view());
    constexpr std::array<std::uint8_t, 2> kStartOfScan = {0xFF, 0xDA};
    const auto scan = std::search(sound.begin(), sound.end(), kStartOfScan.begin(), kStartOfScan.end());
    ASSERT_NE(scan, sound.end());
    for (const int number : {4, 9, 15}) {
        samples::Buffer file = sound;
        file[static_cast<std::size_t>(scan - sound.begin()) + 6] = static_cast<std::uint8_t>(number << 4);
        LowestFirst three(3);
        EXPECT_FALSE(inParts(file, three).isWhole) << number;
        EXPECT_FALSE(byOneReading(file).isWhole) << number;
    }
}

/// The file without its end, or with other bytes somewhere.
samples::Buffer damaged(samples::Buffer file, std::mt19937_64& random) {
    if (random() % 2 == 0)
        file.resize(random() % file.size());
    else
        std::generate_n(file.begin() + static_cast<std::ptrdiff_t>(random() % (file.size() - 4)), 4,
                        [&] { return static_cast<std::uint8_t>(random()); });
    return file;
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
    for (const auto* const picture : {&*first, &*second}) {
        const bool isRight =
            picture->copies.levelCount() == 0 || areCopiesOf(picture->representations[0], picture->copies);
        EXPECT_TRUE(isRight) << round;
    }
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
        for (int round = 0; round < testing::byDepth(3, 60, 300); ++round) {
            expectSameAnswer(alone, shared, damaged(whole, random), round);
        }
    }
}

TEST(JpegParts, FileThatEndsAnywhereGetsTheAnswerOfOneReading) {
    std::mt19937_64 random = testing::seededGenerator();
    const samples::Buffer whole = samples::jpeg(grainy(24, 160, random).view());
    const std::size_t step = testing::kSanitized ? 7 : 1;
    for (std::size_t size = random() % step; size < whole.size(); size += step) {
        const samples::Buffer file(whole.begin(), whole.begin() + static_cast<std::ptrdiff_t>(size));
        LowestFirst three(3);
        EXPECT_FALSE(inParts(file, three).isWhole && !byOneReading(file).isWhole) << size << " bytes";
    }
}

TEST(JpegParts, FileWithoutItsEndMarkIsLeftToOneReading) {
    std::mt19937_64 random = testing::seededGenerator();
    for (int round = 0; round < 100; ++round) {
        samples::Buffer file = samples::jpeg(grainy(24, 160, random).view());
        file.resize(file.size() - 2);
        LowestFirst three(3);
        EXPECT_FALSE(inParts(file, three).isWhole) << "round " << round;
    }
}

TEST(JpegParts, ThatFindNothingWrongInADamagedFileGiveTheBytesOfOneReading) {
    std::mt19937_64 random = testing::seededGenerator();
    int found = 0;
    for (const Kind& kind : kinds()) {
        const samples::Buffer whole = samples::jpeg(grainy(150, 200, random).view(), kind.options);
        for (int round = 0; round < testing::byDepth(20, 1000, 5000); ++round) {
            const samples::Buffer file = damaged(whole, random);
            LowestFirst three(3);
            const Decoded parts = inParts(file, three);
            found += parts.isWhole ? 0 : 1;
            if (!parts.isWhole)
                continue;
            EXPECT_TRUE(samePixels(parts.pixels.view(), byOneReading(file).pixels.view()))
                << kind.name << ", round " << round;
        }
    }
    EXPECT_GT(found, 0);
}

}  // namespace
}  // namespace trimora::codecs
