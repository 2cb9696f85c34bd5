#pragma once

#include <cstdint>

namespace trimora::cutengine::kernels {

/// The checksum at the end of a zlib stream, worked out from runs: its two sums over a piece of the stream's
/// bytes, pieces joined afterwards.
class ZlibSums {
 public:
    /// Of `bytes` bytes, all 0 but for those given to byte().
    explicit ZlibSums(std::uint64_t bytes = 0) : bytes_(bytes) {}

    /// The byte that `toEnd` bytes of the piece, itself among them, are left from on.
    void byte(std::uint64_t toEnd, std::uint8_t value) {
        sum_ += value;
        weightedSum_ += toEnd * value;
        if (weightedSum_ >= kMostSum)
            weightedSum_ %= kModulus;
    }

    /// Joins the piece that comes next.
    void append(const ZlibSums& next) {
        weightedSum_ = (weightedSum_ % kModulus + next.weightedSum_ % kModulus +
                        next.bytes_ % kModulus * (sum_ % kModulus)) %
                       kModulus;
        sum_ = (sum_ + next.sum_) % kModulus;
        bytes_ += next.bytes_;
    }

    /// The checksum of a stream that is this piece alone.
    [[nodiscard]] std::uint32_t checksum() const {
        return static_cast<std::uint32_t>((bytes_ + weightedSum_ % kModulus) % kModulus << 16 |
                                          (1 + sum_) % kModulus);
    }

 private:
    static constexpr std::uint64_t kModulus = 65521;
    static constexpr std::uint64_t kMostSum = std::uint64_t{1}
                                              << 62;  // far from 2^64 by more than a byte adds

    std::uint64_t bytes_ = 0;
    std::uint64_t sum_ = 0;          // of the bytes
    std::uint64_t weightedSum_ = 0;  // of every byte once for each byte from it to the piece's end
};

}  // namespace trimora::cutengine::kernels
