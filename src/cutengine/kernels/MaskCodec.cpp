#include "cutengine/kernels/MaskCodec.h"

#include <algorithm>
#include <array>
#include <cerrno>
#include <string>
#include <string_view>
#include <utility>

#include "cutengine/kernels/DeflateBlock.h"
#include "cutengine/kernels/MaskPixels.h"
#include "cutengine/kernels/PngChunks.h"
#include "cutengine/kernels/PngRows.h"
#include "cutengine/kernels/RunDeflate.h"

// A file is a header, the checksum, and the compressed stream in data chunks: its head, a strip a chunk, its
// end.
namespace trimora::cutengine::kernels {
namespace {

using foundation::Bitmap;
using foundation::BitmapView;
using foundation::Error;
using foundation::IntRect;
using foundation::PixelBuffer;
using foundation::Result;
using Bytes = std::vector<std::uint8_t>;

constexpr std::uint8_t kBitDepth = 8;
constexpr std::uint8_t kColourWithAlpha = 6;
constexpr std::size_t kHeaderSize = 13;
constexpr int kWord = 4;
constexpr std::size_t kChunksAroundStrips = 2;

// Ancillary, private, not to be copied by programs that change the pixels.
constexpr std::string_view kChecksumChunk = "ckSM";
constexpr std::string_view kDataChunk = "IDAT";

struct Header {
    int width = 0;
    int height = 0;
    bool isOurKind = false;  // 8-bit RGB with alpha, not interlaced
};

bool sameBytes(std::span<const std::uint8_t> some, std::span<const std::uint8_t> others) {
    return std::equal(some.begin(), some.end(), others.begin(), others.end());
}

// Of the whole picture, made of those of its strips in their order.
class FileChecksum {
 public:
    FileChecksum(int width, int height) : state_(static_cast<std::uint64_t>(width)) {
        state_.add(static_cast<std::uint64_t>(height));
    }
    void add(std::uint64_t strip) { state_.add(strip); }
    [[nodiscard]] std::uint64_t value() const { return state_.value(); }

