#include "cutengine/kernels/MaskCodec.h"

#include <gtest/gtest.h>
#include <png.h>

#include <algorithm>
#include <cmath>
#include <cstring>
#include <random>
#include <string_view>

#include "cutengine/kernels/PngChunks.h"
#include "cutengine/kernels/StrokePainter.h"
#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::Bitmap;
using foundation::Pixel;
using foundation::Rect;
using Bytes = std::vector<std::uint8_t>;

Bitmap filledPlane(int width, int height, Pixel fill = {0, 0, 0, 255}) {
    return std::move(Bitmap::createFilled(width, height, fill)).value();
}

Bitmap paintedPlane(int width, int height, int strokes, std::mt19937_64& random) {
    Bitmap plane = filledPlane(width, height);
    std::uniform_real_distribution<double> unit(0, 1);
    for (int k = 0; k < strokes; ++k) {
        const double d = 1 + unit(random) * std::min(width, height);
        const double x = unit(random) * width;
        const double y = unit(random) * height;
        const BrushStamp soft(200, static_cast<float>(unit(random)));
        std::vector<Rect> stamps;
        for (int i = 0; i < 20; ++i)
            stamps.push_back({x + i * d / 20 - d / 2, y + i * d / 40 - d / 2, d, d});
        const auto alpha = static_cast<std::uint8_t>(k % 2 == 0 ? 0 : 255 * unit(random));
        paintStamps(plane.view(), stamps, {Pixel{0, 0, 0, alpha}, k % 3 == 0 ? &soft : nullptr});
    }
    return plane;
}

Bitmap noisePlane(int width, int height, bool coloured, std::mt19937_64& random) {
    Bitmap plane = filledPlane(width, height);
    for (int y = 0; y < height; ++y) {
        for (int x = 0; x < width; ++x) {
            const auto alpha = static_cast<std::uint8_t>(random());
            const auto colour = [&] {
                return static_cast<std::uint8_t>(coloured ? random() % (alpha + 1U) : 0);
            };
            plane.setPixel(x, y, {colour(), colour(), colour(), alpha});
        }
    }
    return plane;
}

Bytes encoded(const Bitmap& plane) {
    return std::move(encodeMask(plane.view())).value();
}

void expectRoundTrip(const Bitmap& plane) {
    const auto back = decodeMask(encoded(plane), 4096);
    ASSERT_TRUE(back.ok()) << back.error().message;
    EXPECT_TRUE(samePixels(plane.view(), back->view())) << plane.width() << " x " << plane.height();
}

// Straight R, G, B, A through libpng's simplified reader; empty where it refuses.
Bytes readByLibpng(const Bytes& file) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    if (png_image_begin_read_from_memory(&image, file.data(), file.size()) == 0)
        return {};
    image.format = PNG_FORMAT_RGBA;
    Bytes pixels(PNG_IMAGE_SIZE(image));
    return png_image_finish_read(&image, nullptr, pixels.data(), 0, nullptr) != 0 ? pixels : Bytes{};
}

Bytes writtenByLibpng(int format, int width, int height, const void* pixels, const void* colours = nullptr,
                      int colourCount = 0) {
    png_image image{};
    image.version = PNG_IMAGE_VERSION;
    image.format = static_cast<png_uint_32>(format);
    image.width = static_cast<png_uint_32>(width);
    image.height = static_cast<png_uint_32>(height);
    image.colormap_entries = static_cast<png_uint_32>(colourCount);
    png_alloc_size_t size = 0;
    png_image_write_to_memory(&image, nullptr, &size, 0, pixels, 0, colours);
    Bytes file(size);
    png_image_write_to_memory(&image, file.data(), &size, 0, pixels, 0, colours);
    return file;
}

