#include "cutengine/kernels/PixelRows.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <numeric>
#include <vector>

#include "cutengine/kernels/EveryInstructionSet.h"

namespace trimora::cutengine::kernels {
namespace {

TEST(PixelRows, streamedPixelsArriveFromAnyByteAtAnyByteAndNoneBeside) {
    constexpr std::size_t kRoom = 900;
    std::vector<std::uint8_t> from(kRoom);
    std::iota(from.begin(), from.end(), std::uint8_t{1});
    onEveryInstructionSet([&] {
        for (const int count : {0, 1, 3, 16, 17, 63, 150}) {
            for (std::size_t place = 0; place < 70; ++place) {
                std::vector<std::uint8_t> to(kRoom, 0);
                streamPixels(from.data() + place % 5, to.data() + place, count);
                endStreaming();
                std::vector<std::uint8_t> expected(kRoom, 0);
                std::copy_n(from.begin() + static_cast<std::ptrdiff_t>(place % 5), 4 * count,
                            expected.begin() + static_cast<std::ptrdiff_t>(place));
                ASSERT_EQ(to, expected) << count << " pixels at " << place;
            }
        }
    });
}

TEST(PixelRows, streamedZerosClearFromAnyByteOnAndNothingBeside) {
    constexpr std::size_t kRoom = 700;
    onEveryInstructionSet([&] {
        for (const int count : {0, 1, 3, 16, 17, 63, 150}) {
            for (std::size_t place = 0; place < 70; ++place) {
                std::vector<std::uint8_t> cleared(kRoom, 7);
                streamClear(cleared.data() + place, count);
                endStreaming();
                std::vector<std::uint8_t> expected(kRoom, 7);
                std::fill_n(expected.begin() + static_cast<std::ptrdiff_t>(place), 4 * count,
                            std::uint8_t{0});
                ASSERT_EQ(cleared, expected) << count << " pixels at " << place;
            }
        }
    });
}

}  // namespace
}  // namespace trimora::cutengine::kernels
