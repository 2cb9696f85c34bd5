#include "codecs/JpegTail.h"

#include <algorithm>
#include <cstdlib>

#include "codecs/JpegCode.h"

namespace trimora::codecs {
namespace {

constexpr std::size_t kEndOfBlock = 0;
constexpr std::size_t kSameMean = 0;
constexpr std::int64_t kLargestMean = 1 << 15;
constexpr int kMostBitsOfADifference = 11;

constexpr std::uint8_t kFirstFrame = 0xC0;   // baseline
constexpr std::uint8_t kSecondFrame = 0xC1;  // the same with more tables
constexpr std::uint8_t kStartOfScan = 0xDA;
constexpr std::size_t kHeightInFrame = 5;  // bytes from the frame's marker

/// Whether a segment has a say in how the data is read: tables, the frame, the scan, and the marks of
/// programs by which the colours are told.
bool matters(std::uint8_t marker) {
    constexpr std::uint8_t kFirstProgram = 0xE0;
    constexpr std::uint8_t kColourProgram = 0xEE;
    constexpr std::uint8_t kComment = 0xFE;
    const bool isProgram = marker >= kFirstProgram && marker <= 0xEF;
    return marker != kComment && (!isProgram || marker == kFirstProgram || marker == kColourProgram);
}

/// The file's header with another height; empty where it is not a plain row of segments.
std::vector<std::uint8_t> headerWithHeight(Bytes header, std::uint64_t height) {
    std::vector<std::uint8_t> made(header.begin(), header.begin() + 2);
    std::size_t at = 2;
    while (at + 4 <= header.size() && header[at] == 0xFF) {
        const std::uint8_t marker = header[at + 1];
        const std::size_t size = 2 + u16(header, at + 2);
        const Bytes segment = part(header, at, size);
        if (size < 4 || segment.size() < size)
            return {};
        if (matters(marker))
            made.insert(made.end(), segment.begin(), segment.end());
        if (marker == kFirstFrame || marker == kSecondFrame) {
            std::uint8_t* const told = made.data() + (made.size() - size + kHeightInFrame);
            told[0] = static_cast<std::uint8_t>(height >> 8);
            told[1] = static_cast<std::uint8_t>(height);
        }
        at += size;
        if (marker == kStartOfScan)
            return at == header.size() ? made : std::vector<std::uint8_t>();
    }
    return {};
}

/// Writes bits, the highest first, with a zero after every byte of ones.
class BitWriter {
 public:
    explicit BitWriter(std::vector<std::uint8_t>& to) : to_(to) {}

    void add(unsigned bits, int count) {
        for (int i = count - 1; i >= 0; --i) {
            waiting_ = waiting_ << 1 | (bits >> i & 1);
            if (++count_ == 8)
                finishByte();
        }
    }
    /// Bits of the byte that is begun.
    [[nodiscard]] int begun() const { return count_; }

 private:
    void finishByte() {
        to_.push_back(static_cast<std::uint8_t>(waiting_));
        if (to_.back() == 0xFF)
            to_.push_back(0);
        waiting_ = 0;
        count_ = 0;
    }

    std::vector<std::uint8_t>& to_;
    unsigned waiting_ = 0;
    int count_ = 0;
};

/// Blocks of one component that mean nothing but what their means add up to.
class EmptyBlocks {
 public:
    EmptyBlocks(JpegCode means, JpegCode rest, std::int64_t sum) : means_(means), rest_(rest), left_(sum) {}

    /// Whether the codes have all that add() needs. A difference of 1 leads everywhere.
    [[nodiscard]] bool isPossible() const {
        return means_.has(kSameMean) && means_.has(1) && rest_.has(kEndOfBlock) &&
               std::abs(left_) < kLargestMean;
    }

