#include "cutengine/kernels/MaskCodec.h"

#include <spng.h>

#include <algorithm>
#include <array>
#include <bit>
#include <cstring>
#include <memory>
#include <span>
#include <utility>

#include "cutengine/kernels/PixelRows.h"
#include "cutengine/kernels/PngChunks.h"
#include "cutengine/kernels/RunDeflate.h"
#include "cutengine/kernels/RunInflate.h"
#include "foundation/PixelBuffer.h"

// A mask differs from row to row in a few pixels only. Both directions live on that: the file stores
// each row as its difference from the one above (PNG's filter "up", on every row), and only pixels that
// differ are ever converted, compressed or hashed.
namespace trimora::cutengine::kernels {
namespace {

using foundation::Bitmap;
using foundation::BitmapView;
using foundation::Error;
using foundation::MutableBitmapView;
using foundation::PixelBuffer;
using foundation::Result;

constexpr std::size_t kBytesPerPixel = 4;
constexpr std::uint8_t kFilterUp = 2;
constexpr std::uint8_t kBitDepth = 8;
constexpr std::uint8_t kColourWithAlpha = 6;
constexpr std::size_t kHeaderSize = 13;

// Ancillary, private, not to be copied by programs that change the pixels.
constexpr std::string_view kChecksumChunk = "ckSM";

struct Header {
    int width = 0;
    int height = 0;
    bool isOurKind = false;  // 8-bit RGB with alpha, not interlaced
};

// Pixels as 32-bit words, the first byte of memory lowest: a plane's are B, G, R, A, premultiplied; a
// file's are R, G, B, A, straight.
std::uint32_t component(std::uint32_t pixel, int index) {
    return pixel >> (8 * index) & 255;
}

std::uint32_t packed(std::uint32_t first, std::uint32_t second, std::uint32_t third, std::uint32_t alpha) {
    return first | second << 8 | third << 16 | alpha << 24;
}

std::uint32_t toFile(std::uint32_t plane) {
    const std::uint32_t alpha = component(plane, 3);
    if ((plane & 0x00FFFFFF) == 0 || alpha == 0)
        return alpha << 24;
    const auto straight = [&](int index) {
        return std::min<std::uint32_t>(255, (component(plane, index) * 255 + alpha / 2) / alpha);
    };
    return packed(straight(2), straight(1), straight(0), alpha);
}

std::uint32_t toPlane(std::uint32_t file) {
    const std::uint32_t alpha = component(file, 3);
    if ((file & 0x00FFFFFF) == 0)
        return file;
    const auto premultiplied = [&](int index) { return (component(file, index) * alpha + 127) / 255; };
    return packed(premultiplied(2), premultiplied(1), premultiplied(0), alpha);
}

// Byte by byte, modulo 256. Bits 7 are kept out of the carries and put in afterwards.
constexpr std::uint32_t kTopBits = 0x80808080;
std::uint32_t difference(std::uint32_t a, std::uint32_t b) {
    return ((a | kTopBits) - (b & ~kTopBits)) ^ ((a ^ ~b) & kTopBits);
}
std::uint32_t sum(std::uint32_t a, std::uint32_t b) {
    return ((a & ~kTopBits) + (b & ~kTopBits)) ^ ((a ^ b) & kTopBits);
}

// The checksum of a picture as a file holds it: of its size and of every pixel that differs from the
// one above it (above the first row all are 0), which says all. Each step maps states one to one, so
// no change of a single pixel goes unseen.
class PictureChecksum {
 public:
    PictureChecksum(int width, int height) {
        add(static_cast<std::uint64_t>(width));
        add(static_cast<std::uint64_t>(height));
    }
    void add(int x, int y, std::uint32_t pixel) {
        add(static_cast<std::uint64_t>(y) << 48 ^ static_cast<std::uint64_t>(x) << 32 ^ pixel);
    }
    [[nodiscard]] std::uint64_t value() const { return state_ ^ state_ >> 32; }

