#include "cutengine/kernels/MaskStrip.h"

#include <cstring>

#include "cutengine/kernels/MaskPixels.h"
#include "cutengine/kernels/PixelRows.h"
#include "cutengine/kernels/RowFilter.h"
#include "cutengine/kernels/RunDeflate.h"
#include "cutengine/kernels/RunInflate.h"

// A mask differs from row to row in a few pixels only. Both directions live on that: the file stores each
// row as its difference from the one above (a strip's first row: each pixel as its difference from the one to
// the left), and only pixels that differ are ever converted, compressed or hashed.
namespace trimora::cutengine::kernels {
namespace {

using foundation::BitmapView;
using foundation::MutableBitmapView;

constexpr auto kFirstFilter = static_cast<std::uint8_t>(RowFilter::sub);
constexpr auto kFilter = static_cast<std::uint8_t>(RowFilter::up);

std::size_t rowBytes(int width) {
    return kMaskPixelBytes * static_cast<std::size_t>(width);
}

// With its filter.
std::uint64_t rowSize(int width) {
    return 1 + rowBytes(width);
}
std::uint64_t unpackedSize(BitmapView rows) {
    return static_cast<std::uint64_t>(rows.height) * rowSize(rows.width);
}

class StripWriter {
 public:
    StripWriter(BitmapView rows, int number)
        : rows_(rows),
          stream_(unpackedSize(rows)),
          checksum_(static_cast<std::uint64_t>(number)),
          places_(static_cast<std::size_t>(rows.width) + kPlacesSlack) {}

    MaskStrip packed() {
        putFirstRow();
        for (int y = 1; y < rows_.height; ++y)
            putRow(y);
        RunDeflate::Piece piece = stream_.finish();
        return {std::move(piece.bytes), piece.sums, checksum_.value()};
    }

 private:
    void putFirstRow() {
        const std::uint8_t* const row = rows_.row(0);
        stream_.byte(kFirstFilter);
        done_ = 0;
        put(0, 0, pixelAt(row, 0), 0);
        const int count = differingPixels(row + kMaskPixelBytes, row, rows_.width - 1, places_.data());
        for (const std::int32_t x : std::span(places_).first(static_cast<std::size_t>(count)))
            put(x + 1, 0, pixelAt(row, x + 1), pixelAt(row, x));
        endRow();
    }

    void putRow(int y) {
        const std::uint8_t* const row = rows_.row(y);
        const std::uint8_t* const above = rows_.row(y - 1);
        stream_.byte(kFilter);
        done_ = 0;
        const int count = differingPixels(row, above, rows_.width, places_.data());
        for (const std::int32_t x : std::span(places_).first(static_cast<std::size_t>(count)))
            put(x, y, pixelAt(row, x), pixelAt(above, x));
        endRow();
    }

    // Pixels of the plane.
    void put(int x, int y, std::uint32_t pixel, std::uint32_t before) {
        constexpr std::uint32_t kColour = 0x00FFFFFF;
        std::uint32_t changed = pixel - before;
        if (((pixel | before) & kColour) != 0) {
            pixel = toFile(pixel);
            changed = pixelDifference(pixel, toFile(before));
        }
        if (changed == 0)
            return;
        stream_.zeros(rowBytes(x - done_));
        stream_.pixel(changed);
        checksum_.add(x, y, pixel);
        done_ = x + 1;
    }

    void endRow() { stream_.zeros(rowBytes(rows_.width - done_)); }

    BitmapView rows_;
    RunDeflate stream_;
    PixelChecksum checksum_;
    std::vector<std::int32_t> places_;
    int done_ = 0;  // pixels of the row
};

// Puts the rows together from the bytes of a strip that are not 0. Each is the one above with what differs
// put in.
class StripReader {
 public:
    StripReader(MutableBitmapView rows, int number)
        : rows_(rows),
          size_(unpackedSize(rows)),
          sums_(size_),
          checksum_(static_cast<std::uint64_t>(number)),
          file_(static_cast<std::size_t>(rows.width), 0),
          plane_(static_cast<std::size_t>(rows.width), 0) {}

    // The bytes of the row that are not 0, the filter the first of them. False where they belong to no such
    // row.
    bool takeRow(int y, std::span<const PlacedByte> bytes) {
        const std::uint64_t start = static_cast<std::uint64_t>(y) * rowSize(rows_.width);
        const std::uint8_t filter = y == 0 ? kFirstFilter : kFilter;
        if (bytes.empty() || bytes.front().place() != start || bytes.front().value() != filter)
            return false;
        sums_.byte(size_ - start, filter);
        if (y == 0)
            takeFirst(bytes.subspan(1));
        else
            takePixels(bytes.subspan(1), start + 1,
                       [&](std::size_t x, std::uint32_t change) { put(x, y, pixelSum(file_[x], change)); });
        streamPixels(reinterpret_cast<const std::uint8_t*>(plane_.data()), rows_.row(y), rows_.width);
        return true;
    }

