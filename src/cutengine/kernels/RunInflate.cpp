#include "cutengine/kernels/RunInflate.h"

#include <algorithm>
#include <utility>

namespace trimora::cutengine::kernels {
namespace {

constexpr std::size_t kHead = 2;
constexpr std::size_t kChecksum = 4;

// Without head and checksum, and with what BitReader wants to be there beyond it.
std::vector<std::uint8_t> bodyOf(std::vector<std::uint8_t> stream) {
    const std::size_t size = std::max(stream.size(), kHead + kChecksum) - kHead - kChecksum;
    stream.erase(stream.begin(),
                 stream.begin() + static_cast<std::ptrdiff_t>(std::min(stream.size(), kHead)));
    stream.resize(size);
    stream.resize(size + BitReader::kSlack, 0);
    return stream;
}

}  // namespace

RunInflate::Table::Table(const HuffmanCode& code) {
    const auto entryOf = [&](std::size_t symbol) {
        const std::uint8_t bits = code.lengths[symbol];
        if (symbol < kEndOfBlock)
            return Entry{static_cast<std::uint16_t>(symbol), bits, Entry::kByte};
        if (symbol == kEndOfBlock)
            return Entry{0, bits, Entry::kEnd};
        return Entry{static_cast<std::uint16_t>(MatchPart::leastLength(symbol)), bits,
                     static_cast<std::uint8_t>(MatchPart::extraBitsOf(symbol))};
    };
    if (*std::max_element(code.lengths.begin(), code.lengths.end()) > kShortBits)
        long_.resize(std::size_t{1} << kLongBits);
    for (std::size_t symbol = 0; symbol < code.lengths.size(); ++symbol) {
        const std::size_t bits = code.lengths[symbol];
        if (bits == 0)
            continue;
        const std::span<Entry> table = bits > kShortBits ? std::span<Entry>(long_) : std::span<Entry>(short_);
        for (std::size_t i = code.bits[symbol]; i < table.size(); i += std::size_t{1} << bits)
            table[i] = entryOf(symbol);
    }
    if (code.lengths.size() != kLiteralSymbols || code.lengths.back() == 0)
        return;
    longestBits_ = code.lengths.back() + 1U;  // and the distance 1, which is one bit, 0
    for (std::uint32_t at = 0; at < 64; at += longestBits_)
        longest_ |= std::uint64_t{code.bits.back()} << at;
}

RunInflate::RunInflate(std::vector<std::uint8_t> stream) : body_(bodyOf(std::move(stream))), bits_(body_) {}

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
