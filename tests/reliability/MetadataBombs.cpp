#include <zlib.h>

#include <algorithm>
#include <array>
#include <cstdint>
#include <iterator>
#include <string_view>

#include "BadPictures.h"

namespace trimora::reliability {

namespace samples = codecs::samples;

namespace {

constexpr std::size_t kInflated = std::size_t{200} << 20;

/// Zeros without end, packed to a thousandth.
const Buffer& packedZeros() {
    static const Buffer packed = [] {
        Buffer out(kInflated / 500);
        const Buffer zeros(std::size_t{1} << 20);
        z_stream stream{};
        deflateInit(&stream, 1);
        stream.next_out = out.data();
        stream.avail_out = static_cast<uInt>(out.size());
        for (std::size_t done = 0; done < kInflated; done += zeros.size()) {
            stream.next_in = const_cast<Bytef*>(zeros.data());
            stream.avail_in = static_cast<uInt>(zeros.size());
            deflate(&stream, done + zeros.size() < kInflated ? Z_NO_FLUSH : Z_FINISH);
        }
        out.resize(stream.total_out);
        deflateEnd(&stream);
        return out;
    }();
    return packed;
}

Buffer joined(std::string_view head, const Buffer& rest) {
    Buffer all(head.begin(), head.end());
    all.insert(all.end(), rest.begin(), rest.end());
    return all;
}

Buffer pngWith(std::string_view type, const Buffer& contents) {
    Buffer png = samples::png(samples::fading(32, 32).view());
    samples::insertChunk(png, type, contents);
    return png;
}

Buffer pngWithManyTexts() {
    Buffer png = samples::png(samples::fading(32, 32).view());
    for (int i = 0; i < 10'000; ++i)
        samples::insertChunk(png, "tEXt", joined(std::string_view("Comment\0words", 13), {}));
    return png;
}

void append(Buffer& to, std::uint32_t value, int bytes) {
    for (int i = 0; i < bytes; ++i)
        to.push_back(static_cast<std::uint8_t>(value >> (8 * i)));
}

Buffer jpegWithManyBlocks() {
    Buffer jpeg = samples::jpeg(samples::quarters(32, 32).view());
    Buffer blocks;
    for (int i = 0; i < 1'000; ++i) {
        const Buffer exif = samples::exif(1);
        Buffer contents = joined(std::string_view("Exif\0\0", 6), exif);
        contents.resize(2'000);
        blocks.insert(blocks.end(), {0xFF, 0xE1, 2'002 >> 8, 2'002 & 255});
        blocks.insert(blocks.end(), contents.begin(), contents.end());
    }
    jpeg.insert(jpeg.begin() + 2, blocks.begin(), blocks.end());
    return jpeg;
}

Buffer jpegWithManyScans() {
    samples::JpegOptions options;
    options.progressive = true;
    options.emptyScans = 60;
    options.grey = true;
    Buffer jpeg = samples::jpeg(samples::quarters(256, 256).view(), options);
    constexpr std::uint8_t kScan[] = {0xFF, 0xDA};
    const auto last = std::find_end(jpeg.begin(), jpeg.end(), std::begin(kScan), std::end(kScan));
    const Buffer scan(last, jpeg.end() - 2);
    for (int i = 0; i < 1'000; ++i)
        jpeg.insert(jpeg.end() - 2, scan.begin(), scan.end());
    return jpeg;
}

/// One directory of a grey picture of one pixel, whose next one lies at `next`.
void appendDirectory(Buffer& tiff, std::uint32_t next, std::uint32_t furtherTags = 0) {
    struct Tag {
        std::uint32_t number;
        std::uint32_t value;
    };
    constexpr Tag kTags[] = {{256, 1}, {257, 1}, {258, 8}, {259, 1}, {262, 1},
                             {273, 8}, {277, 1}, {278, 1}, {279, 1}};
    append(tiff, static_cast<std::uint32_t>(std::size(kTags)) + furtherTags, 2);
    const auto tag = [&](std::uint32_t number, std::uint32_t count, std::uint32_t value) {
        append(tiff, number, 2);
        append(tiff, 3, 2);  // numbers of 16 bits
        append(tiff, count, 4);
        append(tiff, value, 4);
    };
    for (const Tag& one : kTags)
        tag(one.number, 1, one.value);
    for (std::uint32_t i = 0; i < furtherTags; ++i)
        tag(1'000 + i, 0x4000'0000, 8);
    append(tiff, next, 4);
}

Buffer tiffHead() {
    Buffer tiff = {'I', 'I', 42, 0};
    append(tiff, 16, 4);   // the first directory
    tiff.resize(16, 128);  // the one pixel, and a little more
    return tiff;
}

Buffer tiffLoop() {
    Buffer tiff = tiffHead();
    appendDirectory(tiff, 16);
    return tiff;
}

Buffer tiffChain() {
    Buffer tiff = tiffHead();
    constexpr std::uint32_t kDirectory = 2 + 9 * 12 + 4;
    constexpr std::uint32_t kCount = 50'000;
    for (std::uint32_t i = 1; i <= kCount; ++i)
        appendDirectory(tiff, i < kCount ? 16 + i * kDirectory : 0);
    return tiff;
}

Buffer tiffTags() {
    Buffer tiff = tiffHead();
    appendDirectory(tiff, 0, 60'000);
    return tiff;
}

/// The colour table in the profile of its inks says to be 500 times as large as the file.
Buffer jpegWithABoastfulProfile() {
    constexpr std::array<std::uint8_t, 4> kIs = {9, 9, 9, 9};
    constexpr std::array<std::uint8_t, 4> kSaysToBe = {0x77, 0x33, 0x24, 0x6b};
    samples::JpegOptions inks;
    inks.cmyk = true;
    inks.icc = samples::inkProfile(kIs[0]);
    const auto nodes = std::search(inks.icc.begin(), inks.icc.end(), kIs.begin(), kIs.end());
    std::copy(kSaysToBe.begin(), kSaysToBe.end(), nodes);
    return samples::jpeg(samples::fading(32, 32).view(), inks);
}

}  // namespace

std::vector<NamedFile> metadataBombs() {
    const auto tiny = samples::quarters(2, 2);
    samples::GifOptions film;
    film.frames = 100'000;
    samples::GifOptions talk;
    talk.commentBytes = std::size_t{16} << 20;
    Buffer eXIf = samples::exif(6);
    eXIf.resize(std::size_t{16} << 20);
    return {
        {"png-zTXt", pngWith("zTXt", joined(std::string_view("Comment\0\0", 9), packedZeros()))},
        {"png-iTXt", pngWith("iTXt", joined(std::string_view("Comment\0\1\0\0\0", 12), packedZeros()))},
        {"png-iCCP", pngWith("iCCP", joined(std::string_view("profile\0\0", 9), packedZeros()))},
        {"png-eXIf", pngWith("eXIf", eXIf)},
        {"png-10000-tEXt", pngWithManyTexts()},
        {"jpeg-1000-APP1", jpegWithManyBlocks()},
        {"jpeg-1000-scans", jpegWithManyScans()},
        {"jpeg-boastful-profile", jpegWithABoastfulProfile()},
        {"tiff-directory-loop", tiffLoop()},
        {"tiff-directory-chain", tiffChain()},
        {"tiff-60000-tags", tiffTags()},
        {"gif-100000-frames", samples::gif(tiny.view(), film)},
        {"gif-comment", samples::gif(tiny.view(), talk)},
    };
}

}  // namespace trimora::reliability
