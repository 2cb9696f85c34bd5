#include "codecs/TiffDecoder.h"

#include <algorithm>
#include <array>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "codecs/TiffFile.h"
#include "codecs/TiffPage.h"

namespace trimora::codecs {
namespace {

using cutengine::DecodedPicture;
using foundation::Bitmap;
using foundation::Error;
using foundation::Result;

constexpr std::size_t kMostPages = 1000;
constexpr const char* kTooManyPages = "the file has more than 1000 pages; the first are shown";

// What pictures are packed with. Others are rare, and some of their readers take memory without bound.
constexpr std::array<std::uint16_t, 11> kPackings = {
    COMPRESSION_NONE,     COMPRESSION_CCITTRLE,  COMPRESSION_CCITTFAX3, COMPRESSION_CCITTFAX4,
    COMPRESSION_LZW,      COMPRESSION_JPEG,      COMPRESSION_DEFLATE,   COMPRESSION_ADOBE_DEFLATE,
    COMPRESSION_PACKBITS, COMPRESSION_CCITTRLEW, COMPRESSION_ZSTD};

struct Page {
    std::uint64_t offset;  ///< of its directory in the file
    std::uint64_t width;   ///< upright
    std::uint64_t height;
};

Page currentPage(const TiffFile& file) {
    Page page{file.tiff().CurrentDirOffset(file.handle()), file.tag<std::uint32_t>(TIFFTAG_IMAGEWIDTH),
              file.tag<std::uint32_t>(TIFFTAG_IMAGELENGTH)};
    if (orientationOf(file.tag<std::uint16_t>(TIFFTAG_ORIENTATION, 1)) >= Orientation::leftTop)
        std::swap(page.width, page.height);
    return page;
}

/// Whether the current page has a sample for transparency.
bool hasAlpha(const TiffFile& file) {
    std::uint16_t count = 0;
    std::uint16_t* kinds = nullptr;
    return file.tiff().GetFieldDefaulted(file.handle(), TIFFTAG_EXTRASAMPLES, &count, &kinds) == 1 &&
           count > 0;
}

/// The pages that hold pictures, none decoded.
struct Pages {
    std::vector<Page> pages;
    const char* notice = "";  ///< where the file speaks of more than these
};

Pages pagesOf(const TiffFile& file) {
    Pages found;
    for (;;) {
        if ((file.tag<std::uint32_t>(TIFFTAG_SUBFILETYPE) & FILETYPE_MASK) == 0)
            found.pages.push_back(currentPage(file));
        if (file.tiff().LastDirectory(file.handle()) != 0)
            return found;
        if (found.pages.size() == kMostPages) {
            found.notice = kTooManyPages;
            return found;
        }
        // The next one lies outside the file, is none, or has been read before.
        if (file.tiff().ReadDirectory(file.handle()) != 1) {
            found.notice = kDamaged;
            return found;
        }
    }
}

std::optional<Error> refusalOf(const std::vector<Page>& pages, const PixelBudget& budget) {
    std::uint64_t widest = 1;
    std::uint64_t highest = 1;
    std::uint64_t pixels = 0;
    for (const Page& page : pages) {
        if (std::optional<Error> refusal = budget.refusal(page.width, page.height))
            return refusal;
        widest = std::max(widest, page.width);
        highest = std::max(highest, page.height);
        pixels += page.width * page.height;
    }
    if (std::optional<Error> refusal = budget.refusal(widest, highest))
        return refusal;
    return budget.refusal(pixels);
}

Error unreadable(const TiffFile& file) {
    return {"the TIFF file cannot be read: " +
            (file.complaint().empty() ? std::string("it holds no picture") : file.complaint())};
}

Result<Bitmap> decodePage(const TiffFile& file, const Page& page, bool& whole, foundation::Workers& workers) {
    if (file.tiff().SetSubDirectory(file.handle(), page.offset) != 1)
        return unreadable(file);
    const auto packing = file.tag<std::uint16_t>(TIFFTAG_COMPRESSION, COMPRESSION_NONE);
    if (std::find(kPackings.begin(), kPackings.end(), packing) == kPackings.end())
        return Error{"the TIFF file is packed in a way that is not read here"};
    return decodeTiffPage(file, whole, workers);
}

}  // namespace

Result<DecodedPicture> TiffDecoder::decode(Bytes bytes) const {
    const TiffFile file(bytes);
    if (file.handle() == nullptr)
        return unreadable(file);
    const auto [pages, notice] = pagesOf(file);
    if (std::optional<Error> refusal = refusalOf(pages, budget()))
        return *std::move(refusal);

    DecodedPicture picture;
    std::optional<Error> failure;
    bool allWhole = true;
    for (const Page& page : pages) {
        bool whole = true;
        Result<Bitmap> bitmap = decodePage(file, page, whole, workers());
        allWhole = allWhole && bitmap && whole;
        if (bitmap)
            picture.representations.push_back(std::move(*bitmap));
        else if (!failure)
            failure = bitmap.error();
    }
    if (picture.representations.empty())
        return failure ? *failure : unreadable(file);
    picture.notice = allWhole ? notice : kDamaged;
    return picture;
}

Result<PictureFacts> TiffDecoder::facts(Bytes bytes) const {
    const TiffFile file(bytes);
    if (file.handle() == nullptr)
        return unreadable(file);
    PictureFacts facts;
    facts.format = PictureFormat::tiff;
    facts.width = file.tag<std::uint32_t>(TIFFTAG_IMAGEWIDTH);
    facts.height = file.tag<std::uint32_t>(TIFFTAG_IMAGELENGTH);
    facts.orientation = orientationOf(file.tag<std::uint16_t>(TIFFTAG_ORIENTATION, 1));
    facts.bitsPerSample = file.tag<std::uint16_t>(TIFFTAG_BITSPERSAMPLE, 1);
    facts.hasAlpha = hasAlpha(file);
    facts.profile = profileName(file.icc());
    for (const Page& page : pagesOf(file).pages)
        facts.pixels += page.width * page.height;
    return facts;
}

}  // namespace trimora::codecs
