#pragma once

#include <istream>
#include <string>

#include "codecs/PictureFacts.h"
#include "codecs/PictureFileDecoder.h"
#include "cutengine/Picture.h"
#include "foundation/Queues.h"
#include "foundation/Result.h"

namespace trimora::batch {

/// The bytes of a file that may be a picture, in memory.
class PictureInput {
 public:
    /// Reads a file, or `in` to its end where the name is "-". A file that is no picture by its first bytes
    /// or larger than any picture is refused. Only one caller may read `in`.
    [[nodiscard]] static foundation::Result<PictureInput> read(const std::string& name, std::istream& in,
                                                               const codecs::PictureFileDecoder& decoder);

    [[nodiscard]] codecs::Bytes bytes() const {
        return file_.size() > 0 ? file_.view() : codecs::Bytes(text_);
    }

 private:
    files::FileBytes file_;
    std::vector<std::uint8_t> text_;
};

/// A picture as the editor would open it.
struct OpenedPicture {
    cutengine::PicturePtr picture;                  ///< one bitmap of the picture's size in points
    std::vector<foundation::Size> representations;  ///< sizes of all bitmaps of the file, in its order
    std::string notice;                             ///< what is missing of it; mostly empty
};

/// Decodes and brings it to its size in points, as opening in the editor does.
[[nodiscard]] foundation::Result<OpenedPicture> openPicture(codecs::Bytes file,
                                                            const codecs::PictureFileDecoder& decoder,
                                                            foundation::Workers& workers);

}  // namespace trimora::batch