 private:
    PixelChecksum state_;
};

Bytes headerData(int width, int height) {
    Bytes data;
    appendBigEndian(data, static_cast<std::uint64_t>(width), kWord);
    appendBigEndian(data, static_cast<std::uint64_t>(height), kWord);
    data.push_back(kBitDepth);
    data.push_back(kColourWithAlpha);
    data.resize(kHeaderSize, 0);
    return data;
}

Bytes streamEnd(const PackedMask& mask) {
    ZlibSums sums;
    for (const MaskStrip& strip : mask.strips)
        sums.append(strip.sums);
    Bytes end(kStreamEnd.begin(), kStreamEnd.end());
    appendBigEndian(end, sums.checksum(), kWord);
    return end;
}

std::uint64_t checksumOf(const PackedMask& mask) {
    FileChecksum checksum(mask.width, mask.height);
    for (const MaskStrip& strip : mask.strips)
        checksum.add(strip.checksum);
    return checksum.value();
}

Bytes fileOf(const PackedMask& mask) {
    Bytes checksum;
    appendBigEndian(checksum, checksumOf(mask), sizeof checksumOf(mask));
    constexpr std::size_t kAroundData = 3 * kWord;
    std::size_t size = 128;  // all but the strips
    for (const MaskStrip& strip : mask.strips)
        size += strip.bytes.size() + kAroundData;

    Bytes file(kPngSignature.begin(), kPngSignature.end());
    file.reserve(size);
    appendPngChunk(file, {"IHDR", headerData(mask.width, mask.height)});
    appendPngChunk(file, {kChecksumChunk, checksum});
    appendPngChunk(file, {kDataChunk, kStreamHead});
    for (const MaskStrip& strip : mask.strips)
        appendPngChunk(file, {kDataChunk, strip.bytes});
    appendPngChunk(file, {kDataChunk, streamEnd(mask)});
    appendPngChunk(file, {"IEND", {}});
    return file;
}

Result<Header> readHeader(const std::vector<PngChunk>& chunks, int maxSide) {
    const PngChunk& first = chunks.front();
    if (first.type != "IHDR" || first.data.size() != kHeaderSize)
        return Error{"the PNG file has no header"};
    const std::uint64_t width = bigEndian(first.data.first(4));
    const std::uint64_t height = bigEndian(first.data.subspan(4, 4));
    const auto most = static_cast<std::uint64_t>(std::max(0, maxSide));
    if (width == 0 || height == 0 || width > most || height > most)
        return Error{"the PNG file holds " + std::to_string(width) + " x " + std::to_string(height) +
                     " pixels, which is not possible here"};
    constexpr std::array<std::uint8_t, 5> kOurKind = {kBitDepth, kColourWithAlpha, 0, 0, 0};
    const auto kind = first.data.subspan(8);
    return Header{static_cast<int>(width), static_cast<int>(height),
                  std::equal(kind.begin(), kind.end(), kOurKind.begin())};
}

// The data chunks of a file that is laid out as ours are; none of another.
std::vector<std::span<const std::uint8_t>> ourData(const Header& header,
                                                   const std::vector<PngChunk>& chunks) {
    std::vector<std::span<const std::uint8_t>> data;
    bool hasChecksum = false;
    for (const PngChunk& chunk : chunks) {
        hasChecksum = hasChecksum || chunk.type == kChecksumChunk;
        if (chunk.type == kDataChunk)
            data.push_back(chunk.data);
    }
    if (!header.isOurKind || !hasChecksum || data.size() != stripsOf(header.height) + kChunksAroundStrips ||
        !sameBytes(data.front(), kStreamHead))
        return {};
    return data;
}

Result<void> check(const std::vector<PngChunk>& chunks, std::uint64_t checksum) {
    const bool isAsWritten = std::all_of(chunks.begin(), chunks.end(), [&](const PngChunk& chunk) {
        return chunk.type != kChecksumChunk ||
               (chunk.data.size() == sizeof checksum && bigEndian(chunk.data) == checksum);
    });
    if (!isAsWritten)
        return Error{"the PNG file is damaged: its picture is not the one that was written"};
    return {};
}

// Reads the strips of a file of ours.
class StripsReader {
 public:
    /// `known` is the mask that `changed` has been changed of; `data` as in the file, where other chunks
    /// follow.
    StripsReader(const Header& header, std::vector<std::span<const std::uint8_t>> data, PackedMask known,
                 const IntRect& changed)
        : data_(std::move(data)), mask_(std::move(known)), end_(data_.size() - kChunksAroundStrips) {
        if (mask_.hasSizeOf(header.width, header.height)) {
            while (first_ < end_ && isShown(first_, changed))
                ++first_;
            while (end_ > first_ && isShown(end_ - 1, changed))
                --end_;
        } else {
            mask_ = {header.width, header.height, std::vector<MaskStrip>(end_)};
        }
    }

    /// False where the file is damaged, or only looks like one of ours; an error where memory has run out.
    Result<bool> read() {
        rows_.isWhole = end_ - first_ == mask_.strips.size();
        if (first_ < end_) {
            rows_.top = mask_.area(first_).y;
            Result<Bitmap> pixels = Bitmap::create(mask_.width, mask_.area(end_ - 1).bottom() - rows_.top);
            if (!pixels)
                return pixels.error();
            rows_.pixels = std::move(*pixels);
        }
        for (std::size_t k = first_; k < end_; ++k) {
            const std::span<const std::uint8_t> bytes = packed(k);
            IntRect area = mask_.area(k);
            area.y -= rows_.top;
            auto strip = unpackStrip({bytes.data(), bytes.size() + BitReader::kSlack},
                                     subview(rows_.pixels.view(), area), static_cast<int>(k));
            if (!strip)
                return false;
            mask_.strips[k] = std::move(*strip);
        }
        return sameBytes(data_.back(), streamEnd(mask_));
    }

