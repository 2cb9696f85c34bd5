#pragma once

#include <QImage>

#include "foundation/Bitmap.h"

namespace trimora::util {

/// The pixels of a view as an image of the toolkit that shares their memory: nothing is copied, and the
/// view's owner keeps the pixels alive and unmoved for as long as the image is used. Painting into the
/// image makes a copy of its own, as for any shared image.
[[nodiscard]] QImage sharedImage(foundation::BitmapView pixels);

}  // namespace trimora::util
