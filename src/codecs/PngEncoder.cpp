#include "codecs/PngEncoder.h"

#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstdlib>
#include <cstring>
#include <new>
#include <string_view>
#include <utility>
#include <vector>

#include "codecs/PixelRows.h"

namespace trimora::codecs {
namespace {

using foundation::AlphaMode;
using foundation::BitmapView;
using foundation::Error;
using foundation::Result;
using Buffer = std::vector<std::uint8_t>;
using Output = cutengine::PictureEncoder::Output;

constexpr std::size_t kBytesPerPixel = 4;
// A band is packed on its own: large enough that what it cannot refer back to costs nothing (the format
// looks back 32 KiB at most), small enough that every core has one.
constexpr std::size_t kBandBytes = std::size_t{1} << 20;
// Photographs hardly shrink above this level, and each step costs a quarter more time.
constexpr int kLevel = 3;
constexpr int kPlainDeflate = -15;  // the largest window, without head and checksum
constexpr int kMemoryLevel = 9;

enum Filter : std::uint8_t { kNone, kSub, kUp, kAverage, kPaeth, kFilterCount };

/// The neighbour (left a, above b, above left c) that is nearest to a + b - c.
int paeth(int a, int b, int c) {
    const int toA = std::abs(b - c);
    const int toB = std::abs(a - c);
    const int toC = std::abs(a + b - 2 * c);
    const int aOrB = toA <= toB ? a : b;
    return std::min(toA, toB) <= toC ? aOrB : c;
}

int predicted(Filter filter, int left, int above, int aboveLeft) {
    switch (filter) {
        case kSub:
            return left;
        case kUp:
            return above;
        case kAverage:
            return (left + above) / 2;
        case kPaeth:
            return paeth(left, above, aboveLeft);
        default:
            return 0;
    }
}

/// The row as its differences from what the filter predicts; returns the sum of their sizes. Rows are
/// preceded in memory by one pixel of zeros.
template <Filter filter>
std::uint32_t filtered(const std::uint8_t* row, const std::uint8_t* above, std::size_t size,
                       std::uint8_t* to) {
    std::uint32_t sum = 0;
    const std::uint8_t* const left = row - kBytesPerPixel;
    const std::uint8_t* const aboveLeft = above - kBytesPerPixel;
    for (std::size_t i = 0; i < size; ++i) {
        const auto difference =
            static_cast<std::uint8_t>(row[i] - predicted(filter, left[i], above[i], aboveLeft[i]));
        to[i] = difference;
        sum += std::min<std::uint32_t>(difference, 256U - difference);
    }
    return sum;
}

/// Filters row after row of a band, choosing for each the filter whose differences are smallest.
class RowFilter {
 public:
    explicit RowFilter(std::size_t rowSize)
        : size_(rowSize), row_(rowSize + kBytesPerPixel), above_(rowSize + kBytesPerPixel) {
        for (Buffer& candidate : candidates_)
            candidate.resize(rowSize);
    }

    /// Where the next row is to be written, R,G,B,A straight.
    std::uint8_t* next() {
        std::swap(row_, above_);
        return row_.data() + kBytesPerPixel;
    }

    /// Appends the row written last, filtered, to `to`.
    void append(Buffer& to) {
        const std::uint8_t* const row = row_.data() + kBytesPerPixel;
        const std::uint8_t* const above = above_.data() + kBytesPerPixel;
        const std::array<std::uint32_t, kFilterCount> sums = {
            filtered<kNone>(row, above, size_, candidates_[kNone].data()),
            filtered<kSub>(row, above, size_, candidates_[kSub].data()),
            filtered<kUp>(row, above, size_, candidates_[kUp].data()),
            filtered<kAverage>(row, above, size_, candidates_[kAverage].data()),
            filtered<kPaeth>(row, above, size_, candidates_[kPaeth].data())};
        const auto best = static_cast<std::size_t>(std::min_element(sums.begin(), sums.end()) - sums.begin());
        to.push_back(static_cast<std::uint8_t>(best));
        to.insert(to.end(), candidates_[best].begin(), candidates_[best].end());
    }

