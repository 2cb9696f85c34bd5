#pragma once

#include "codecs/ColourProfile.h"
#include "codecs/Orientation.h"
#include "foundation/Bitmap.h"
#include "foundation/Queues.h"
#include "foundation/Result.h"

namespace trimora::codecs {

/// A bitmap as a format's library left it, and what is known of it.
struct RawPicture {
    /// Straight B,G,R,A; or C,M,Y,K in that order where the model says so. Labelled opaque only where every
    /// alpha that was read is 255.
    foundation::Bitmap pixels;
    int rowsRead = 0;  ///< rows from the top that hold something; the contents of the others are undefined
    ColourModel model = ColourModel::rgb;
    Orientation orientation = Orientation::topLeft;
};

/// The picture as the engine wants it: in sRGB, premultiplied (or opaque, where every alpha is 255), rows
/// that were not read transparent, upright. `profile` may be null. The work is split over the workers.
/// Fails only for want of memory.
[[nodiscard]] foundation::Result<foundation::Bitmap> finished(RawPicture raw, const ColourProfile* profile,
                                                              foundation::Workers& workers);

}  // namespace trimora::codecs
