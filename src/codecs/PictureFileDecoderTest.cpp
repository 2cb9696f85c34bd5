#include "codecs/PictureFileDecoder.h"

#include <gtest/gtest.h>
#include <sys/stat.h>
#include <tiffio.h>

#include <filesystem>
#include <fstream>
#include <thread>

#include "codecs/PictureFormat.h"
#include "codecs/SampleFiles.h"
#include "foundation/ThreadQueues.h"
#include "testing/Seed.h"
#include "testing/TemporaryFolder.h"

namespace trimora::codecs {
namespace {

namespace fs = std::filesystem;
using cutengine::DecodedPicture;
using foundation::Bitmap;
using foundation::Result;

constexpr const char* kUnknown = "it is not a JPEG, PNG, TIFF or GIF picture";

class PictureFileDecoderTest : public ::testing::Test {
 protected:
    fs::path write(const std::string& name, const samples::Buffer& bytes) {
        std::ofstream(folder_.path() / name, std::ios::binary)
            .write(reinterpret_cast<const char*>(bytes.data()), static_cast<std::streamsize>(bytes.size()));
        return folder_.path() / name;
    }

    [[nodiscard]] std::vector<samples::Buffer> oneOfEach() const {
        samples::TiffOptions page;
        page.alpha = -1;
        page.packing = COMPRESSION_LZW;
        return {samples::jpeg(picture_.view()), samples::png(picture_.view()),
                samples::tiff({{picture_.view(), page}}), samples::gif(few_.view())};
    }

    testing::TemporaryFolder folder_;
    foundation::InlineWorkers workers_;
    PictureFileDecoder decoder_{workers_, PixelBudget(10'000'000)};
    Bitmap picture_ = samples::quarters(40, 30);
    Bitmap few_ = Bitmap::createFilled(40, 30, {1, 2, 3, 255}).value();
};

TEST_F(PictureFileDecoderTest, FormatIsToldByTheContentsAndNotByTheName) {
    for (const samples::Buffer& bytes : oneOfEach()) {
        const Result<DecodedPicture> read = decoder_.decode(write("picture.txt", bytes));
        ASSERT_TRUE(read);
        EXPECT_EQ(read->representations[0].width(), 40);
    }
}

TEST_F(PictureFileDecoderTest, OtherContentsAreRefusedWhateverTheName) {
    const std::string drawing = "<svg xmlns='http://www.w3.org/2000/svg'/>";
    EXPECT_EQ(decoder_.decode(write("drawing.png", {drawing.begin(), drawing.end()})).error().message,
              kUnknown);
    EXPECT_EQ(decoder_.decode(write("empty.png", {})).error().message, kUnknown);
    EXPECT_EQ(decoder_.decode(write("bitmap.png", {'B', 'M', 0, 0, 0, 0, 0, 0, 0})).error().message,
              kUnknown);
}

TEST_F(PictureFileDecoderTest, SignatureAloneIsNoPicture) {
    for (const samples::Buffer& bytes : oneOfEach()) {
        for (std::size_t size = 0; size <= kSignatureSize; ++size)
            EXPECT_FALSE(decoder_.decodeBytes(Bytes(bytes).first(size)));
    }
}

TEST_F(PictureFileDecoderTest, WhatIsNoRegularFileIsRefusedAtOnce) {
    const fs::path pipe = folder_.path() / "pipe.png";
    ASSERT_EQ(::mkfifo(pipe.c_str(), 0600), 0);
    EXPECT_EQ(decoder_.decode(pipe).error().message, "it is not a regular file");
    EXPECT_EQ(decoder_.decode(folder_.path()).error().message, "it is a folder");
    EXPECT_EQ(decoder_.decode("/dev/zero").error().message, "it is not a regular file");
    EXPECT_EQ(decoder_.decode(folder_.path() / "none.png").error().message,
              "the file cannot be read: No such file or directory");
}

TEST_F(PictureFileDecoderTest, LinkToAPictureIsFollowed) {
    fs::create_symlink(write("picture.png", samples::png(picture_.view())), folder_.path() / "link.png");
    EXPECT_TRUE(decoder_.decode(folder_.path() / "link.png"));
}

TEST_F(PictureFileDecoderTest, HugeFileThatIsNoPictureIsNotRead) {
    const fs::path film = write("film.mkv", {0x1A, 0x45, 0xDF, 0xA3, 0, 0, 0, 0});
    fs::resize_file(film, std::uintmax_t{1} << 40);
    EXPECT_EQ(decoder_.decode(film).error().message, kUnknown);
}

TEST_F(PictureFileDecoderTest, FileLargerThanAnyPictureOfTheBudgetIsNotRead) {
    const fs::path file = write("large.png", samples::png(picture_.view()));
    fs::resize_file(file, std::uintmax_t{1} << 40);
    EXPECT_TRUE(decoder_.decode(file).error().message.starts_with("the file is larger than"));
}

TEST_F(PictureFileDecoderTest, SeveralThreadsReadAtOnce) {
    foundation::ThreadWorkers workers(2);
    PictureFileDecoder decoder(workers);
    const std::vector<samples::Buffer> files = oneOfEach();
    std::vector<std::thread> threads;
    std::atomic<int> read = 0;
    for (int i = 0; i < 4; ++i) {
        threads.emplace_back([&] {
            for (const samples::Buffer& file : files)
                read += decoder.decodeBytes(file).ok() ? 1 : 0;
        });
    }
    for (std::thread& thread : threads)
        thread.join();
    EXPECT_EQ(read, 16);
}

TEST_F(PictureFileDecoderTest, ChangedBytesGiveAPictureOrAReason) {
    std::mt19937_64 random = testing::seededGenerator();
    for (const samples::Buffer& bytes : oneOfEach()) {
        for (int round = 0; round < 400; ++round) {
            samples::Buffer changed = bytes;
            for (std::uint64_t i = 0; i <= random() % 8; ++i)
                changed[random() % changed.size()] = static_cast<std::uint8_t>(random());
            const Result<DecodedPicture> read = decoder_.decodeBytes(changed);
            if (read)
                EXPECT_FALSE(read->representations.empty());
            else
                EXPECT_FALSE(read.error().message.empty());
        }
    }
}

TEST(PixelBudget, IsTakenFromTheFreeMemory) {
    EXPECT_GT(PixelBudget::fromFreeMemory().pixels(), 1'000'000U);
}

TEST(PixelBudget, CountsIn64Bits) {
    const PixelBudget budget(1'000'000);
    EXPECT_FALSE(budget.refusal(1000, 1000));
    EXPECT_TRUE(budget.refusal(1001, 1000));
    EXPECT_TRUE(budget.refusal(65536, 65536));  // 0 in 32 bits
    EXPECT_EQ(budget.refusal(4'294'967'295, 4'294'967'295)->message,
              "the picture is 4294967295 x 4294967295 pixels, and a side may be at most 1048576");
    EXPECT_EQ(budget.refusal(0, 5)->message, "the picture has no pixels");
}

}  // namespace
}  // namespace trimora::codecs
