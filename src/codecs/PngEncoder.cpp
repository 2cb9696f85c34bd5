#include "codecs/PngEncoder.h"

#include <libdeflate.h>
#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <cstring>
#include <initializer_list>
#include <memory>
#include <new>
#include <span>
#include <string_view>
#include <utility>
#include <vector>

#include "codecs/PixelRows.h"
#include "codecs/RowRepeats.h"
#include "cutengine/kernels/PixelDeflate.h"
#include "cutengine/kernels/PngChunks.h"
#include "cutengine/kernels/RowFilter.h"
#include "foundation/PixelBuffer.h"

namespace trimora::codecs {

namespace kernels = cutengine::kernels;

namespace {

using foundation::AlphaMode;
using foundation::BitmapView;
using foundation::Error;
using foundation::PixelBuffer;
using foundation::Result;
using Buffer = std::vector<std::uint8_t>;
using cutengine::PictureRows;
using Output = cutengine::PictureEncoder::Output;

constexpr std::size_t kBytesPerPixel = 4;
// A band is packed on its own: large enough that a code fitted to it costs nothing, small enough that it
// stays in a core's cache between the steps.
constexpr std::size_t kBandBytes = std::size_t{1} << 19;
// For drawings; photographs hardly shrink by a search.
constexpr int kLevel = 6;
constexpr int kPlainDeflate = -15;  // the largest window, without head and checksum
constexpr int kMemoryLevel = 9;

/// Filters row after row of a band, choosing for each the filter whose differences are smallest.
class RowFiltering {
 public:
    explicit RowFiltering(std::size_t rowSize)
        : size_(rowSize), row_(rowSize + kBytesPerPixel), above_(rowSize + kBytesPerPixel) {}

    /// Where the next row is to be written, R,G,B,A straight.
    std::uint8_t* next() {
        std::swap(row_, above_);
        return row_.data() + kBytesPerPixel;
    }

    /// The row written last, filtered, with the filter's number before it.
    void filter(std::uint8_t* to) const {
        const std::uint8_t* const row = row_.data() + kBytesPerPixel;
        const std::uint8_t* const above = above_.data() + kBytesPerPixel;
        const auto costs = kernels::filterCosts(row, above, size_);
        const auto best = std::min_element(costs.begin(), costs.end()) - costs.begin();
        *to = static_cast<std::uint8_t>(best);
        kernels::filterRow(static_cast<kernels::RowFilter>(best), row, above, size_, to + 1);
    }

