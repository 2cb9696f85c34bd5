#pragma once

#include <nlohmann/json_fwd.hpp>
#include <optional>
#include <string>
#include <vector>

#include "codecs/PictureFacts.h"
#include "cutengine/MaskPainter.h"
#include "foundation/Geometry.h"
#include "foundation/Result.h"

namespace trimora::batch {

/// How the editor would open a picture.
struct Opening {
    foundation::Size image;                         ///< of the picture in points, which are pixels, upright
    cutengine::PlaneSize plane;                     ///< of the mask, with mask pixels per picture point
    std::vector<foundation::Size> representations;  ///< of all bitmaps of the file, upright, in its order
    std::string notice;                             ///< what is missing of the picture; mostly empty
};

/// What is to be told about one file.
struct PictureReport {
    std::string file;
    std::optional<codecs::PictureFacts> facts;  ///< none where the file is no picture
    foundation::Result<Opening> opening;        ///< or why it would not open
};

/// A paragraph for a person, ending with a line break.
[[nodiscard]] std::string paragraphOf(const PictureReport& report);

/// The same for a program.
[[nodiscard]] nlohmann::ordered_json jsonOf(const PictureReport& report);

}  // namespace trimora::batch