TEST(MaskCodec, givesAPaintedMaskBackExactly) {
    auto random = testing::seededGenerator();
    for (const auto& [width, height] :
         {std::pair{1, 1}, {2, 3}, {7, 1}, {1, 9}, {64, 64}, {501, 333}, {2000, 17}}) {
        expectRoundTrip(filledPlane(width, height));
        expectRoundTrip(filledPlane(width, height, {}));
        expectRoundTrip(paintedPlane(width, height, 6, random));
    }
}

TEST(MaskCodec, givesAnyBlackMaskBackExactly) {
    auto random = testing::seededGenerator();
    expectRoundTrip(noisePlane(300, 200, false, random));
    expectRoundTrip(noisePlane(3, 700, false, random));
}

TEST(MaskCodec, givesRunsOfEveryLengthBackExactly) {
    Bitmap plane = filledPlane(700, 300);
    for (int y = 0; y < 300; ++y)
        plane.setPixel((y * y) % 700, y, {0, 0, 0, static_cast<std::uint8_t>(y)});
    for (int x = 0; x < 700; ++x) {
        if (x % 3 != 0)
            plane.setPixel(x, 150, {0, 0, 0, 77});
    }
    expectRoundTrip(plane);
}

TEST(MaskCodec, givesOpaqueColoursBackExactlyAndOthersToTheNearest) {
    auto random = testing::seededGenerator();
    Bitmap plane = noisePlane(120, 90, true, random);
    for (int x = 0; x < 120; ++x)
        plane.setPixel(x, 3, {static_cast<std::uint8_t>(x), 20, 200, 255});
    const auto back = decodeMask(encoded(plane), 200);
    ASSERT_TRUE(back.ok());
    for (int y = 0; y < 90; ++y) {
        for (int x = 0; x < 120; ++x) {
            const Pixel was = plane.pixel(x, y);
            const Pixel is = back->pixel(x, y);
            ASSERT_EQ(was.alpha, is.alpha);
            ASSERT_EQ(was, is)
                << "a premultiplied component has one nearest straight value, which leads back";
        }
    }
}

TEST(MaskCodec, writesFilesThatLibpngReadsAsStraightPixels) {
    auto random = testing::seededGenerator();
    const Bitmap plane = paintedPlane(200, 100, 5, random);
    const Bytes pixels = readByLibpng(encoded(plane));
    ASSERT_EQ(pixels.size(), std::size_t{200 * 100 * 4});
    for (std::size_t i = 0; i < 200 * 100; ++i) {
        const Pixel expected = plane.pixel(static_cast<int>(i % 200), static_cast<int>(i / 200));
        ASSERT_EQ(pixels[4 * i], 0);
        ASSERT_EQ(pixels[4 * i + 3], expected.alpha) << i;
    }
}

TEST(MaskCodec, keepsTheStraightColourOfASoftPixel) {
    const Bytes pixels = readByLibpng(encoded(filledPlane(1, 1, {10, 50, 100, 100})));
    EXPECT_EQ(pixels, (Bytes{255, 128, 26, 100}));
}

// Ten strokes with the brush as it is used: hard, mostly cutting, now and then restoring.
Bitmap tenStrokes(int side, std::mt19937_64& random) {
    std::uniform_real_distribution<double> unit(0, 1);
    Bitmap plane = filledPlane(side, side);
    for (int k = 0; k < 10; ++k) {
        const double d = 10 + 60 * unit(random);
        const double heading = 6.28 * unit(random);
        const double x = unit(random) * side;
        const double y = unit(random) * side;
        std::vector<Rect> stamps;
        for (double done = 0; done < side; done += d / 66)
            stamps.push_back(
                {x + done * std::cos(heading) - d / 2, y + done * std::sin(heading) - d / 2, d, d});
        paintStamps(plane.view(), stamps, {Pixel{0, 0, 0, static_cast<std::uint8_t>(k % 4 == 3 ? 255 : 0)}});
    }
    return plane;
}

