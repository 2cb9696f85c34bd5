#pragma once

#include <filesystem>
#include <functional>
#include <string>

#include "cutengine/Layer.h"
#include "cutengine/Picture.h"
#include "cutengine/PictureDecoder.h"
#include "foundation/Clock.h"
#include "foundation/Queues.h"

/// Small operations on pictures, shared by the cut view and the editor.
namespace trimora::cutengine {

/// A picture, or none and why not.
struct LoadedPicture {
    PicturePtr picture;
    /// With a picture: what is missing of it, mostly empty. Without: why there is none. One sentence.
    std::string notice;
};

/// The picture in a file, with all its bitmaps. Any thread.
[[nodiscard]] LoadedPicture imageFromURL(const std::filesystem::path& file, PictureDecoder& decoder);

/// How to wait for a file that another program is still writing.
struct Patience {
    foundation::Clock& clock;
    /// A number in 0..99,999 each time it is called, evenly spread.
    std::function<int()> randomMicroseconds;
};

/// The same; where `async` says that the file may still be in the making, a file that cannot be read is
/// tried up to ten times more, each time after a pause of 50 to 150 ms. Blocks meanwhile.
[[nodiscard]] LoadedPicture imageFromURL_async(const std::filesystem::path& file, bool async,
                                               PictureDecoder& decoder, const Patience& patience);

/// The whole picture as one bitmap of the given size in pixels, scaled in high quality. A picture that
/// is so already is returned itself; one that has its smaller copies is scaled from the nearest. None, and
/// the line "Invalid Image" in the log, where the picture is none or holds no pixels; none where there is no
/// memory.
[[nodiscard]] PicturePtr resize(const PicturePtr& picture, int width, int height,
                                foundation::Workers& workers);

/// The picture with its smaller copies, ready to be drawn; none for none.
[[nodiscard]] std::shared_ptr<const DrawablePicture> makeDrawable(const PicturePtr& picture,
                                                                  foundation::Workers& workers);

}  // namespace trimora::cutengine
