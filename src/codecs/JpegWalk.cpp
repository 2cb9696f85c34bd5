#include "codecs/JpegWalk.h"

#include <algorithm>
#include <bit>
#include <cstring>

namespace trimora::codecs {
namespace {

constexpr std::uint8_t kMarker = 0xFF;  // in front of a marker, and of a zero where it is data itself
constexpr unsigned kNumbersOfABlock = DCTSIZE2;

constexpr std::size_t kCleanedAtOnce = 1 << 16;
// 64 numbers of 31 bits, and what refill() reads ahead.
constexpr std::size_t kMostBytesOfABlock = 64 * 31 / 8 + 16;

/// The number that follows a symbol which says how many bits it has: the lower half of them is negative.
/// Without branches, as nobody could foretell them.
int numberOf(std::uint64_t waiting, int bits) {
    const int value = static_cast<int>(waiting >> 1 >> (63 - bits));
    const int isPositive = -static_cast<int>(waiting >> 63);
    return value + (~isPositive & (1 - (1 << bits)));
}

}  // namespace

std::optional<JpegWalk> JpegWalk::begin(const JpegReading& header, Bytes file) {
    const jpeg_decompress_struct& info = header.info();
    // Marks to read again from would have to be counted; a lone component has rows of its own.
    const bool isUsual =
        info.restart_interval == 0 && info.comps_in_scan == info.num_components &&
        (info.comps_in_scan > 1 || (info.max_h_samp_factor == 1 && info.max_v_samp_factor == 1));
    if (!isUsual)
        return std::nullopt;
    JpegWalk walk;
    for (std::size_t i = 0; i < static_cast<std::size_t>(info.comps_in_scan); ++i) {
        if (!walk.addBlocksOf(header, i))
            return std::nullopt;
    }
    walk.groupsPerRow_ = header.groupsPerRow();
    walk.file_ = file;
    walk.clean_.assign(kCleanedAtOnce + 2 * kMostBytesOfABlock, 0);
    walk.cleanStart_ = walk.cleanEnd_ = header.dataStart();
    walk.bits_.next = walk.clean_.data();
    return walk;
}

bool JpegWalk::addBlocksOf(const JpegReading& header, std::size_t component) {
    const jpeg_decompress_struct& info = header.info();
    const jpeg_component_info& added = *info.cur_comp_info[component];
    std::shared_ptr<const Codes> codes;
    for (const Block& block : blocks_) {  // shared where they are the same: they are to stay in the cache
        const jpeg_component_info& other = *info.cur_comp_info[block.component];
        if (other.dc_tbl_no == added.dc_tbl_no && other.ac_tbl_no == added.ac_tbl_no)
            codes = block.codes;
    }
    if (!codes) {
        const auto means = JpegCode::of(info.dc_huff_tbl_ptrs, added.dc_tbl_no);
        const auto rest = JpegCode::of(info.ac_huff_tbl_ptrs, added.ac_tbl_no);
        if (!means || !rest)
            return false;
        codes = std::make_shared<const Codes>(Codes{JpegSteps(*means), JpegSteps(*rest)});
    }
    const auto count = static_cast<std::size_t>(header.blocksOfGroup(component));
    blocks_.insert(blocks_.end(), count, {component, codes});
    return true;
}

inline void JpegWalk::Bits::refill() {
    static_assert(std::endian::native == std::endian::little);
    std::uint64_t eight = 0;
    std::memcpy(&eight, next, sizeof eight);
    waiting |= __builtin_bswap64(eight) >> count;
    next += (63 - count) >> 3;
    count |= 56;
}

/// Bytes of the clean piece that have been used, one that was begun not counted.
std::size_t JpegWalk::bytesUsed() const {
    return static_cast<std::size_t>(bits_.next - clean_.data()) -
           static_cast<std::size_t>((bits_.count + 7) / 8);
}

/// Puts another piece of the data behind what is left of this one. False where more was used than there was.
bool JpegWalk::clean() {
    const std::size_t used = bytesUsed();
    if (used > cleanSize_)
        return false;
    const auto start = clean_.begin();
    const auto usedEnd = start + static_cast<std::ptrdiff_t>(used);
    cleanStart_ += used + static_cast<std::size_t>(std::count(start, usedEnd, kMarker));
    std::copy(usedEnd, start + static_cast<std::ptrdiff_t>(cleanSize_), start);
    bits_.next -= used;
    cleanSize_ -= used;
    while (cleanSize_ < kCleanedAtOnce && cleanEnd_ < file_.size()) {
        const std::uint8_t* const from = file_.data() + cleanEnd_;
        const std::size_t most = std::min(kCleanedAtOnce - cleanSize_, file_.size() - cleanEnd_);
        const auto* const marker = static_cast<const std::uint8_t*>(std::memchr(from, kMarker, most));
        const std::size_t plain = marker == nullptr ? most : static_cast<std::size_t>(marker - from);
        std::memcpy(clean_.data() + cleanSize_, from, plain);
        cleanSize_ += plain;
        cleanEnd_ += plain;
        if (marker == nullptr)
            continue;
        if (cleanEnd_ + 1 >= file_.size() || file_[cleanEnd_ + 1] != 0)
            break;
        clean_[cleanSize_++] = kMarker;
        cleanEnd_ += 2;
    }
    std::fill_n(clean_.begin() + static_cast<std::ptrdiff_t>(cleanSize_), 2 * kMostBytesOfABlock, 0);
    return true;
}

inline bool JpegWalk::passBlock(const Block& block, Bits& bits) {
    bits.refill();
    const JpegStep mean = block.codes->means.one(bits.waiting);
    if (mean.codeBits == 0)
        return false;
    bits.drop(mean.codeBits);
    means_[block.component] += numberOf(bits.waiting, mean.bits - mean.codeBits);
    bits.drop(mean.bits - mean.codeBits);
    const JpegSteps& rest = block.codes->rest;
    unsigned reached = 1;
    while (reached < kNumbersOfABlock) {
        bits.refill();
        std::uint32_t step = rest.two(bits.waiting);
        if (step == 0) {
            const JpegStep rare = rest.one(bits.waiting);
            if (rare.codeBits == 0)
                return false;
            const std::uint32_t alone = rare.bits | std::uint32_t{rare.distance} << 8;
            step = alone << 16 | alone;
        }
        // The second is of this block only where the first does not end it.
        const std::uint32_t taken = reached + (step >> 24) < kNumbersOfABlock ? step : step >> 16;
        bits.drop(static_cast<int>(taken & 0xFF));
        reached += taken >> 8 & 0xFF;
    }
    return reached == kNumbersOfABlock || reached >= JpegStep::kEndOfBlock;
}

bool JpegWalk::passRow() {
    Bits bits = bits_;  // a copy whose address nobody has: it is to stay in registers
    for (int group = 0; group < groupsPerRow_; ++group) {
        for (const Block& block : blocks_) {
            const auto taken = static_cast<std::size_t>(bits.next - clean_.data());
            if (taken + kMostBytesOfABlock > cleanSize_) {
                bits_ = bits;
                if (!clean())
                    return false;
                bits = bits_;
            }
            if (!passBlock(block, bits))
                return false;
        }
    }
    bits_ = bits;
    ++blockRow_;
    return isWithinData();
}

/// Whether all bits that have been used are data, and none of them the zeros behind it.
bool JpegWalk::isWithinData() const {
    const auto taken = 8 * static_cast<std::size_t>(bits_.next - clean_.data());
    return taken - static_cast<std::size_t>(bits_.count) <= 8 * cleanSize_;
}

bool JpegWalk::goTo(int blockRow) {
    while (blockRow_ < blockRow) {
        if (!passRow())
            return false;
    }
    return true;
}

JpegPlace JpegWalk::place() const {
    const std::size_t used = bytesUsed();
    const auto usedEnd = clean_.begin() + static_cast<std::ptrdiff_t>(used);
    JpegPlace place;
    place.byte = cleanStart_ + used + static_cast<std::size_t>(std::count(clean_.begin(), usedEnd, kMarker));
    place.bit = (8 - bits_.count % 8) % 8;
    place.means = means_;
    return place;
}

}  // namespace trimora::codecs