 private:
    std::size_t size_;
    Buffer row_;
    Buffer above_;
    std::array<Buffer, kFilterCount> candidates_;
};

/// Row `y` as the file holds it: R,G,B,A straight, nothing under alpha 0.
void straightRow(BitmapView picture, int y, std::uint8_t* to) {
    const auto count = static_cast<std::size_t>(picture.width);
    std::memcpy(to, picture.row(y), count * kBytesPerPixel);
    if (picture.alphaMode == AlphaMode::premultiplied)
        unpremultiply(to, count);
    else if (picture.alphaMode == AlphaMode::straight)
        clearUnderAlphaZero(to, count);
    exchangeRedAndBlue(to, count);
}

/// Rows first..end - 1 in the form in which they are packed.
Buffer filteredRows(BitmapView picture, int first, int end) {
    const auto rowSize = static_cast<std::size_t>(picture.width) * kBytesPerPixel;
    RowFilter filter(rowSize);
    Buffer rows;
    rows.reserve((rowSize + 1) * static_cast<std::size_t>(end - first));
    if (first > 0)
        straightRow(picture, first - 1, filter.next());
    for (int y = first; y < end; ++y) {
        straightRow(picture, y, filter.next());
        filter.append(rows);
    }
    return rows;
}

/// One band, packed so that bands can stand one after another in one stream.
struct Band {
    Buffer packed;
    uLong checksum = 0;
    std::size_t size = 0;  ///< before packing
    bool ok = false;
};

Band pack(const Buffer& rows, bool last) {
    Band band;
    band.size = rows.size();
    band.checksum = adler32_z(adler32(0, nullptr, 0), rows.data(), rows.size());
    z_stream stream{};
    if (deflateInit2(&stream, kLevel, Z_DEFLATED, kPlainDeflate, kMemoryLevel, Z_DEFAULT_STRATEGY) != Z_OK)
        return band;
    constexpr std::size_t kRoomForMark = 16;  // the empty block that ends every band but the last
    band.packed.resize(deflateBound(&stream, static_cast<uLong>(rows.size())) + kRoomForMark);
    stream.next_in = const_cast<Bytef*>(rows.data());
    stream.avail_in = static_cast<uInt>(rows.size());
    stream.next_out = band.packed.data();
    stream.avail_out = static_cast<uInt>(band.packed.size());
    const int answer = deflate(&stream, last ? Z_FINISH : Z_FULL_FLUSH);
    band.ok = answer == (last ? Z_STREAM_END : Z_OK) && stream.avail_in == 0 && stream.avail_out > 0;
    band.packed.resize(stream.total_out);
    deflateEnd(&stream);
    return band;
}

void append32(Buffer& to, std::uint64_t value) {
    for (const int shift : {24, 16, 8, 0})
        to.push_back(static_cast<std::uint8_t>(value >> shift));
}

/// Hands out one chunk: length, type, contents, checksum of the last two.
Result<void> writeChunk(std::string_view type, const Buffer& contents, const Output& output) {
    Buffer chunk;
    chunk.reserve(contents.size() + 12);
    append32(chunk, contents.size());
    chunk.insert(chunk.end(), type.begin(), type.end());
    chunk.insert(chunk.end(), contents.begin(), contents.end());
    append32(chunk, crc32_z(0, chunk.data() + 4, chunk.size() - 4));
    return output(chunk);
}

Result<void> writeHead(BitmapView picture, const Output& output) {
    static constexpr std::array<std::uint8_t, 8> kSignature = {0x89, 'P', 'N', 'G', '\r', '\n', 0x1A, '\n'};
    if (Result<void> written = output(kSignature); !written)
        return written;
    Buffer header;
    append32(header, static_cast<std::uint64_t>(picture.width));
    append32(header, static_cast<std::uint64_t>(picture.height));
    constexpr std::array<std::uint8_t, 5> kKind = {8, 6, 0, 0, 0};  // 8 bits, RGB with alpha, not interlaced
    header.insert(header.end(), kKind.begin(), kKind.end());
    if (Result<void> written = writeChunk("IHDR", header, output); !written)
        return written;
    return writeChunk("sRGB", {0}, output);  // perceptual
}

/// Packs the bands a few at a time and hands them out in order.
class BandWriter {
 public:
    BandWriter(BitmapView picture, foundation::Workers& workers, const Output& output)
        : picture_(picture), workers_(workers), output_(output) {
        const auto rowSize = static_cast<std::size_t>(picture.width) * kBytesPerPixel;
        rowsPerBand_ = static_cast<int>(std::clamp<std::size_t>(kBandBytes / rowSize, 1, 1U << 20));
        bands_ = (picture.height + rowsPerBand_ - 1) / rowsPerBand_;
    }

    Result<void> writeAll() {
        const int atOnce = workers_.width() * 2;
        for (int first = 0; first < bands_; first += atOnce) {
            std::vector<Band> group(static_cast<std::size_t>(std::min(atOnce, bands_ - first)));
            workers_.run(static_cast<int>(group.size()),
                         [&](int i) { group[static_cast<std::size_t>(i)] = packed(first + i); });
            for (std::size_t i = 0; i < group.size(); ++i) {
                if (Result<void> written = write(std::move(group[i]), first + static_cast<int>(i)); !written)
                    return written;
            }
        }
        return {};
    }

 private:
    /// A task must not throw; a band that memory was refused for is not ok.
    Band packed(int index) const {
        const int first = index * rowsPerBand_;
        try {
            return pack(filteredRows(picture_, first, std::min(first + rowsPerBand_, picture_.height)),
                        index == bands_ - 1);
        } catch (const std::bad_alloc&) {
            return {};
        }
    }

    Result<void> write(Band band, int index) {
        if (!band.ok)
            return Error{"not enough memory to write the picture"};
        checksum_ = adler32_combine(checksum_, band.checksum, static_cast<z_off_t>(band.size));
        if (index == 0)
            band.packed.insert(band.packed.begin(), {0x78, 0x5E});  // zlib's head: 32 KiB window, fast
        if (index == bands_ - 1)
            append32(band.packed, checksum_);
        return writeChunk("IDAT", band.packed, output_);
    }

    BitmapView picture_;
    foundation::Workers& workers_;
    const Output& output_;
    int rowsPerBand_ = 1;
    int bands_ = 1;
    uLong checksum_ = adler32(0, nullptr, 0);
};

}  // namespace

Result<void> PngEncoder::encodePng(BitmapView picture, const Output& output) {
    if (picture.isEmpty())
        return Error{"there is no picture to write"};
    try {
        if (Result<void> written = writeHead(picture, output); !written)
            return written;
        if (Result<void> written = BandWriter(picture, workers_, output).writeAll(); !written)
            return written;
        return writeChunk("IEND", {}, output);
    } catch (const std::bad_alloc&) {
        return Error{"not enough memory to write the picture"};
    }
}

}  // namespace trimora::codecs
