#include "cutengine/Picture.h"

#include <algorithm>
#include <utility>

namespace trimora::cutengine {

using foundation::Bitmap;
using foundation::BitmapView;
using foundation::Size;

PicturePtr Picture::create(std::vector<Bitmap> representations) {
    Size size;
    for (const Bitmap& bitmap : representations) {
        size.width = std::max(size.width, static_cast<double>(bitmap.width()));
        size.height = std::max(size.height, static_cast<double>(bitmap.height()));
    }
    return size.isEmpty() ? nullptr : createSized(size, std::move(representations));
}

PicturePtr Picture::create(Bitmap only) {
    std::vector<Bitmap> representations;
    representations.push_back(std::move(only));
    return create(std::move(representations));
}

PicturePtr Picture::createSized(Size size, std::vector<Bitmap> representations) {
    std::erase_if(representations, [](const Bitmap& bitmap) { return bitmap.isEmpty(); });
    const std::shared_ptr<Picture> picture(new Picture);
    picture->size_ = size;
    picture->representations_ = std::move(representations);
    return picture;
}

BitmapView Picture::bestRepresentation(double pixelWidth, double pixelHeight) const {
    if (!isValid())
        return {};
    const auto area = [](const Bitmap& bitmap) {
        return static_cast<double>(bitmap.width()) * bitmap.height();
    };
    const Bitmap* best = nullptr;
    bool bestIsEnough = false;
    for (const Bitmap& bitmap : representations_) {
        const bool enough = bitmap.width() >= pixelWidth && bitmap.height() >= pixelHeight;
        const bool better = best == nullptr || (enough && !bestIsEnough) ||
                            (enough == bestIsEnough && (area(bitmap) < area(*best)) == enough);
        if (better) {
            best = &bitmap;
            bestIsEnough = enough;
        }
    }
    return best->view();
}

}  // namespace trimora::cutengine