 private:
    std::size_t size_;
    Buffer row_;
    Buffer above_;
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

/// Rows first..end - 1 in the form in which they are packed; an empty buffer where memory is refused.
PixelBuffer filteredRows(BitmapView picture, int first, int end) {
    const auto rowSize = static_cast<std::size_t>(picture.width) * kBytesPerPixel;
    PixelBuffer rows = PixelBuffer::allocate((rowSize + 1) * static_cast<std::size_t>(end - first));
    if (!rows)
        return rows;
    RowFiltering filtering(rowSize);
    if (first > 0)
        straightRow(picture, first - 1, filtering.next());
    std::uint8_t* to = rows.data();
    for (int y = first; y < end; ++y, to += rowSize + 1) {
        straightRow(picture, y, filtering.next());
        filtering.filter(to);
    }
    return rows;
}

kernels::FilteredRows viewOf(const PixelBuffer& rows, BitmapView picture, int count) {
    const auto width = static_cast<std::size_t>(picture.width);
    return {{rows.data(), (1 + width * kBytesPerPixel) * static_cast<std::size_t>(count)}, width};
}

/// The rows with a search for earlier bytes, ended as packPixels() ends.
kernels::PackedBytes packSearching(const kernels::FilteredRows& rows) {
    z_stream stream{};
    if (deflateInit2(&stream, kLevel, Z_DEFLATED, kPlainDeflate, kMemoryLevel, Z_DEFAULT_STRATEGY) != Z_OK)
        return {};
    constexpr std::size_t kRoomForMark = 16;
    const std::size_t most = deflateBound(&stream, static_cast<uLong>(rows.bytes.size())) + kRoomForMark;
    kernels::PackedBytes packed{PixelBuffer::allocate(most)};
    if (packed.buffer) {
        stream.next_in = const_cast<Bytef*>(rows.bytes.data());
        stream.avail_in = static_cast<uInt>(rows.bytes.size());
        stream.next_out = packed.buffer.data();
        stream.avail_out = static_cast<uInt>(most);
        deflate(&stream, Z_FULL_FLUSH);
        packed.size = stream.total_out;
    }
    deflateEnd(&stream);
    return packed;
}

/// One band, packed so that bands can stand one after another in one stream.
struct Band {
    kernels::PackedBytes packed;  ///< an empty buffer where memory was refused
    std::uint32_t checksum = 0;   ///< of what it unpacks to
    std::size_t size = 0;         ///< of the same
};

Buffer bigEndian(std::uint64_t value) {
    Buffer bytes;
    kernels::appendBigEndian(bytes, value, 4);
    return bytes;
}

using Bytes = std::span<const std::uint8_t>;

/// Hands out one chunk: length, type, contents, checksum of the last two. The contents come in pieces.
Result<void> writeChunk(std::string_view type, std::initializer_list<Bytes> contents, const Output& output) {
    std::size_t length = 0;
    for (const Bytes& piece : contents)
        length += piece.size();
    Buffer head = bigEndian(length);
    head.insert(head.end(), type.begin(), type.end());
    std::uint32_t checksum = libdeflate_crc32(0, head.data() + 4, 4);
    Result<void> written = output(head);
    for (const Bytes& piece : contents) {
        if (!written)
            return written;
        if (piece.empty())
            continue;
        checksum = libdeflate_crc32(checksum, piece.data(), piece.size());
        written = output(piece);
    }
    return written ? output(bigEndian(checksum)) : written;
}

Result<void> writeHead(const PictureRows& picture, const Output& output) {
    if (Result<void> written = output(kernels::kPngSignature); !written)
        return written;
    constexpr std::array<std::uint8_t, 5> kKind = {8, 6, 0, 0, 0};  // 8 bits, RGB with alpha, not interlaced
    const Buffer width = bigEndian(static_cast<std::uint64_t>(picture.width()));
    const Buffer height = bigEndian(static_cast<std::uint64_t>(picture.height()));
    if (Result<void> written = writeChunk("IHDR", {width, height, kKind}, output); !written)
        return written;
    constexpr std::array<std::uint8_t, 1> kPerceptual = {0};
    return writeChunk("sRGB", {kPerceptual}, output);
}

/// Packs the bands a few at a time and hands them out in order.
class BandWriter {
 public:
    BandWriter(const PictureRows& picture, foundation::Workers& workers, const Output& output)
        : picture_(picture), workers_(workers), output_(output) {
        const auto rowSize = static_cast<std::size_t>(picture.width()) * kBytesPerPixel;
        rowsPerBand_ = static_cast<int>(std::clamp<std::size_t>(kBandBytes / rowSize, 1, 1U << 20));
        bands_ = (picture.height() + rowsPerBand_ - 1) / rowsPerBand_;
    }

    Result<void> writeAll() {
        for (int first = 0; first < bands_; first += kBandsPerLot) {
            if (Result<void> written = writeLot(first, std::min(first + kBandsPerLot, bands_)); !written)
                return written;
        }
        return {};
    }

 private:
    // A sample costs as much as a fifth of a band, so several bands share one.
    static constexpr int kBandsPerSample = 8;
    static constexpr int kPixelsPerPiece = 512;  // of a sample, from one band
    // Rows that have to be made are made for so many bands at a time.
    static constexpr int kBandsPerLot = 8 * kBandsPerSample;

    Result<void> writeLot(int begin, int end) {
        // The filters of a row look at the one above it. The first lot has none there, and one too many below
        // in its place: lots alike in size fit the same room.
        firstRow_ = std::max(begin * rowsPerBand_ - 1, 0);
        const int endRow = std::min(firstRow_ + kBandsPerLot * rowsPerBand_ + 1, picture_.height());
        const Result<BitmapView> rows = picture_.rows(firstRow_, endRow, room_);
        if (!rows)
            return rows.error();
        rows_ = *rows;
        lookForRepeats(begin, end);
        const int atOnce = workers_.width() * 4;
        for (int first = begin; first < end; first += atOnce) {
            std::vector<Band> group(static_cast<std::size_t>(std::min(atOnce, end - first)));
            workers_.run(static_cast<int>(group.size()), [&](int i) {
                const bool search = repeats_[static_cast<std::size_t>((first + i - begin) / kBandsPerSample)];
                group[static_cast<std::size_t>(i)] = packed(first + i, search);
            });
            for (std::size_t i = 0; i < group.size(); ++i) {
                if (Result<void> written = write(group[i], first + static_cast<int>(i)); !written)
                    return written;
            }
        }
        return {};
    }