    [[nodiscard]] const ZlibSums& sums() const { return sums_; }
    [[nodiscard]] std::uint64_t checksum() const { return checksum_.value(); }

 private:
    // Takes the differences of the row that begins at `start`, a pixel at a time.
    template <typename Take>
    void takePixels(std::span<const PlacedByte> bytes, std::uint64_t start, const Take& take) {
        const auto pixelOf = [&](const PlacedByte& byte) { return (byte.place() - start) / kMaskPixelBytes; };
        for (auto next = bytes.begin(); next != bytes.end();) {
            const std::size_t x = pixelOf(*next);
            std::uint32_t change = 0;
            do {
                change |= std::uint32_t{next->value()} << 8 * ((next->place() - start) % kMaskPixelBytes);
                sums_.byte(size_ - next->place(), next->value());
                ++next;
            } while (next != bytes.end() && pixelOf(*next) == x);
            take(x, change);
        }
    }

    void takeFirst(std::span<const PlacedByte> bytes) {
        std::size_t done = 0;
        std::uint32_t left = 0;
        const auto fillTo = [&](std::size_t x) {
            for (; done < x; ++done) {
                file_[done] = left;
                plane_[done] = toPlane(left);
            }
        };
        takePixels(bytes, 1, [&](std::size_t x, std::uint32_t change) {
            fillTo(x);
            left = pixelSum(left, change);
            put(x, 0, left);
            done = x + 1;
        });
        fillTo(file_.size());
    }

    void put(std::size_t x, int y, std::uint32_t pixel) {
        file_[x] = pixel;
        plane_[x] = toPlane(pixel);
        checksum_.add(static_cast<int>(x), y, pixel);
    }

    MutableBitmapView rows_;
    std::uint64_t size_;  // of the strip, unpacked
    ZlibSums sums_;
    PixelChecksum checksum_;
    std::vector<std::uint32_t> file_;   // the row so far, and the rest of the one above, as the file has it
    std::vector<std::uint32_t> plane_;  // the same as the plane has it
};

}  // namespace

MaskStrip packStrip(BitmapView rows, int number) {
    return StripWriter(rows, number).packed();
}

std::optional<MaskStrip> unpackStrip(std::span<const std::uint8_t> bytes, MutableBitmapView rows,
                                     int number) {
    StripReader reader(rows, number);
    const auto take = [&](int y, std::span<const PlacedByte> row) { return reader.takeRow(y, row); };
    const bool isWhole = inflateRuns(bytes, rowSize(rows.width), rows.height, take);
    endStreaming();
    if (!isWhole)
        return std::nullopt;
    const auto packed = bytes.first(bytes.size() - BitReader::kSlack);
    return MaskStrip{{packed.begin(), packed.end()}, reader.sums(), reader.checksum()};
}

std::uint64_t takeStrip(const std::uint8_t* rows, MutableBitmapView to, int number) {
    PixelChecksum checksum(static_cast<std::uint64_t>(number));
    const std::size_t size = rowBytes(to.width);
    const auto put = [&](int x, int y, std::uint32_t pixel) {
        putPixel(to.row(y), static_cast<std::size_t>(x), toPlane(pixel));
    };
    std::uint32_t left = 0;
    for (int x = 0; x < to.width; ++x) {
        const std::uint32_t pixel = pixelAt(rows, x);
        if (pixel != left)
            checksum.add(x, 0, pixel);
        put(x, 0, pixel);
        left = pixel;
    }
    std::vector<std::int32_t> places(static_cast<std::size_t>(to.width) + kPlacesSlack);
    for (int y = 1; y < to.height; ++y) {
        const std::uint8_t* const row = rows + static_cast<std::size_t>(y) * size;
        std::memcpy(to.row(y), to.row(y - 1), size);
        const int count = differingPixels(row, row - size, to.width, places.data());
        for (const std::int32_t x : std::span(places).first(static_cast<std::size_t>(count))) {
            checksum.add(x, y, pixelAt(row, x));
            put(x, y, pixelAt(row, x));
        }
    }
    return checksum.value();
}

}  // namespace trimora::cutengine::kernels
