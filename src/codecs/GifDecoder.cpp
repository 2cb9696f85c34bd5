#include "codecs/GifDecoder.h"

#include <algorithm>
#include <array>
#include <cstring>
#include <memory>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "codecs/GifLibrary.h"
#include "codecs/RawPicture.h"

namespace trimora::codecs {
namespace {

using cutengine::DecodedPicture;
using foundation::AlphaMode;
using foundation::Bitmap;
using foundation::Error;
using foundation::MutableBitmapView;
using foundation::Pixel;
using foundation::Result;

/// The file as the library reads it.
struct Source {
    Bytes rest;
    bool endReached = false;

    static int read(GifFileType* gif, GifByteType* to, int size) {
        auto& self = *static_cast<Source*>(gif->UserData);
        const Bytes got = part(self.rest, 0, static_cast<std::size_t>(std::max(size, 0)));
        std::copy(got.begin(), got.end(), to);
        self.rest = self.rest.subspan(got.size());
        self.endReached |= got.size() < static_cast<std::size_t>(std::max(size, 0));
        return static_cast<int>(got.size());
    }
};

struct CloseGif {
    const GifLibrary* library;
    void operator()(GifFileType* gif) const { library->CloseFile(gif, nullptr); }
};
using Gif = std::unique_ptr<GifFileType, CloseGif>;

/// Passes over an extension; a graphics control one gives the transparent colour of the next frame.
bool readExtension(const GifLibrary& library, GifFileType* gif, int& transparentIndex) {
    int code = 0;
    GifByteType* block = nullptr;
    if (library.GetExtension(gif, &code, &block) == GIF_ERROR)
        return false;
    while (block != nullptr) {
        GraphicsControlBlock control;
        if (code == GRAPHICS_EXT_FUNC_CODE && library.ExtensionToGCB(block[0], block + 1, &control) == GIF_OK)
            transparentIndex = control.TransparentColor;
        if (library.GetExtensionNext(gif, &block) == GIF_ERROR)
            return false;
    }
    return true;
}

/// Reads up to the first frame's description; whether there is one.
bool findFrame(const GifLibrary& library, GifFileType* gif, int& transparentIndex) {
    for (;;) {
        GifRecordType type = UNDEFINED_RECORD_TYPE;
        if (library.GetRecordType(gif, &type) == GIF_ERROR)
            return false;
        if (type == IMAGE_DESC_RECORD_TYPE)
            return library.GetImageDesc(gif) == GIF_OK;
        if (type == TERMINATE_RECORD_TYPE)
            return false;
        if (type == EXTENSION_RECORD_TYPE && !readExtension(library, gif, transparentIndex))
            return false;
    }
}

/// What each index of the frame looks like; transparent where the frame has no such colour.
std::array<Pixel, 256> palette(const GifFileType* gif, int transparentIndex) {
    std::array<Pixel, 256> pixels{};
    const ColorMapObject* const map = gif->Image.ColorMap != nullptr ? gif->Image.ColorMap : gif->SColorMap;
    if (map == nullptr)
        return pixels;
    for (std::size_t i = 0; i < std::min<std::size_t>(static_cast<std::size_t>(map->ColorCount), 256); ++i) {
        const GifColorType colour = map->Colors[i];
        pixels[i] = {colour.Blue, colour.Green, colour.Red, 255};
    }
    if (transparentIndex >= 0 && transparentIndex < 256)
        pixels[static_cast<std::size_t>(transparentIndex)] = {};
    return pixels;
}

/// The row of the frame that is stored as number `stored`: interlaced frames come in four sweeps.
class RowOrder {
 public:
    RowOrder(int height, bool interlaced) : height_(height), step_(interlaced ? 8 : 1) {}

    int next() {
        const int row = row_;
        row_ += step_;
        while (row_ >= height_ && step_ > 1) {
            // Sweeps: every 8th row from 0, every 8th from 4, every 4th from 2, every 2nd from 1.
            row_ = sweep_ == 0 ? 4 : sweep_ == 1 ? 2 : 1;
            step_ = sweep_ == 0 ? 8 : sweep_ == 1 ? 4 : 2;
            if (++sweep_ > 3)
                break;
        }
        return row;
    }

