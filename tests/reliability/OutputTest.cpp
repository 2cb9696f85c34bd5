#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <spng.h>

#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <memory>
#include <random>
#include <string>
#include <string_view>
#include <vector>

#include "BadPictures.h"
#include "SavingForTests.h"
#include "files/FilesForTests.h"
#include "testing/Depth.h"
#include "testing/Seed.h"
#include "testing/TemporaryFolder.h"

// What is saved, read with other people's eyes: the same pixels everywhere, no complaint, and nothing in the
// file but the picture.
namespace trimora::reliability {
namespace {

namespace fs = std::filesystem;
namespace samples = codecs::samples;
using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::BitmapView;

class Output : public ::testing::Test {
 protected:
    testing::TemporaryFolder folder_;
};

Bitmap randomPicture(std::mt19937_64& random) {
    const int width = 1 + static_cast<int>(random() % 300);
    const int height = 1 + static_cast<int>(random() % 300);
    const AlphaMode mode = random() % 2 == 0 ? AlphaMode::straight : AlphaMode::premultiplied;
    auto picture = Bitmap::createFilled(width, height, {}, mode);
    const std::uint64_t kind = random() % 3;
    for (int y = 0; y < height; ++y) {
        std::uint8_t* const row = picture->view().row(y);
        for (int x = 0; x < width; ++x) {
            const auto alpha = static_cast<std::uint8_t>(kind == 0 ? 255 : kind == 1 ? random() : x + y);
            for (int i = 0; i < 3; ++i) {
                const auto colour = static_cast<std::uint8_t>(random() >> 8);
                row[4 * x + i] = mode == AlphaMode::straight ? colour : std::min(colour, alpha);
            }
            row[4 * x + 3] = alpha;
        }
    }
    return std::move(*picture);
}

/// The rows without what stands between them, as the bytes R, G, B, A.
std::string rowsOf(BitmapView straight) {
    std::string bytes;
    for (int y = 0; y < straight.height; ++y) {
        for (int x = 0; x < straight.width; ++x) {
            const std::uint8_t* const pixel = straight.row(y) + static_cast<std::ptrdiff_t>(4) * x;
            for (const int i : {2, 1, 0, 3})
                bytes += static_cast<char>(pixel[i]);
        }
    }
    return bytes;
}

/// The same by libspng; empty where it finds anything wrong.
std::string rowsByLibspng(const std::string& file) {
    const std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)> context(spng_ctx_new(0), &spng_ctx_free);
    std::size_t size = 0;
    if (spng_set_png_buffer(context.get(), file.data(), file.size()) != 0 ||
        spng_decoded_image_size(context.get(), SPNG_FMT_RGBA8, &size) != 0)
        return {};
    std::string bytes(size, '\0');
    const int result = spng_decode_image(context.get(), bytes.data(), size, SPNG_FMT_RGBA8, SPNG_DECODE_TRNS);
    return result == 0 ? bytes : std::string();
}

int run(const std::string& command) {
    return std::system((command + " >/dev/null 2>&1").c_str());
}

TEST_F(Output, IsTheSameToEveryReader) {
    if (run("(pngcheck -h && convert -version)") != 0) {
        std::printf("skipped: pngcheck or convert is not here\n");
        GTEST_SKIP() << "pngcheck or convert is not here";
    }
    std::mt19937_64 random = testing::seededGenerator();
    const int count = testing::byDepth(40, 2'000, 10'000);
    constexpr int kAtOnce = 20;  // the other programs take longer to start than to read a picture
    const auto raw = [&](const std::string& number) {
        return (folder_.path() / ("raw-" + number + ".rgba")).string();
    };
    foundation::InlineWorkers workers;
    const codecs::PictureFileDecoder ours(workers, codecs::PixelBudget(kAdmittedPixels));
    for (int done = 0; done < count; done += kAtOnce) {
        std::vector<std::string> byLibpng;
        std::string names;
        for (int i = 0; i < kAtOnce; ++i) {
            const fs::path file = folder_.path() / ("saved-" + std::to_string(i) + ".png");
            ASSERT_TRUE(savePng(randomPicture(random).view(), file));
            const std::string bytes = files::contents(file);
            const Buffer buffer(bytes.begin(), bytes.end());
            byLibpng.push_back(rowsOf(samples::readByLibpng(buffer).view()));
            ASSERT_TRUE(rowsByLibspng(bytes) == byLibpng.back()) << "picture " << done + i;
            names += " '" + file.string() + "'";
            const auto again = ours.decodeBytes(buffer);
            ASSERT_TRUE(again);
            ASSERT_EQ(again->notice, "");
        }
        ASSERT_EQ(run("pngcheck -q" + names), 0) << "picture " << done << " or one of those after it";
        ASSERT_EQ(run("convert" + names + " -depth 8 +adjoin 'RGBA:" + raw("%d") + "'"), 0);
        for (std::size_t i = 0; i < byLibpng.size(); ++i)
            ASSERT_TRUE(files::contents(raw(std::to_string(i))) == byLibpng[i])
                << "picture " << done << " + " << i;
    }
    std::printf("%d pictures\n", count);
}

TEST_F(Output, CarriesNothingOfTheSourceButItsPixels) {
    constexpr std::string_view text("Author\0CANARY-of-Ann", 20);
    Buffer png = samples::png(samples::fading(40, 30).view(), {.bitDepth = 8, .icc = samples::wideProfile()});
    samples::insertChunk(png, "tEXt", {reinterpret_cast<const std::uint8_t*>(text.data()), text.size()});
    Buffer jpeg = samples::jpeg(samples::quarters(40, 30).view());
    constexpr std::string_view comment(
        "\xFF\xFE\0\x10"
        "CANARY-of-Ann!",
        18);
    jpeg.insert(jpeg.begin() + 2, comment.begin(), comment.end());
    foundation::InlineWorkers workers;
    const codecs::PictureFileDecoder decoder(workers, codecs::PixelBudget(kAdmittedPixels));
    for (const Buffer& source : {png, jpeg}) {
        const auto read = decoder.decodeBytes(source);
        ASSERT_TRUE(read) << read.error().message;
        const fs::path file = folder_.path() / "CANARY-in-the-name.png";
        ASSERT_TRUE(savePng(read->representations[0].view(), file));
        const std::string saved = files::contents(file);
        EXPECT_EQ(saved.find("CANARY"), std::string::npos);
        std::vector<std::string> chunks;
        for (std::size_t at = 8; at + 12 <= saved.size();) {
            const auto byte = [&](std::size_t i) {
                return static_cast<std::size_t>(static_cast<std::uint8_t>(saved[at + i]));
            };
            chunks.push_back(saved.substr(at + 4, 4));
            at += 12 + (byte(0) << 24 | byte(1) << 16 | byte(2) << 8 | byte(3));
        }
        EXPECT_THAT(chunks, ::testing::ElementsAre("IHDR", "sRGB", "IDAT", "IEND"));
    }
}

}  // namespace
}  // namespace trimora::reliability
