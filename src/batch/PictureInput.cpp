#include "batch/PictureInput.h"

#include <algorithm>
#include <array>
#include <new>
#include <utility>

#include "batch/Surroundings.h"
#include "cutengine/imageutil/PictureActions.h"

namespace trimora::batch {

using foundation::Error;
using foundation::Result;

namespace {

Result<std::vector<std::uint8_t>> readToEnd(std::istream& in, std::uint64_t limit) {
    std::vector<std::uint8_t> text;
    std::array<char, 1 << 16> block;
    while (in.read(block.data(), block.size()) || in.gcount() > 0) {
        text.insert(text.end(), block.data(), block.data() + in.gcount());
        if (text.size() > limit)
            return Error{"standard input is larger than " + std::to_string(limit) + " bytes"};
    }
    return text;
}

}  // namespace

Result<PictureInput> PictureInput::read(const std::string& name, std::istream& in,
                                        const codecs::PictureFileDecoder& decoder) {
    PictureInput input;
    if (name != kStandardStream) {
        Result<files::FileBytes> file = decoder.readFile(name);
        if (!file)
            return file.error();
        input.file_ = std::move(*file);
        return input;
    }
    try {
        Result<std::vector<std::uint8_t>> text = readToEnd(in, decoder.mostFileBytes());
        if (!text)
            return text.error();
        input.text_ = std::move(*text);
    } catch (const std::bad_alloc&) {
        return Error{"not enough memory to read standard input"};
    }
    return input;
}

Result<OpenedPicture> openPicture(codecs::Bytes file, const codecs::PictureFileDecoder& decoder,
                                  foundation::Workers& workers) {
    Result<cutengine::DecodedPicture> decoded = decoder.decodeBytes(file);
    if (!decoded)
        return decoded.error();
    OpenedPicture opened;
    for (const foundation::Bitmap& bitmap : decoded->representations)
        opened.representations.push_back(
            {static_cast<double>(bitmap.width()), static_cast<double>(bitmap.height())});
    opened.notice = std::move(decoded->notice);
    const cutengine::PicturePtr whole =
        cutengine::Picture::create(std::move(decoded->representations), std::move(decoded->copies));
    opened.picture = cutengine::resize(whole, whole->pixelWidth(), whole->pixelHeight(), workers);
    if (!opened.picture)
        return Error{"there is not enough memory for it"};
    return opened;
}

}  // namespace trimora::batch