 private:
    void add(std::uint64_t value) { state_ = std::rotl((state_ ^ value) * 0x9E3779B97F4A7C15, 29); }
    std::uint64_t state_ = 0x5472696D6F7261;
};

std::uint32_t pixelAt(const std::uint8_t* row, std::int32_t x) {
    std::uint32_t pixel = 0;
    std::memcpy(&pixel, row + kBytesPerPixel * static_cast<std::size_t>(x), kBytesPerPixel);
    return pixel;
}

std::array<std::uint8_t, kHeaderSize> headerData(BitmapView plane) {
    std::vector<std::uint8_t> bytes;
    appendBigEndian(bytes, static_cast<std::uint64_t>(plane.width), 4);
    appendBigEndian(bytes, static_cast<std::uint64_t>(plane.height), 4);
    std::array<std::uint8_t, kHeaderSize> data{};
    std::copy(bytes.begin(), bytes.end(), data.begin());
    data[8] = kBitDepth;
    data[9] = kColourWithAlpha;
    return data;
}

// The picture's pixels, compressed; what differs from row to row is added to the checksum on the way.
std::vector<std::uint8_t> compressed(BitmapView plane, PictureChecksum& checksum) {
    const auto width = static_cast<std::size_t>(plane.width);
    RunDeflate stream(static_cast<std::uint64_t>(plane.height) * (1 + kBytesPerPixel * width));
    std::vector<std::int32_t> places(width + kPlacesSlack);
    const std::vector<std::uint8_t> nothing(kBytesPerPixel * width, 0);
    const std::uint8_t* above = nothing.data();
    for (int y = 0; y < plane.height; ++y) {
        const std::uint8_t* const row = plane.row(y);
        stream.byte(kFilterUp);
        int done = 0;
        for (int k = 0, count = differingPixels(row, above, plane.width, places.data()); k < count; ++k) {
            const int x = places[static_cast<std::size_t>(k)];
            const std::uint32_t pixel = toFile(pixelAt(row, x));
            const std::uint32_t changed = difference(pixel, toFile(pixelAt(above, x)));
            if (changed == 0)
                continue;
            stream.zeros(kBytesPerPixel * static_cast<std::uint64_t>(x - done));
            stream.pixel(changed);
            checksum.add(x, y, pixel);
            done = x + 1;
        }
        stream.zeros(kBytesPerPixel * static_cast<std::uint64_t>(plane.width - done));
        above = row;
    }
    return stream.finish();
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

// What a file's rows are read into: `bytesPerRow` bytes a row.
struct FileRows {
    PixelBuffer buffer;
    std::size_t bytesPerRow = 0;
    [[nodiscard]] const std::uint8_t* row(int y) const {
        return buffer.data() + static_cast<std::size_t>(y) * bytesPerRow;
    }
};

FileRows rowsFor(const Header& header, std::size_t bytesPerRow) {
    return {PixelBuffer::allocate(bytesPerRow * static_cast<std::size_t>(header.height)), bytesPerRow};
}

std::vector<std::uint8_t> joinedData(const std::vector<PngChunk>& chunks) {
    std::vector<std::uint8_t> joined;
    for (const PngChunk& chunk : chunks) {
        if (chunk.type == "IDAT")
            joined.insert(joined.end(), chunk.data.begin(), chunk.data.end());
    }
    return joined;
}

// The rows of a PNG of any kind as pixels. Only the chunks that make the picture are handed to the
// library: nothing else in the file can cost time or memory.
Result<FileRows> decodedRows(const Header& header, const std::vector<PngChunk>& chunks) {
    std::vector<std::uint8_t> file(kPngSignature.begin(), kPngSignature.end());
    for (const PngChunk& chunk : chunks) {
        constexpr std::array<std::string_view, 5> kPicture = {"IHDR", "PLTE", "tRNS", "IDAT", "IEND"};
        if (std::find(kPicture.begin(), kPicture.end(), chunk.type) != kPicture.end())
            appendPngChunk(file, chunk);
    }
    FileRows rows = rowsFor(header, kBytesPerPixel * static_cast<std::size_t>(header.width));
    const std::unique_ptr<spng_ctx, decltype(&spng_ctx_free)> context(spng_ctx_new(0), &spng_ctx_free);
    if (!rows.buffer || context == nullptr)
        return Error{"not enough memory to read the PNG file"};
    const std::size_t size = rows.bytesPerRow * static_cast<std::size_t>(header.height);
    int failure = spng_set_png_buffer(context.get(), file.data(), file.size());
    if (failure == 0)
        failure =
            spng_decode_image(context.get(), rows.buffer.data(), size, SPNG_FMT_RGBA8, SPNG_DECODE_TRNS);
    if (failure != 0)
        return Error{std::string("the PNG file cannot be read: ") + spng_strerror(failure)};
    return rows;
}

// Builds the plane row by row: each is the one above with the differing pixels put in.
class PlaneBuilder {
 public:
    PlaneBuilder(const Header& header, MutableBitmapView plane)
        : plane_(plane),
          checksum_(header.width, header.height),
          row_(static_cast<std::size_t>(header.width), 0) {}

    // A pixel of the file that is not the one above it, from left to right.
    void put(int x, int y, std::uint32_t pixel) {
        checksum_.add(x, y, pixel);
        row_[static_cast<std::size_t>(x)] = toPlane(pixel);
    }
    void endRow(int y) {
        streamPixels(reinterpret_cast<const std::uint8_t*>(row_.data()), plane_.row(y), plane_.width);
    }

    void addPixels(const FileRows& rows) {
        std::vector<std::int32_t> places(row_.size() + kPlacesSlack);
        const std::vector<std::uint8_t> nothing(kBytesPerPixel * row_.size(), 0);
        const std::uint8_t* above = nothing.data();
        for (int y = 0; y < plane_.height; ++y) {
            const std::uint8_t* const row = rows.row(y);
            const int count = differingPixels(row, above, plane_.width, places.data());
            for (const std::int32_t x : std::span(places).first(static_cast<std::size_t>(count)))
                put(x, y, pixelAt(row, x));
            endRow(y);
            above = row;
        }
    }

    [[nodiscard]] std::uint64_t checksum() const { return checksum_.value(); }

 private:
    MutableBitmapView plane_;
    PictureChecksum checksum_;
    std::vector<std::uint32_t> row_;
};

// Puts a plane together from the runs of a file of ours: rows of differences from the ones above, with a
// filter byte before each.
class RunReader {
 public:
    RunReader(const Header& header, PlaneBuilder& builder)
        : builder_(builder),
          height_(header.height),
          rowBytes_(kBytesPerPixel * static_cast<std::size_t>(header.width)),
          above_(static_cast<std::size_t>(header.width), 0) {}

    // False where the run belongs to no such rows.
    [[nodiscard]] bool take(RunInflate::Run run) {
        if (run.zeros == kBytesPerPixel - 1 && run.count == 1 && isInRow_ && place_ % kBytesPerPixel == 0) {
            change_ = std::uint32_t{run.value} << 24;
            moveBy(kBytesPerPixel);
            return true;
        }
        if (run.zeros > 0 && !takeZeros(run.zeros))
            return false;
        if (run.value == 0)
            return takeZeros(run.count);
        for (; run.count > 0; --run.count) {
            if (!takeByte(run.value))
                return false;
        }
        return true;
    }

    [[nodiscard]] bool isComplete() const { return y_ == height_; }

 private:
    bool takeByte(std::uint8_t value) {
        if (!isInRow_)
            return beginRow(value);
        change_ |= std::uint32_t{value} << (8 * (place_ % kBytesPerPixel));
        moveBy(1);
        return true;
    }

    bool takeZeros(std::uint64_t count) {
        while (count > 0) {
            if (!isInRow_)
                return false;
            const std::uint64_t step = std::min<std::uint64_t>(count, rowBytes_ - place_);
            moveBy(step);
            count -= step;
        }
        return true;
    }

    bool beginRow(std::uint8_t filter) {
        if (filter != kFilterUp || isComplete())
            return false;
        place_ = 0;
        isInRow_ = true;
        return true;
    }

    void moveBy(std::uint64_t bytes) {
        const std::size_t pixel = place_ / kBytesPerPixel;
        place_ += bytes;
        if (change_ != 0 && place_ / kBytesPerPixel != pixel) {
            above_[pixel] = sum(above_[pixel], change_);
            builder_.put(static_cast<int>(pixel), y_, above_[pixel]);
            change_ = 0;
        }
        if (place_ == rowBytes_) {
            isInRow_ = false;
            builder_.endRow(y_++);
        }
    }

    PlaneBuilder& builder_;
    int height_;
    std::size_t rowBytes_;
    std::vector<std::uint32_t> above_;  // as the file holds it; the row itself as far as it is read
    int y_ = 0;
    std::size_t place_ = 0;     // in the row's pixels
    std::uint32_t change_ = 0;  // what is read of a pixel's difference
    bool isInRow_ = false;
};

// Builds the plane from a file of ours; false for another, with the plane in any state.
bool builtFromRuns(const Header& header, const std::vector<PngChunk>& chunks, PlaneBuilder& builder) {
    // Without our checksum the stream's own would be needed, which RunInflate leaves alone.
    const bool isOurs = std::any_of(chunks.begin(), chunks.end(),
                                    [](const PngChunk& chunk) { return chunk.type == kChecksumChunk; });
    if (!header.isOurKind || !isOurs)
        return false;
    RunReader reader(header, builder);
    return RunInflate(joinedData(chunks)).read([&](RunInflate::Run run) { return reader.take(run); }) &&
           reader.isComplete();
}

// The plane, where it is the one that the file's checksum was made of, or the file has none.
Result<Bitmap> checked(Bitmap plane, const std::vector<PngChunk>& chunks, std::uint64_t checksum) {
    const bool isAsWritten = std::all_of(chunks.begin(), chunks.end(), [&](const PngChunk& chunk) {
        return chunk.type != kChecksumChunk ||
               (chunk.data.size() == sizeof checksum && bigEndian(chunk.data) == checksum);
    });
    if (!isAsWritten)
        return Error{"the PNG file is damaged: its picture is not the one that was written"};
    return plane;
}

}  // namespace

Result<std::vector<std::uint8_t>> encodeMask(BitmapView plane) {
    if (plane.isEmpty())
        return Error{"there is no mask to write"};
    PictureChecksum checksum(plane.width, plane.height);
    const std::vector<std::uint8_t> data = compressed(plane, checksum);
    std::vector<std::uint8_t> checksumBytes;
    appendBigEndian(checksumBytes, checksum.value(), sizeof checksum.value());

    std::vector<std::uint8_t> file(kPngSignature.begin(), kPngSignature.end());
    appendPngChunk(file, {"IHDR", headerData(plane)});
    appendPngChunk(file, {kChecksumChunk, checksumBytes});
    appendPngChunk(file, {"IDAT", data});
    appendPngChunk(file, {"IEND", {}});
    return file;
}

Result<Bitmap> decodeMask(std::span<const std::uint8_t> file, int maxSide) {
    const Result<std::vector<PngChunk>> chunks = readPngChunks(file);
    if (!chunks)
        return chunks.error();
    const Result<Header> header = readHeader(*chunks, maxSide);
    if (!header)
        return header.error();
    Result<Bitmap> plane = Bitmap::create(header->width, header->height);
    if (!plane)
        return plane;
    PlaneBuilder fromRuns(*header, plane->view());
    if (builtFromRuns(*header, *chunks, fromRuns))
        return checked(std::move(*plane), *chunks, fromRuns.checksum());
    const Result<FileRows> rows = decodedRows(*header, *chunks);
    if (!rows)
        return rows.error();
    PlaneBuilder fromPixels(*header, plane->view());
    fromPixels.addPixels(*rows);
    return checked(std::move(*plane), *chunks, fromPixels.checksum());
}

}  // namespace trimora::cutengine::kernels
