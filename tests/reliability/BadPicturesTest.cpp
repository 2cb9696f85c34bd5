#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <time.h>

#include <algorithm>
#include <string>

#include "BadPictures.h"
#include "Processes.h"
#include "files/FilesForTests.h"
#include "foundation/PixelBuffer.h"
#include "foundation/Queues.h"
#include "testing/Depth.h"
#include "testing/Seed.h"
#include "testing/TemporaryFolder.h"

// Files from outside that are broken on purpose: each gives a picture or one message, in bounded time and
// memory, and never ends the program.
namespace trimora::reliability {
namespace {

using codecs::PictureFileDecoder;
using codecs::PixelBudget;

constexpr double kMostSeconds = 5;
constexpr long kMostKibibytes = (128L << 10) + static_cast<long>(kAdmittedPixels) * 12 / 1024;
constexpr long kMostForMetadata = 64L << 10;

double processorSeconds() {
    struct timespec now {};
    ::clock_gettime(CLOCK_PROCESS_CPUTIME_ID, &now);
    return static_cast<double>(now.tv_sec) + static_cast<double>(now.tv_nsec) / 1e9;
}

class BadPictures : public ::testing::Test {
 protected:
    [[nodiscard]] foundation::Result<cutengine::DecodedPicture> decode(const Buffer& bytes) const {
        return decoder_.decodeBytes(bytes);
    }

    /// Opens the file as a person would, in a process of its own; what is wrong, or nothing.
    [[nodiscard]] std::string faultAlone(const Buffer& bytes, long mostKibibytes) {
        const std::filesystem::path file = folder_.path() / "file";
        files::put(file, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        const Ended ended = inOwnProcess(
            [&] {
                const std::string fault = faultOf(decoder_.decode(file));
                if (!fault.empty())
                    std::fprintf(stderr, "%s\n", fault.c_str());
                return fault.empty() ? 0 : 1;
            },
            static_cast<int>(kMostSeconds));
        largest_ = std::max(largest_, ended.grownKibibytes);
        slowest_ = std::max(slowest_, ended.cpuSeconds);
        if (!ended.exited || ended.status != 0)
            return ended.text();
        if (!kSanitized && ended.grownKibibytes > mostKibibytes)
            return std::to_string(ended.grownKibibytes) + " KiB";
        return {};
    }

    /// Keeps what made a test fail, so that it can be looked at.
    static std::string kept(const Buffer& bytes) {
        const std::filesystem::path file = std::filesystem::current_path() / "bad-picture";
        files::put(file, {reinterpret_cast<const char*>(bytes.data()), bytes.size()});
        return "kept as " + file.string();
    }

    testing::TemporaryFolder folder_;
    foundation::InlineWorkers workers_;
    PictureFileDecoder decoder_{workers_, PixelBudget(kAdmittedPixels)};
    long largest_ = 0;
    double slowest_ = 0;
};

TEST_F(BadPictures, AreMadeFromSoundOnes) {
    for (const NamedFile& file : soundFiles()) {
        const auto outcome = decode(file.bytes);
        ASSERT_TRUE(outcome) << file.name << ": " << outcome.error().message;
        EXPECT_EQ(outcome->notice, "") << file.name;
        EXPECT_EQ(faultOf(outcome), "") << file.name;
    }
}

TEST_F(BadPictures, OfAHundredAndFiftyKindsEachGiveAPictureOrOneMessage) {
    const auto files = brokenFiles();
    EXPECT_EQ(files.size(), 150U);
    for (const NamedFile& file : files) {
        EXPECT_EQ(faultOf(decode(file.bytes)), "") << file.name;
        EXPECT_EQ(faultAlone(file.bytes, kMostKibibytes), "") << file.name;
    }
    std::printf("150 files, at most %ld KiB and %.3f s\n", largest_, slowest_);
}

TEST_F(BadPictures, CutShortAreNeverTakenForWholeOnes) {
    for (const NamedFile& file : brokenFiles()) {
        if (file.name.find(".cut-at-") == std::string::npos)
            continue;
        const auto outcome = decode(file.bytes);
        EXPECT_TRUE(!outcome || !outcome->notice.empty()) << file.name;
    }
}

TEST_F(BadPictures, ByChanceEachGiveAPictureOrOneMessage) {
    std::mt19937_64 random = testing::seededGenerator();
    const int count = testing::byDepth(20'000, 200'000, 2'000'000);
    (void)soundFiles();
    forgetPeak();
    const long before = peakKibibytes();
    int pictures = 0;
    for (int i = 0; i < count; ++i) {
        const Buffer bytes = mutant(random);
        const double began = processorSeconds();
        const auto outcome = decode(bytes);
        slowest_ = std::max(slowest_, processorSeconds() - began);
        ASSERT_EQ(faultOf(outcome), "") << "mutant " << i << ", " << kept(bytes);
        ASSERT_LT(slowest_, kMostSeconds) << "mutant " << i << ", " << kept(bytes);
        foundation::PixelBuffer::trimStock();  // each is to keep to its bounds, not what all leave for others
        if (!kSanitized) {
            ASSERT_LT(peakKibibytes() - before, kMostKibibytes) << "mutant " << i << ", " << kept(bytes);
        }
        pictures += outcome ? 1 : 0;
    }
    std::printf("%d mutants, %d pictures, at most %ld KiB and %.3f s\n", count, pictures,
                peakKibibytes() - before, slowest_);
}

TEST_F(BadPictures, ByChanceAloneStayInTheirBounds) {
    std::mt19937_64 random = testing::seededGenerator();
    const int count = testing::byDepth(600, 5'000, 50'000) / (kSanitized ? 5 : 1);
    for (int i = 0; i < count; ++i) {
        const Buffer bytes = mutant(random);
        ASSERT_EQ(faultAlone(bytes, kMostKibibytes), "") << "mutant " << i << ", " << kept(bytes);
    }
    std::printf("%d processes, at most %ld KiB and %.3f s\n", count, largest_, slowest_);
}

TEST_F(BadPictures, WithHugeMetadataCostLittle) {
    const auto bombs = metadataBombs();
    EXPECT_EQ(bombs.size(), 13U);
    for (const NamedFile& bomb : bombs) {
        largest_ = 0;
        slowest_ = 0;
        EXPECT_EQ(faultAlone(bomb.bytes, kMostForMetadata), "") << bomb.name;
        std::printf("%-24s %9zu bytes: %6ld KiB, %.3f s\n", bomb.name.c_str(), bomb.bytes.size(), largest_,
                    slowest_);
    }
}

}  // namespace
}  // namespace trimora::reliability
