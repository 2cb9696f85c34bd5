#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <string_view>
#include <vector>

#include "codecs/Bytes.h"
#include "cutengine/PictureDecoder.h"
#include "foundation/Bitmap.h"
#include "foundation/Result.h"

/// Picture files for the tests of this folder, each written by the format's own library.
namespace trimora::codecs::samples {

using Buffer = std::vector<std::uint8_t>;

/// Four quarters of different colours (top left red, top right green, bottom left blue, bottom right
/// grey), each shaded a little from left to right: no two ways of turning it look alike.
[[nodiscard]] foundation::Bitmap quarters(int width, int height);

/// A straight picture in which alpha goes through all values along x, and colours change along y.
[[nodiscard]] foundation::Bitmap fading(int width, int height);

/// Largest difference of any component of any pixel; 1000 where the sizes differ.
[[nodiscard]] int largestDifference(foundation::BitmapView a, foundation::BitmapView b);

struct JpegOptions {
    int quality = 100;
    bool grey = false;
    bool cmyk = false;  ///< stores the colours as inverted inks without black, as picture editors do
    bool progressive = false;
    int across = 1;         ///< so many pixels beside each other share a sample of colour
    int down = 1;           ///< and so many below each other
    bool ownCodes = false;  ///< codes that fit the picture, in which what does not occur cannot be said
    int restartRows = 0;    ///< a mark from which data can be read again, every so many rows of blocks
    int orientation = 0;    ///< 0 writes no EXIF
    Buffer icc;
    int emptyScans = 0;  ///< progressive: so many further scans
};
[[nodiscard]] Buffer jpeg(foundation::BitmapView picture, const JpegOptions& options = {});

/// An EXIF block (without the mark before it) that says the orientation.
[[nodiscard]] Buffer exif(int orientation, bool littleEndian = true);

struct PngOptions {
    int bitDepth = 8;
    int colourType = 6;  ///< as the format numbers them
    bool interlaced = false;
    Buffer icc;
    bool key = false;  ///< grey or RGB: the colour of the top left pixel becomes transparent
};
/// Pixels are straight. A palette picture (colour type 3) holds the alpha of its colours too; few colours
/// only.
[[nodiscard]] Buffer png(foundation::BitmapView picture, const PngOptions& options = {});

/// A chunk with its checksum, to be put into a PNG file right after its header.
void insertChunk(Buffer& png, std::string_view type, Bytes contents);

/// What libpng reads from the file: R,G,B,A turned to B,G,R,A, straight.
[[nodiscard]] foundation::Bitmap readByLibpng(const Buffer& file);

struct TiffOptions {
    int bits = 8;
    int photometric = 2;  ///< RGB
    int packing = 1;      ///< none
    int alpha = 0;        ///< the number of the extra sample's kind; -1 writes no extra sample
    int tile = 0;         ///< side of the tiles; 0 writes strips
    bool separatePlanes = false;
    int orientation = 1;
    double dotsPerInch = 72;
    bool bigEndian = false;
    Buffer icc;
};
struct TiffPicture {
    foundation::BitmapView straight;
    TiffOptions options;
};
[[nodiscard]] Buffer tiff(const std::vector<TiffPicture>& pages);

struct GifOptions {
    int left = 0;  ///< of the frame on the screen
    int top = 0;
    int screenWidth = 0;  ///< 0: as the frame
    int screenHeight = 0;
    bool interlaced = false;
    int frames = 1;
    std::size_t commentBytes = 0;
};
/// A picture of at most 255 colours; pixels of alpha 0 become the transparent index.
[[nodiscard]] Buffer gif(foundation::BitmapView picture, const GifOptions& options = {});

/// ICC profiles, made by lcms.
[[nodiscard]] Buffer srgbProfile();
[[nodiscard]] Buffer wideProfile();  ///< primaries and gamma of a wide RGB space
[[nodiscard]] Buffer greyProfile(double gamma);
/// CMYK: paper times the complement of each ink. Its table has so many nodes a side.
[[nodiscard]] Buffer inkProfile(unsigned nodes = 9);

}  // namespace trimora::codecs::samples