TEST(MaskCodec, needsNoMoreBytesThanLibpngAtItsDefault) {
    auto random = testing::seededGenerator();
    const Bytes ours = encoded(tenStrokes(1000, random));
    const Bytes pixels = readByLibpng(ours);
    EXPECT_LE(ours.size(), writtenByLibpng(PNG_FORMAT_RGBA, 1000, 1000, pixels.data()).size());
}

TEST(MaskCodec, readsFilesOfOtherProgramsOfEveryKind) {
    const std::array<std::uint8_t, 8> grey = {0, 50, 200, 255, 9, 8, 7, 6};
    const auto fromGrey = decodeMask(writtenByLibpng(PNG_FORMAT_GRAY, 4, 2, grey.data()), 10);
    ASSERT_TRUE(fromGrey.ok());
    EXPECT_EQ(fromGrey->pixel(1, 0), (Pixel{50, 50, 50, 255}));

    const std::array<std::uint8_t, 8> rgba = {255, 0, 0, 51, 1, 2, 3, 0};
    const auto fromRgba = decodeMask(writtenByLibpng(PNG_FORMAT_RGBA, 2, 1, rgba.data()), 10);
    ASSERT_TRUE(fromRgba.ok());
    EXPECT_EQ(fromRgba->pixel(0, 0), (Pixel{0, 0, 51, 51}));
    EXPECT_EQ(fromRgba->pixel(1, 0), (Pixel{0, 0, 0, 0}));

    const std::array<std::uint8_t, 8> colours = {0, 0, 0, 255, 0, 0, 0, 90};
    const std::array<std::uint8_t, 3> indices = {1, 0, 1};
    const auto fromPalette =
        decodeMask(writtenByLibpng(PNG_FORMAT_RGBA_COLORMAP, 3, 1, indices.data(), colours.data(), 2), 10);
    ASSERT_TRUE(fromPalette.ok());
    EXPECT_EQ(fromPalette->pixel(0, 0), (Pixel{0, 0, 0, 90}));
    EXPECT_EQ(fromPalette->pixel(1, 0), (Pixel{0, 0, 0, 255}));

    const std::array<std::uint16_t, 4> deep = {65535, 0, 0, 65535};
    const auto fromDeep = decodeMask(writtenByLibpng(PNG_FORMAT_LINEAR_RGB_ALPHA, 1, 1, deep.data()), 10);
    ASSERT_TRUE(fromDeep.ok());
    EXPECT_EQ(fromDeep->pixel(0, 0), (Pixel{0, 0, 255, 255}));
}

TEST(MaskCodec, readsFilesCutIntoManyDataChunks) {
    auto random = testing::seededGenerator();
    const Bitmap plane = paintedPlane(60, 40, 4, random);
    const Bytes whole = encoded(plane);
    Bytes pieces(kPngSignature.begin(), kPngSignature.end());
    const auto chunks = readPngChunks(whole);
    for (const PngChunk& chunk : chunks.value()) {
        if (chunk.type != "IDAT") {
            appendPngChunk(pieces, chunk);
            continue;
        }
        for (std::size_t i = 0; i < chunk.data.size(); i += 7)
            appendPngChunk(pieces,
                           {"IDAT", chunk.data.subspan(i, std::min<std::size_t>(7, chunk.data.size() - i))});
    }
    const auto back = decodeMask(pieces, 100);
    ASSERT_TRUE(back.ok());
    EXPECT_TRUE(samePixels(plane.view(), back->view()));
}

TEST(MaskCodec, neverShowsAWrongMaskWhenABitIsFlipped) {
    auto random = testing::seededGenerator();
    const Bitmap plane = paintedPlane(23, 17, 3, random);
    const Bytes good = encoded(plane);
    for (std::size_t bit = 0; bit < good.size() * 8; ++bit) {
        Bytes damaged = good;
        damaged[bit / 8] = static_cast<std::uint8_t>(damaged[bit / 8] ^ 1U << bit % 8);
        const auto back = decodeMask(damaged, 100);
        ASSERT_TRUE(!back.ok() || samePixels(plane.view(), back->view())) << "bit " << bit;
    }
}