    /// One block, which takes the means as far as one difference can; with this number in it, if it is one.
    void add(BitWriter& to, std::size_t number) {
        int bits = 0;
        for (int each = 1; each <= kMostBitsOfADifference; ++each) {
            if (means_.has(static_cast<std::size_t>(each)) && std::abs(left_) >= 1 << (each - 1))
                bits = each;
        }
        const std::int64_t most = (std::int64_t{1} << bits) - 1;
        const std::int64_t step = std::clamp(left_, -most, most);
        write(to, means_, static_cast<std::size_t>(bits));
        to.add(static_cast<unsigned>(step < 0 ? step + most : step), bits);
        left_ -= step;
        if (number != kEndOfBlock) {
            write(to, rest_, number);
            to.add(0, static_cast<int>(number & 15));
        }
        write(to, rest_, kEndOfBlock);
    }

    [[nodiscard]] bool isDone() const { return left_ == 0; }

    /// A number that makes a block longer by an odd number of bits; the block's end where there is none.
    [[nodiscard]] std::size_t oddNumber() const {
        for (std::size_t symbol = 1; symbol < rest_.lengths.size(); ++symbol) {
            if (rest_.has(symbol) && (symbol & 15) != 0 && (rest_.lengths[symbol] + symbol) % 2 == 1)
                return symbol;
        }
        return kEndOfBlock;
    }

 private:
    static void write(BitWriter& to, const JpegCode& code, std::size_t symbol) {
        to.add(code.bits[symbol], code.lengths[symbol]);
    }

    JpegCode means_;
    JpegCode rest_;
    std::int64_t left_;
};

/// Writes a row of blocks, `odd` of the first component's blocks longer by an odd number of bits. False where
/// the row is too short to add up to the means.
bool writeEmptyRow(const JpegReading& header, std::vector<EmptyBlocks> components, int odd, BitWriter& to) {
    const std::size_t number = components.front().oddNumber();
    for (int group = 0; group < header.groupsPerRow(); ++group) {
        for (std::size_t i = 0; i < components.size(); ++i) {
            for (int block = 0; block < header.blocksOfGroup(i); ++block)
                components[i].add(to, i == 0 && odd-- > 0 ? number : kEndOfBlock);
        }
    }
    return odd <= 0 &&
           std::all_of(components.begin(), components.end(), [](const auto& each) { return each.isDone(); });
}

std::vector<EmptyBlocks> emptyBlocks(const JpegReading& header, const JpegPlace& place) {
    const jpeg_decompress_struct& info = header.info();
    std::vector<EmptyBlocks> components;
    for (std::size_t i = 0; i < static_cast<std::size_t>(info.comps_in_scan); ++i) {
        const jpeg_component_info& component = *info.cur_comp_info[i];
        const auto means = JpegCode::of(info.dc_huff_tbl_ptrs, component.dc_tbl_no);
        const auto rest = JpegCode::of(info.ac_huff_tbl_ptrs, component.ac_tbl_no);
        if (!means || !rest)
            return {};
        components.emplace_back(*means, *rest, place.means[i]);
        if (!components.back().isPossible())
            return {};
    }
    return components;
}

}  // namespace

std::optional<JpegTail> jpegTail(const JpegReading& header, Bytes file, const JpegPlace& place,
                                 int blockRow) {
    const auto above =
        static_cast<std::uint64_t>(blockRow - 1) * static_cast<std::uint64_t>(header.blockRows());
    const std::vector<std::uint8_t> told =
        headerWithHeight(file.first(header.dataStart()), header.height() - above);
    const std::vector<EmptyBlocks> components = emptyBlocks(header, place);
    if (told.empty() || components.empty())
        return std::nullopt;
    for (int odd = 0; odd < 8; ++odd) {
        JpegTail tail{told, {}};
        BitWriter writer(tail.start);
        if (!writeEmptyRow(header, components, odd, writer))
            return std::nullopt;
        if (writer.begun() != place.bit)
            continue;
        tail.rest = part(file, place.byte);
        if (place.bit != 0) {  // the byte is shared with what is above
            writer.add(tail.rest[0], 8 - place.bit);
            tail.rest = part(tail.rest, tail.rest[0] == 0xFF ? 2 : 1);
        }
        return tail;
    }
    return std::nullopt;
}

}  // namespace trimora::codecs
