#include "cutengine/kernels/RunInflate.h"

#include <algorithm>

namespace trimora::cutengine::kernels {
namespace {

constexpr std::size_t kHead = 2;
constexpr std::size_t kChecksum = 4;

std::span<const std::uint8_t> bodyOf(std::span<const std::uint8_t> stream) {
    return stream.size() < kHead + kChecksum ? std::span<const std::uint8_t>()
                                             : stream.subspan(kHead, stream.size() - kHead - kChecksum);
}

// Every entry whose index ends in the symbol's code, for the codes of at most `most` bits.
template <typename Entries>
void fill(Entries& entries, const HuffmanCode& code, int most) {
    for (std::size_t symbol = 0; symbol < code.lengths.size(); ++symbol) {
        const int bits = code.lengths[symbol];
        if (bits == 0 || bits > most)
            continue;
        for (std::size_t i = code.bits[symbol]; i < entries.size(); i += std::size_t{1} << bits)
            entries[i] = {static_cast<std::uint16_t>(symbol), static_cast<std::uint16_t>(bits)};
    }
}

}  // namespace

RunInflate::Table::Table(const HuffmanCode& code) {
    fill(short_, code, kShortBits);
    if (*std::max_element(code.lengths.begin(), code.lengths.end()) > kShortBits) {
        long_.resize(std::size_t{1} << kLongBits);
        fill(long_, code, kLongBits);
    }
}

RunInflate::RunInflate(std::span<const std::uint8_t> stream) : bits_(bodyOf(stream)) {}

std::optional<RunInflate::Block> RunInflate::beginBlock() {
    const auto header = takeBlockHeader(bits_);
    if (!header)
        return std::nullopt;
    // Distances 1 and 4, a bit each.
    if (header->code.distances.lengths != std::vector<std::uint8_t>{1, 0, 0, 1})
        return std::nullopt;
    return Block{Table(header->code.literals), header->isLast};
}

}  // namespace trimora::cutengine::kernels