TEST(MaskCodec, refusesAFileCutShortAnywhere) {
    auto random = testing::seededGenerator();
    const Bytes good = encoded(paintedPlane(23, 17, 3, random));
    for (std::size_t size = 0; size < good.size(); ++size)
        ASSERT_FALSE(decodeMask(std::span(good).first(size), 100).ok()) << size;
}

// Puts other data into a chunk of a file, with a right check value.
Bytes withChunk(const Bytes& file, std::string_view type, const Bytes& data) {
    Bytes changed(kPngSignature.begin(), kPngSignature.end());
    const auto chunks = readPngChunks(file);
    for (const PngChunk& chunk : chunks.value())
        appendPngChunk(changed, chunk.type == type ? PngChunk{type, data} : chunk);
    return changed;
}

TEST(MaskCodec, refusesAPictureThatItsChecksumWasNotMadeOf) {
    const Bytes one = encoded(filledPlane(9, 9));
    const Bytes other = encoded(filledPlane(9, 9, {0, 0, 0, 254}));
    // The whole stream of the other in place of the one's: its head, a strip, its end.
    Bytes mixed(kPngSignature.begin(), kPngSignature.end());
    const auto ofOne = readPngChunks(one);
    for (const PngChunk& chunk : ofOne.value()) {
        if (chunk.type != "IDAT" && chunk.type != "IEND")
            appendPngChunk(mixed, chunk);
    }
    const auto ofOther = readPngChunks(other);
    for (const PngChunk& chunk : ofOther.value()) {
        if (chunk.type == "IDAT" || chunk.type == "IEND")
            appendPngChunk(mixed, chunk);
    }
    EXPECT_FALSE(decodeMask(mixed, 10).ok());
    EXPECT_FALSE(decodeMask(withChunk(one, "ckSM", {1, 2, 3}), 10).ok());
}

TEST(MaskCodec, refusesWhatIsTooLargeOrNoPictureAtAll) {
    const Bytes file = encoded(filledPlane(40, 20));
    EXPECT_TRUE(decodeMask(file, 40).ok());
    EXPECT_FALSE(decodeMask(file, 39).ok());
    EXPECT_FALSE(decodeMask({}, 100).ok());
    EXPECT_FALSE(decodeMask(Bytes(200, 7), 100).ok());
    EXPECT_FALSE(decodeMask(withChunk(file, "IDAT", {}), 100).ok());
    EXPECT_FALSE(decodeMask(withChunk(file, "IHDR", Bytes(13, 0)), 100).ok());
    EXPECT_FALSE(decodeMask(withChunk(file, "IHDR", {1, 2}), 100).ok());
    Bytes onlyEnd(kPngSignature.begin(), kPngSignature.end());
    appendPngChunk(onlyEnd, {"IEND", {}});
    EXPECT_FALSE(decodeMask(onlyEnd, 100).ok());
}

TEST(MaskCodec, doesNotOpenChunksThatAreNoPartOfThePicture) {
    const Bitmap plane = filledPlane(5, 5);
    const Bytes file = encoded(plane);
    Bytes withText(kPngSignature.begin(), kPngSignature.end());
    const auto chunks = readPngChunks(file);
    for (const PngChunk& chunk : chunks.value()) {
        appendPngChunk(withText, chunk);
        if (chunk.type == "IHDR") {
            for (const char* type : {"zTXt", "iCCP", "gAMA", "prVT"})
                appendPngChunk(withText, {type, Bytes{'n', 0, 0, 9, 9}});
        }
    }
    const auto back = decodeMask(withText, 10);
    ASSERT_TRUE(back.ok());
    EXPECT_TRUE(samePixels(plane.view(), back->view()));
}

TEST(MaskCodec, hasNothingToWriteForAnEmptyPlane) {
    EXPECT_FALSE(encodeMask({}).ok());
}

}  // namespace
}  // namespace trimora::cutengine::kernels
