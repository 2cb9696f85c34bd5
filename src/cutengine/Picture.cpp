#include "cutengine/Picture.h"

#include <algorithm>
#include <utility>

namespace trimora::cutengine {

using foundation::Bitmap;
using foundation::Size;

PicturePtr Picture::create(std::vector<Bitmap> representations, kernels::MipPyramid copies) {
    Size size;
    for (const Bitmap& bitmap : representations) {
        size.width = std::max(size.width, static_cast<double>(bitmap.width()));
        size.height = std::max(size.height, static_cast<double>(bitmap.height()));
    }
    if (size.isEmpty())
        return nullptr;
    const std::shared_ptr<Picture> picture = make(size, std::move(representations));
    if (copies.levelCount() > 0)
        picture->copies_ = std::make_shared<const kernels::MipPyramid>(std::move(copies));
    return picture;
}

PicturePtr Picture::create(Bitmap only) {
    std::vector<Bitmap> representations;
    representations.push_back(std::move(only));
    return create(std::move(representations));
}

PicturePtr Picture::create(BitmapPtr only) {
    if (!only || only->isEmpty())
        return nullptr;
    const std::shared_ptr<Picture> picture(new Picture);
    picture->size_ = {static_cast<double>(only->width()), static_cast<double>(only->height())};
    picture->representations_.push_back(std::move(only));
    return picture;
}

PicturePtr Picture::createSized(Size size, std::vector<Bitmap> representations) {
    return make(size, std::move(representations));
}

PicturePtr Picture::withCopies(const PicturePtr& picture, foundation::Workers& workers) {
    if (!picture || !picture->isValid() || picture->copies_)
        return picture;
    const std::shared_ptr<Picture> made(new Picture);
    made->size_ = picture->size_;
    made->representations_ = picture->representations_;
    made->copies_ = std::make_shared<const kernels::MipPyramid>(
        kernels::MipPyramid::build(picture->bestRepresentation()->view(), workers));
    return made;
}

std::shared_ptr<Picture> Picture::make(Size size, std::vector<Bitmap> representations) {
    std::shared_ptr<Picture> picture(new Picture);
    picture->size_ = size;
    for (Bitmap& bitmap : representations) {
        if (!bitmap.isEmpty())
            picture->representations_.push_back(std::make_shared<const Bitmap>(std::move(bitmap)));
    }
    return picture;
}

BitmapPtr Picture::bestRepresentation(double pixelWidth, double pixelHeight) const {
    if (!isValid())
        return nullptr;
    const auto area = [](const Bitmap& bitmap) {
        return static_cast<double>(bitmap.width()) * bitmap.height();
    };
    BitmapPtr best;
    bool bestIsEnough = false;
    for (const BitmapPtr& bitmap : representations_) {
        const bool enough = bitmap->width() >= pixelWidth && bitmap->height() >= pixelHeight;
        const bool better = !best || (enough && !bestIsEnough) ||
                            (enough == bestIsEnough && (area(*bitmap) < area(*best)) == enough);
        if (better) {
            best = bitmap;
            bestIsEnough = enough;
        }
    }
    return best;
}

}  // namespace trimora::cutengine