    MaskRows& rows() { return rows_; }
    PackedMask& mask() { return mask_; }

 private:
    [[nodiscard]] std::span<const std::uint8_t> packed(std::size_t strip) const { return data_[strip + 1]; }
    [[nodiscard]] bool isShown(std::size_t strip, const IntRect& changed) const {
        return intersected(mask_.area(strip), changed).isEmpty() &&
               sameBytes(mask_.strips[strip].bytes, packed(strip));
    }

    std::vector<std::span<const std::uint8_t>> data_;
    PackedMask mask_;
    std::size_t first_ = 0;  // of the strips that are to be read
    std::size_t end_;
    MaskRows rows_;
};

// The mask in a file of another program, or in a damaged one.
Result<MaskRows> readWhole(const Header& header, const std::vector<PngChunk>& chunks) {
    Result<Bitmap> pixels = Bitmap::create(header.width, header.height);
    if (!pixels)
        return pixels.error();
    const Result<PixelBuffer> rows = readPngRows(chunks, header.width, header.height);
    if (!rows)
        return rows.error();
    FileChecksum checksum(header.width, header.height);
    const PackedMask mask{header.width, header.height, {}};
    const std::size_t rowBytes = kMaskPixelBytes * static_cast<std::size_t>(header.width);
    for (std::size_t k = 0; k < stripsOf(header.height); ++k) {
        const IntRect area = mask.area(k);
        checksum.add(takeStrip(rows->data() + static_cast<std::size_t>(area.y) * rowBytes,
                               subview(pixels->view(), area), static_cast<int>(k)));
    }
    if (const Result<void> checked = check(chunks, checksum.value()); !checked)
        return checked.error();
    return MaskRows{std::move(*pixels)};
}

}  // namespace

Result<Bytes> MaskFiles::write(BitmapView plane, const IntRect& changed) {
    PackedMask mask = std::exchange(kept_, {});
    if (plane.isEmpty())
        return Error{"there is no mask to write"};
    const bool isKnown = mask.hasSizeOf(plane.width, plane.height);
    mask.width = plane.width;
    mask.height = plane.height;
    mask.strips.resize(stripsOf(plane.height));
    for (std::size_t k = 0; k < mask.strips.size(); ++k) {
        const IntRect area = mask.area(k);
        if (!isKnown || !intersected(area, changed).isEmpty())
            mask.strips[k] = packStrip(subview(plane, area), static_cast<int>(k));
    }
    Bytes file = fileOf(mask);
    kept_ = std::move(mask);
    return file;
}

Result<MaskRows> MaskFiles::read(std::span<const std::uint8_t> file, int maxSide, const IntRect& changed) {
    PackedMask known = std::exchange(kept_, {});
    const Result<std::vector<PngChunk>> chunks = readPngChunks(file);
    if (!chunks)
        return chunks.error();
    const Result<Header> header = readHeader(*chunks, maxSide);
    if (!header)
        return header.error();
    auto data = ourData(*header, *chunks);
    if (data.empty())
        return readWhole(*header, *chunks);
    const bool sameSize = known.hasSizeOf(header->width, header->height);
    StripsReader strips(*header, std::move(data), std::move(known), changed);
    const Result<bool> isRead = strips.read();
    if (!isRead)
        return isRead.error();
    if (!*isRead)
        return readWhole(*header, *chunks);
    if (const Result<void> checked = check(*chunks, checksumOf(strips.mask())); !checked)
        return checked.error();
    if (sameSize)
        kept_ = std::move(strips.mask());
    return std::move(strips.rows());
}

Result<Bytes> encodeMask(BitmapView plane) {
    return MaskFiles().write(plane, plane.bounds());
}

Result<Bitmap> decodeMask(std::span<const std::uint8_t> file, int maxSide) {
    Result<MaskRows> rows = MaskFiles().read(file, maxSide, {});
    if (!rows)
        return rows.error();
    return std::move(rows->pixels);
}

}  // namespace trimora::cutengine::kernels
