#include "cutengine/kernels/RunInflate.h"

#include <gtest/gtest.h>
#include <libdeflate.h>

#include <optional>
#include <random>

#include "cutengine/kernels/DeflateBlock.h"
#include "cutengine/kernels/RunDeflate.h"
#include "testing/Seed.h"

namespace trimora::cutengine::kernels {
namespace {

using Bytes = std::vector<std::uint8_t>;

struct Written {
    Bytes plain;
    Bytes piece;
    ZlibSums sums;
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
    if (written.plain.empty()) {  // there are no rows of nothing
        all.front().zeros = 1;
        written.plain.push_back(0);
    }
    RunDeflate deflate(written.plain.size());
    for (const Part& part : all) {
        deflate.zeros(part.zeros);
        for (std::uint64_t i = 0; i < part.times; ++i)
            deflate.pixel(part.pixel);
    }
    RunDeflate::Piece piece = deflate.finish();
    written.piece = std::move(piece.bytes);
    written.sums = piece.sums;
    return written;
}

std::optional<Bytes> inflated(Bytes piece, std::size_t total, std::size_t rows = 1) {
    piece.resize(piece.size() + BitReader::kSlack, 0xA5);
    Bytes bytes(total, 0);
    const auto take = [&](int row, std::span<const PlacedByte> found) {
        for (const PlacedByte byte : found) {
            EXPECT_EQ(byte.place() / (total / rows), static_cast<std::uint64_t>(row));
            bytes.at(byte.place()) = byte.value();
        }
        return true;
    };
    return inflateRuns(piece, total / rows, static_cast<int>(rows), take) ? std::optional(std::move(bytes))
                                                                          : std::nullopt;
}
std::optional<Bytes> inflated(const Written& written) {
    return inflated(written.piece, written.plain.size());
}

TEST(RunInflate, givesBackWhatRunDeflateWrote) {
    auto random = testing::seededGenerator();
    for (int round = 0; round < 60; ++round) {
        const Written written = randomStream(random, 1 + round * 40, round % 3 == 0 ? 256 : 1 + round % 5);
        ASSERT_EQ(inflated(written), written.plain) << round;
    }
}

TEST(RunInflate, readsPiecesOfManyBlocksAndLongCodes) {
    auto random = testing::seededGenerator();
    const Written written = randomStream(random, 60'000, 256);
    EXPECT_EQ(inflated(written), written.plain);
}

TEST(RunInflate, readsRunsLongerThanATokenCanTell) {
    RunDeflate deflate(50'000'001 + 4 * 2'500'000);
    deflate.byte(1);
    deflate.zeros(50'000'000);
    for (int i = 0; i < 2'500'000; ++i)
        deflate.pixel(0x07000000);
    RunDeflate::Piece piece = deflate.finish();
    piece.bytes.resize(piece.bytes.size() + BitReader::kSlack);
    const auto take = [](int /*row*/, std::span<const PlacedByte> bytes) {
        EXPECT_EQ(bytes.size(), 2'500'001U);
        EXPECT_EQ(bytes.front().value(), 1);
        EXPECT_EQ(bytes.back().value(), 7);
        EXPECT_EQ(bytes.back().place(), 50'000'000U + 4 * 2'500'000);
        return true;
    };
    EXPECT_TRUE(inflateRuns(piece.bytes, 50'000'001 + 4 * 2'500'000, 1, take));
}

TEST(RunInflate, handsOverRowByRowAndStopsWhereNoMoreIsWanted) {
    RunDeflate deflate(700);
    for (int row = 0; row < 100; ++row) {
        deflate.byte(2);
        deflate.zeros(6);
    }
    RunDeflate::Piece piece = deflate.finish();
    EXPECT_TRUE(inflated(piece.bytes, 700, 100));
    EXPECT_FALSE(inflated(piece.bytes, 700 / 99 * 99, 99));
    piece.bytes.resize(piece.bytes.size() + BitReader::kSlack);
    int taken = 0;
    const auto upToTen = [&](int row, std::span<const PlacedByte> bytes) {
        EXPECT_EQ(row, taken++);
        EXPECT_EQ(bytes.size(), 1U);
        return taken < 10;
    };
    EXPECT_FALSE(inflateRuns(piece.bytes, 7, 100, upToTen));
    EXPECT_EQ(taken, 10);
}

TEST(RunInflate, takesAPieceForTheLengthThatItHasAlone) {
    auto random = testing::seededGenerator();
    const Written written = randomStream(random, 100, 7);
    EXPECT_EQ(inflated(written.piece, written.plain.size() - 1), std::nullopt);
    EXPECT_EQ(inflated(written.piece, written.plain.size() + 1), std::nullopt);
}

// As zlib reads them, the checksum with them.
std::optional<Bytes> byZlib(const Bytes& stream, std::size_t size) {
    libdeflate_decompressor* const decompressor = libdeflate_alloc_decompressor();
    Bytes bytes(size);
    const auto result = libdeflate_zlib_decompress(decompressor, stream.data(), stream.size(), bytes.data(),
                                                   bytes.size(), nullptr);
    libdeflate_free_decompressor(decompressor);
    return result == LIBDEFLATE_SUCCESS ? std::optional(std::move(bytes)) : std::nullopt;
}

TEST(RunDeflate, writesPiecesThatJoinToAStreamAnyoneReads) {
    auto random = testing::seededGenerator();
    for (int round = 0; round < 20; ++round) {
        Bytes stream(kStreamHead.begin(), kStreamHead.end());
        Bytes plain;
        ZlibSums sums;
        for (int k = 0; k < 1 + round % 4; ++k) {
            const Written written = randomStream(random, 1 + round * 150, round % 2 == 0 ? 256 : 3);
            stream.insert(stream.end(), written.piece.begin(), written.piece.end());
            plain.insert(plain.end(), written.plain.begin(), written.plain.end());
            sums.append(written.sums);
        }
        stream.insert(stream.end(), kStreamEnd.begin(), kStreamEnd.end());
        for (int shift = 24; shift >= 0; shift -= 8)
            stream.push_back(static_cast<std::uint8_t>(sums.checksum() >> shift));
        ASSERT_EQ(byZlib(stream, plain.size()), plain) << round;
    }
}

TEST(RunInflate, declinesStreamsOfOtherCompressors) {
    auto random = testing::seededGenerator();
    const Written written = randomStream(random, 3'000, 200);
    for (const int level : {0, 1, 6, 12}) {
        libdeflate_compressor* const compressor = libdeflate_alloc_compressor(level);
        Bytes stream(libdeflate_deflate_compress_bound(compressor, written.plain.size()));
        stream.resize(libdeflate_deflate_compress(compressor, written.plain.data(), written.plain.size(),
                                                  stream.data(), stream.size()));
        libdeflate_free_compressor(compressor);
        EXPECT_EQ(inflated(stream, written.plain.size()), std::nullopt) << level;
    }
}

TEST(RunInflate, declinesAPieceCutShortAnywhere) {
    auto random = testing::seededGenerator();
    const Written written = randomStream(random, 200, 9);
    for (std::size_t size = 0; size < written.piece.size(); ++size) {
        const auto end = written.piece.begin() + static_cast<std::ptrdiff_t>(size);
        EXPECT_EQ(inflated({written.piece.begin(), end}, written.plain.size()), std::nullopt) << size;
    }
}

TEST(RunInflate, endsOnAnyBytes) {
    auto random = testing::seededGenerator();
    const Written written = randomStream(random, 400, 30);
    for (int round = 0; round < 800; ++round) {
        Bytes piece = written.piece;
        for (std::uint64_t i = 1 + random() % 4; i > 0; --i)
            piece[random() % piece.size()] = static_cast<std::uint8_t>(random());
        (void)inflated(piece, round % 2 == 0 ? written.plain.size() : 1U << 20);
    }
}

}  // namespace
}  // namespace trimora::cutengine::kernels