    /// In the bands `begin` to `end`, which are those of a lot.
    void lookForRepeats(int begin, int end) {
        repeats_.resize(static_cast<std::size_t>((end - begin + kBandsPerSample - 1) / kBandsPerSample));
        workers_.run(static_cast<int>(repeats_.size()), [&](int i) {
            const int first = begin + i * kBandsPerSample;
            repeats_[static_cast<std::size_t>(i)] =
                whether([&] { return repeat(first, std::min(first + kBandsPerSample, end)); });
        });
    }

    /// Told from a piece of every band, each further to the right: the margins of a cut-out are clear, and
    /// tell nothing of the rest.
    [[nodiscard]] bool repeat(int begin, int end) const {
        const int width = picture_.width();
        const int piece = std::min(width, kPixelsPerPiece);
        const std::size_t pieceSize = kBytesPerPixel * static_cast<std::size_t>(piece);
        const std::size_t rowSize = 1 + kBytesPerPixel * static_cast<std::size_t>(width);
        Buffer sample;
        for (int band = begin; band < end; ++band) {
            const int first = band * rowsPerBand_;
            const int rows = std::min(rowsPerBand_, picture_.height() - first);
            const int taken = std::min(std::max(kPixelsPerPiece / width, 1), rows);
            const PixelBuffer part = filtered(first + (rows - taken) / 2, taken);
            if (!part)
                return false;
            const auto column = static_cast<std::size_t>(std::int64_t{band - begin} * (width - piece) /
                                                         (kBandsPerSample - 1));
            for (std::size_t i = 0; i < static_cast<std::size_t>(taken); ++i) {
                const std::uint8_t* const row = part.data() + i * rowSize;
                const std::uint8_t* const from = row + 1 + kBytesPerPixel * column;
                sample.push_back(*row);
                sample.insert(sample.end(), from, from + pieceSize);
            }
        }
        return repeats({sample, static_cast<std::size_t>(piece)});
    }

    /// Of the whole picture's rows, `count` from `first` on.
    [[nodiscard]] PixelBuffer filtered(int first, int count) const {
        return filteredRows(rows_, first - firstRow_, first - firstRow_ + count);
    }

    /// A task must not throw: false where memory is refused.
    template <typename Question>
    static std::uint8_t whether(const Question& question) {
        try {
            return question() ? 1 : 0;
        } catch (const std::bad_alloc&) {
            return 0;
        }
    }

    [[nodiscard]] Band packed(int index, bool search) const {
        const int first = index * rowsPerBand_;
        const int count = std::min(rowsPerBand_, picture_.height() - first);
        Band band;
        whether([&] {
            const PixelBuffer buffer = filtered(first, count);
            if (!buffer)
                return false;
            const kernels::FilteredRows rows = viewOf(buffer, rows_, count);
            band.size = rows.bytes.size();
            band.checksum = libdeflate_adler32(1, rows.bytes.data(), rows.bytes.size());
            band.packed = search ? packSearching(rows) : kernels::packPixels(rows);
            return true;
        });
        return band;
    }

    Result<void> write(const Band& band, int index) {
        if (!band.packed.buffer)
            return Error{"not enough memory to write the picture"};
        checksum_ = adler32_combine(checksum_, band.checksum, static_cast<z_off_t>(band.size));
        static constexpr std::array<std::uint8_t, 2> kStreamHead = {0x78, 0x5E};  // 32 KiB window, fast
        Buffer end;
        if (index == bands_ - 1) {
            end = bigEndian(checksum_);
            end.insert(end.begin(), {0x03, 0x00});  // a last block: empty, with the usual code
        }
        return writeChunk("IDAT", {index == 0 ? Bytes(kStreamHead) : Bytes(), band.packed.bytes(), end},
                          output_);
    }

    const PictureRows& picture_;
    foundation::Workers& workers_;
    const Output& output_;
    int rowsPerBand_ = 1;
    int bands_ = 1;
    foundation::Bitmap room_;
    BitmapView rows_;  // of the lot at hand, from firstRow_ on
    int firstRow_ = 0;
    std::vector<std::uint8_t> repeats_;  // of kBandsPerSample bands of the lot each
    uLong checksum_ = 1;
};

}  // namespace

Result<void> PngEncoder::encodePng(const PictureRows& picture, const Output& output) {
    if (picture.width() <= 0 || picture.height() <= 0)
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
