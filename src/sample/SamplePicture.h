#pragma once

#include "foundation/Bitmap.h"
#include "foundation/Queues.h"
#include "foundation/Result.h"

namespace trimora::sample {

/// A picture to try the cutter on, and how it should be cut.
struct SamplePicture {
    foundation::Bitmap picture;  ///< opaque, sRGB
    foundation::Bitmap subject;  ///< the true outline: alpha is how much of the pixel the subject covers
};

/// Draws the sample scene: an owl chick (soft outline) and a glazed vase (hard outline) on a table
/// before lights and leaves. `width` by three quarters of it; 4000 gives the 12 megapixels that the
/// program ships with. The same bytes for every number of workers.
///
/// A width below 4, or memory that is refused, returns an error.
[[nodiscard]] foundation::Result<SamplePicture> drawSamplePicture(int width, foundation::Workers& workers);

}  // namespace trimora::sample