 private:
    int height_;
    int step_;
    int row_ = 0;
    int sweep_ = 0;
};

/// Draws the frame's rows onto the screen as they come; returns how many came.
int drawFrame(const GifLibrary& library, GifFileType* gif, const std::array<Pixel, 256>& pixels,
              MutableBitmapView screen) {
    const GifImageDesc& frame = gif->Image;
    const int visible = std::clamp(screen.width - frame.Left, 0, frame.Width);
    std::vector<GifPixelType> line(static_cast<std::size_t>(frame.Width));
    RowOrder order(frame.Height, frame.Interlace);
    for (int stored = 0; stored < frame.Height; ++stored) {
        if (library.GetLine(gif, line.data(), frame.Width) == GIF_ERROR)
            return stored;
        const int y = frame.Top + order.next();
        if (y >= screen.height)
            continue;
        std::uint8_t* to = screen.row(y) + static_cast<std::size_t>(frame.Left) * 4;
        for (int x = 0; x < visible; ++x, to += 4)
            std::memcpy(to, &pixels[line[static_cast<std::size_t>(x)]], 4);
    }
    return frame.Height;
}

Error unreadable(const GifLibrary& library, const Source& source, int code) {
    if (source.endReached)
        return {"the file ends before its picture begins"};
    const char* const reason = library.ErrorString(code);
    return {std::string("the GIF file cannot be read: ") +
            (reason != nullptr ? reason : "it holds no picture")};
}

/// A file that was read up to its first frame's pixels.
struct Frame {
    const GifLibrary& library;
    Gif gif;
    int transparentIndex = NO_TRANSPARENT_COLOR;
};

Result<Frame> firstFrame(Source& source) {
    const auto loaded = GifLibrary::get();
    if (!loaded)
        return loaded.error();
    const GifLibrary& library = **loaded;
    int code = 0;
    Frame frame{library, Gif(library.Open(&source, &Source::read, &code), CloseGif{&library})};
    if (!frame.gif)
        return unreadable(library, source, code);
    if (!findFrame(library, frame.gif.get(), frame.transparentIndex))
        return unreadable(library, source, frame.gif->Error);
    return frame;
}

struct ScreenSize {
    int width;
    int height;
};

ScreenSize screenOf(const GifFileType* gif) {
    const GifImageDesc& frame = gif->Image;
    return {gif->SWidth > 0 ? gif->SWidth : frame.Left + frame.Width,
            gif->SHeight > 0 ? gif->SHeight : frame.Top + frame.Height};
}

}  // namespace

Result<DecodedPicture> GifDecoder::decode(Bytes file) const {
    Source source{file};
    const Result<Frame> found = firstFrame(source);
    if (!found)
        return found.error();
    GifFileType* const gif = found->gif.get();
    const GifImageDesc& frame = gif->Image;
    if (frame.Width <= 0 || frame.Height <= 0)
        return Error{"the picture has no pixels"};
    const auto [width, height] = screenOf(gif);
    for (const auto& [w, h] : {std::pair(width, height), std::pair(frame.Width, frame.Height)}) {
        if (std::optional<Error> refusal =
                budget().refusal(static_cast<std::uint64_t>(w), static_cast<std::uint64_t>(h)))
            return *std::move(refusal);
    }
    Result<Bitmap> screen = Bitmap::createFilled(width, height, {}, AlphaMode::straight);
    if (!screen)
        return screen.error();
    const int rows = drawFrame(found->library, gif, palette(gif, found->transparentIndex), screen->view());
    if (rows == 0)
        return unreadable(found->library, source, gif->Error);

    Result<Bitmap> bitmap =
        finished({std::move(*screen), height, ColourModel::rgb, Orientation::topLeft}, nullptr, workers());
    if (!bitmap)
        return bitmap.error();
    DecodedPicture picture;
    picture.representations.push_back(std::move(*bitmap));
    if (rows < frame.Height)
        picture.notice = source.endReached ? kCutShort : kDamaged;
    return picture;
}

Result<PictureFacts> GifDecoder::facts(Bytes file) const {
    Source source{file};
    const Result<Frame> found = firstFrame(source);
    if (!found)
        return found.error();
    const ScreenSize screen = screenOf(found->gif.get());
    PictureFacts facts;
    facts.format = PictureFormat::gif;
    facts.width = static_cast<std::uint64_t>(std::max(screen.width, 0));
    facts.height = static_cast<std::uint64_t>(std::max(screen.height, 0));
    facts.pixels = facts.width * facts.height;
    return facts;
}

}  // namespace trimora::codecs
