#pragma once

#include <memory>
#include <optional>

#include "batch/CutOrder.h"
#include "batch/StrokeScript.h"
#include "cutengine/Picture.h"
#include "foundation/Bitmap.h"
#include "foundation/Queues.h"
#include "foundation/Result.h"

namespace trimora::batch {

/// What is done to every picture of an order.
struct CutRecipe {
    std::shared_ptr<const foundation::Bitmap> mask;  ///< its alpha alone counts; none: nothing is cut
    StrokeScript strokes;                            ///< painted over the mask
    std::optional<BackgroundChoice> background;      ///< none: what the script leaves, else nothing
    bool crop = false;
};

/// A picture that was cut.
struct CutPicture {
    cutengine::PicturePtr result;  ///< of the picture's size, straight alpha
    foundation::IntRect box;       ///< the part of it that is wanted; all of it unless it is to be cropped
    foundation::Bitmap mask;       ///< the mask plane; its alpha alone counts
};

/// Cuts the picture in a cut view of its own, with the very steps that the editor takes.
///
/// The work is done on the calling thread and `workers`; several pictures may be cut at the same time. An
/// error where memory is short, or where nothing is left of the picture to crop to.
[[nodiscard]] foundation::Result<CutPicture> cutPicture(const cutengine::PicturePtr& picture,
                                                        const CutRecipe& recipe,
                                                        foundation::Workers& workers);

}  // namespace trimora::batch
