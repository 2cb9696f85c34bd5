#include "cutengine/kernels/RunInflate.h"

#include <gtest/gtest.h>
#include <libdeflate.h>

#include <random>

#include "cutengine/kernels/RunDeflate.h"
#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct Written {
    Bytes plain;
    Bytes stream;
};

/// Runs of zeros and pixels of random lengths; `spread` is how many values a component has.
Written randomStream(std::mt19937_64& random, int parts, int spread) {
    const auto upTo = [&](std::uint64_t most) {
        return std::uniform_int_distribution<std::uint64_t>(0, most)(random);
    };
    struct Part {
        std::uint64_t zeros = 0;
        std::uint32_t pixel = 0;
        std::uint64_t times = 0;
    };
    std::vector<Part> all(static_cast<std::size_t>(parts));
    Written written;
    for (Part& part : all) {
        part.zeros = upTo(3) == 0 ? upTo(700) : upTo(5);
        // Rare values get codes longer than those of a table's first look.
        const auto component = [&] {
            auto value = static_cast<std::uint32_t>(spread) - 1;
            for (int draw = 0; draw < 3; ++draw)
                value &= static_cast<std::uint32_t>(upTo(static_cast<std::uint64_t>(spread) - 1));
            return value;
        };
        part.pixel = component() | component() << 8 | component() << 16 | (component() + 1) % 256 << 24;
        part.times = part.pixel == 0 ? 0 : upTo(3) == 0 ? upTo(90) : upTo(2);
        written.plain.insert(written.plain.end(), part.zeros, 0);
        for (std::uint64_t i = 0; i < part.times; ++i) {
            for (int shift = 0; shift < 32; shift += 8)
                written.plain.push_back(static_cast<std::uint8_t>(part.pixel >> shift));
        }
    }
    RunDeflate deflate(written.plain.size());
    for (const Part& part : all) {
        deflate.zeros(part.zeros);
        for (std::uint64_t i = 0; i < part.times; ++i)
            deflate.pixel(part.pixel);
    }
    written.stream = deflate.finish();
    return written;
}

std::optional<Bytes> inflated(const Bytes& stream, std::size_t most = 1U << 24) {
    Bytes bytes;
    const bool whole = RunInflate(stream).read([&](RunInflate::Run run) {
        if (bytes.size() + run.zeros + run.count > most)
            return false;
        bytes.insert(bytes.end(), run.zeros, 0);
        bytes.insert(bytes.end(), run.count, run.value);
        return true;
    });
    return whole ? std::optional(std::move(bytes)) : std::nullopt;
}

TEST(RunInflate, givesBackWhatRunDeflateWrote) {
    auto random = testing::seededGenerator();
    for (int round = 0; round < 60; ++round) {
        const Written written = randomStream(random, 1 + round * 40, round % 3 == 0 ? 256 : 1 + round % 5);
        ASSERT_EQ(inflated(written.stream), written.plain) << round;
    }
}

TEST(RunInflate, readsStreamsOfManyBlocksAndLongCodes) {
    auto random = testing::seededGenerator();
    const Written written = randomStream(random, 60'000, 256);
    EXPECT_EQ(inflated(written.stream), written.plain);
}

TEST(RunInflate, stopsWhereNoMoreIsTaken) {
    auto random = testing::seededGenerator();
    const Written written = randomStream(random, 100, 7);
    EXPECT_EQ(inflated(written.stream, written.plain.size() - 1), std::nullopt);
}

TEST(RunInflate, declinesStreamsOfOtherCompressors) {
    auto random = testing::seededGenerator();
    const Written written = randomStream(random, 3'000, 200);
    for (const int level : {0, 1, 6, 12}) {
        libdeflate_compressor* const compressor = libdeflate_alloc_compressor(level);
        Bytes stream(libdeflate_zlib_compress_bound(compressor, written.plain.size()));
        stream.resize(libdeflate_zlib_compress(compressor, written.plain.data(), written.plain.size(),
                                               stream.data(), stream.size()));
        libdeflate_free_compressor(compressor);
        EXPECT_EQ(inflated(stream), std::nullopt) << level;
    }
}

TEST(RunInflate, declinesAStreamCutShortAnywhere) {
    auto random = testing::seededGenerator();
    const Written written = randomStream(random, 200, 9);
    for (std::size_t size = 0; size + 4 < written.stream.size(); ++size)
        EXPECT_EQ(
            inflated({written.stream.begin(), written.stream.begin() + static_cast<std::ptrdiff_t>(size)}),
            std::nullopt)
            << size;
}

TEST(RunInflate, endsOnAnyBytes) {
    auto random = testing::seededGenerator();
    const Written written = randomStream(random, 400, 30);
    for (int round = 0; round < 800; ++round) {
        Bytes stream = written.stream;
        for (std::uint64_t i = 1 + random() % 4; i > 0; --i)
            stream[random() % stream.size()] = static_cast<std::uint8_t>(random());
        (void)inflated(stream, 1U << 20);
    }
}

}  // namespace
}  // namespace trimora::cutengine::kernels
