#include "foundation/Bitmap.h"

#include <algorithm>
#include <cassert>
#include <cerrno>
#include <cstring>
#include <string>
#include <utility>

namespace trimora::foundation {
namespace {

constexpr std::size_t kBytesPerPixel = 4;

template <typename View>
View clippedView(View view, const IntRect& area) {
    const IntRect inside = intersected(area, view.bounds());
    view.pixels = view.row(inside.y) + static_cast<std::size_t>(inside.x) * kBytesPerPixel;
    view.width = inside.width;
    view.height = inside.height;
    return view;
}

}  // namespace

BitmapView subview(BitmapView view, const IntRect& area) {
    return clippedView(view, area);
}
MutableBitmapView subview(MutableBitmapView view, const IntRect& area) {
    return clippedView(view, area);
}

Bitmap& Bitmap::operator=(Bitmap&& other) noexcept {
    Bitmap taken(std::move(other));
    swap(taken);
    return *this;
}

void Bitmap::swap(Bitmap& other) noexcept {
    std::swap(buffer_, other.buffer_);
    std::swap(width_, other.width_);
    std::swap(height_, other.height_);
    std::swap(stride_, other.stride_);
    std::swap(alphaMode_, other.alphaMode_);
}

Result<Bitmap> Bitmap::create(int width, int height, AlphaMode alphaMode) {
    return createWithSpare(width, height, alphaMode, 0);
}

Result<Bitmap> Bitmap::createWithSpare(int width, int height, AlphaMode alphaMode, std::size_t spare) {
    if (width < 1 || height < 1 || width > kMaxSide || height > kMaxSide)
        return Error{"a bitmap cannot be " + std::to_string(width) + " x " + std::to_string(height) +
                     " pixels"};
    Bitmap made;
    const std::size_t used = static_cast<std::size_t>(width) * kBytesPerPixel;
    made.stride_ = (used + PixelBuffer::kAlignment - 1) / PixelBuffer::kAlignment * PixelBuffer::kAlignment;
    made.buffer_ = PixelBuffer::allocate(made.stride_ * static_cast<std::size_t>(height) + spare);
    if (!made.buffer_)
        return Error{"not enough memory for a bitmap of " + std::to_string(width) + " x " +
                         std::to_string(height) + " pixels",
                     ENOMEM};
    made.width_ = width;
    made.height_ = height;
    made.alphaMode_ = alphaMode;
    return made;
}

Result<Bitmap> Bitmap::createFilled(int width, int height, Pixel fill, AlphaMode alphaMode) {
    Result<Bitmap> made = create(width, height, alphaMode);
    if (made)
        made->fill(fill);
    return made;
}

Result<Bitmap> Bitmap::clone() const {
    if (isEmpty())
        return Bitmap();
    Result<Bitmap> copy = create(width_, height_, alphaMode_);
    if (copy)
        copyPixels(view(), copy->view());
    return copy;
}

Pixel Bitmap::pixel(int x, int y) const {
    assert(x >= 0 && y >= 0 && x < width_ && y < height_);
    Pixel value;
    std::memcpy(&value, row(y) + static_cast<std::size_t>(x) * kBytesPerPixel, kBytesPerPixel);
    return value;
}

void Bitmap::setPixel(int x, int y, Pixel value) {
    assert(x >= 0 && y >= 0 && x < width_ && y < height_);
    std::memcpy(row(y) + static_cast<std::size_t>(x) * kBytesPerPixel, &value, kBytesPerPixel);
}

void Bitmap::fill(Pixel value) {
    std::uint32_t word = 0;
    std::memcpy(&word, &value, sizeof word);
    for (int y = 0; y < height_; ++y) {
        auto* const words = reinterpret_cast<std::uint32_t*>(row(y));
        std::fill(words, words + width_, word);
    }
}

void copyPixels(BitmapView from, MutableBitmapView to) {
    assert(from.width == to.width && from.height == to.height);
    for (int y = 0; y < from.height; ++y)
        std::memcpy(to.row(y), from.row(y), static_cast<std::size_t>(from.width) * kBytesPerPixel);
}

bool samePixels(BitmapView a, BitmapView b) {
    if (a.width != b.width || a.height != b.height)
        return false;
    for (int y = 0; y < a.height; ++y) {
        if (std::memcmp(a.row(y), b.row(y), static_cast<std::size_t>(a.width) * kBytesPerPixel) != 0)
            return false;
    }
    return true;
}

}  // namespace trimora::foundation
