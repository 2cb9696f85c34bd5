#include "codecs/JpegWalk.h"

#include <bit>
#include <cstring>

namespace trimora::codecs {
namespace {

constexpr int kMostBitsOfAStep = 32;
constexpr std::uint8_t kMarker = 0xFF;  // in front of a marker, and of a zero where it is data itself
constexpr int kNumbersOfABlock = DCTSIZE2;

bool holdsMarker(std::uint32_t four) {
    return ((~four - 0x01010101U) & four & 0x80808080U) != 0;
}

/// The number that follows a symbol which says how many bits it has: the lower half of them is negative.
int numberOf(std::uint64_t waiting, int bits) {
    if (bits == 0)
        return 0;
    const int value = static_cast<int>(waiting >> (64 - bits));
    return value >= 1 << (bits - 1) ? value : value - (1 << bits) + 1;
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
    walk.file_ = file.data();
    walk.bits_.next = file.data() + header.dataStart();
    walk.bits_.end = file.data() + file.size();
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
        const auto means = JpegCode::of(info.dc_huff_tbl_ptrs[added.dc_tbl_no]);
        const auto rest = JpegCode::of(info.ac_huff_tbl_ptrs[added.ac_tbl_no]);
        if (!means || !rest)
            return false;
        codes = std::make_shared<const Codes>(Codes{JpegSteps(*means), JpegSteps(*rest)});
    }
    const auto count = static_cast<std::size_t>(header.blocksOfGroup(component));
    blocks_.insert(blocks_.end(), count, {component, codes});
    return true;
}

/// Makes the waiting bits 32 or more.
inline void JpegWalk::Bits::refill() {
    if (count >= kMostBitsOfAStep)
        return;
    std::uint32_t four = 0;
    if (end - next < static_cast<std::ptrdiff_t>(sizeof four)) {
        refillByByte();
        return;
    }
    std::memcpy(&four, next, sizeof four);
    if (holdsMarker(four)) {
        refillByByte();
        return;
    }
    static_assert(std::endian::native == std::endian::little);
    waiting |= static_cast<std::uint64_t>(__builtin_bswap32(four)) << (32 - count);
    count += 32;
    next += sizeof four;
}

void JpegWalk::Bits::refillByByte() {
    for (; count <= 56; count += 8) {
        if (next == end || (*next == kMarker && (next + 1 == end || next[1] != 0))) {
            made += 8;
            continue;
        }
        waiting |= static_cast<std::uint64_t>(*next) << (56 - count);
        next += *next == kMarker ? 2 : 1;
    }
}

inline bool JpegWalk::passBlock(const Block& block, Bits& bits) {
    bits.refill();
    const JpegSteps::Step mean = block.codes->means.at(bits.waiting);
    if (mean.bits == 0)
        return false;
    bits.drop(mean.bits);
    means_[block.component] += numberOf(bits.waiting, mean.further);
    bits.drop(mean.further);
    int reached = 1;
    while (reached < kNumbersOfABlock) {
        bits.refill();
        const JpegSteps::Step step = block.codes->rest.at(bits.waiting);
        if (step.bits == 0)
            return false;
        bits.drop(step.bits + step.further);
        reached += step.distance;
    }
    return reached == kNumbersOfABlock || reached >= JpegSteps::kEndOfBlock;
}

bool JpegWalk::passRow() {
    Bits bits = bits_;
    for (int group = 0; group < groupsPerRow_; ++group) {
        for (const Block& block : blocks_) {
            if (!passBlock(block, bits))
                return false;
        }
    }
    bits_ = bits;
    ++blockRow_;
    return bits.made <= bits.count;
}

bool JpegWalk::goTo(int blockRow) {
    while (blockRow_ < blockRow) {
        if (!passRow())
            return false;
    }
    return true;
}

JpegPlace JpegWalk::place() const {
    JpegPlace place;
    const int unread = bits_.count - bits_.made;
    const std::uint8_t* at = bits_.next;
    for (int byte = 0; byte < (unread + 7) / 8; ++byte)
        at -= at[-1] == 0 && at[-2] == kMarker ? 2 : 1;
    place.byte = static_cast<std::size_t>(at - file_);
    place.bit = (8 - unread % 8) % 8;
    place.means = means_;
    return place;
}

}  // namespace trimora::codecs
