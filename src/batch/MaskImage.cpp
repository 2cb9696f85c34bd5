#include "batch/MaskImage.h"

#include <algorithm>
#include <functional>

namespace trimora::batch {

using foundation::Bitmap;
using foundation::BitmapView;
using foundation::IntRect;
using foundation::Result;

namespace {

constexpr int kBytesPerPixel = 4;
constexpr int kAlpha = 3;

using Measure = std::uint8_t (*)(const std::uint8_t* pixel);

std::uint8_t alphaOf(const std::uint8_t* pixel) {
    return pixel[kAlpha];
}

/// The brightness of a B,G,R,A pixel, exactly its grey where the three are equal.
std::uint8_t brightnessOf(const std::uint8_t* pixel) {
    constexpr unsigned kBlue = 19;  // shares of 256, as the eye weighs the colours of sRGB
    constexpr unsigned kGreen = 183;
    constexpr unsigned kRed = 54;
    return static_cast<std::uint8_t>((kBlue * pixel[0] + kGreen * pixel[1] + kRed * pixel[2]) / 256);
}

template <typename Test>
bool all(BitmapView picture, const Test& test) {
    for (int y = 0; y < picture.height; ++y) {
        const std::uint8_t* const row = picture.row(y);
        for (int x = 0; x < picture.width; ++x) {
            if (!test(row + x * kBytesPerPixel))
                return false;
        }
    }
    return true;
}

bool isOpaque(const std::uint8_t* pixel) {
    return pixel[kAlpha] == 255;
}

bool isBlack(const std::uint8_t* pixel) {
    return (pixel[0] | pixel[1] | pixel[2]) == 0;
}

/// A bitmap whose pixels are make(measure of the picture's pixel).
Result<Bitmap> mapped(BitmapView picture, Measure measure, foundation::Pixel (*make)(std::uint8_t)) {
    Result<Bitmap> made = Bitmap::create(picture.width, picture.height);
    if (!made)
        return made;
    for (int y = 0; y < picture.height; ++y) {
        const std::uint8_t* from = picture.row(y);
        std::uint8_t* to = made->row(y);
        for (int x = 0; x < picture.width; ++x, from += kBytesPerPixel, to += kBytesPerPixel) {
            const foundation::Pixel pixel = make(measure(from));
            to[0] = pixel.blue;
            to[1] = pixel.green;
            to[2] = pixel.red;
            to[kAlpha] = pixel.alpha;
        }
    }
    return made;
}

/// The columns of a row that hold anything: left to right, the latter not included.
void widen(const std::uint8_t* row, int width, int& left, int& right) {
    int x = 0;
    while (x < left && row[x * kBytesPerPixel + kAlpha] == 0)
        ++x;
    left = x;
    x = width;
    while (x > right && row[(x - 1) * kBytesPerPixel + kAlpha] == 0)
        --x;
    right = x;
}

bool isEmptyRow(const std::uint8_t* row, int width) {
    for (int x = 0; x < width; ++x) {
        if (row[x * kBytesPerPixel + kAlpha] != 0)
            return false;
    }
    return true;
}

}  // namespace

Result<Bitmap> maskFrom(BitmapView picture, AlphaRoom room) {
    const bool grey = all(picture, &isOpaque) && !(room == AlphaRoom::some && all(picture, &isBlack));
    return mapped(picture, grey ? &brightnessOf : &alphaOf, [](std::uint8_t kept) {
        return foundation::Pixel{0, 0, 0, kept};
    });
}

Result<Bitmap> keptMask(BitmapView mask) {
    return mapped(mask, &alphaOf, [](std::uint8_t kept) {
        return foundation::Pixel{kept, kept, kept, kept};
    });
}

IntRect visibleBox(BitmapView picture) {
    int top = 0;
    while (top < picture.height && isEmptyRow(picture.row(top), picture.width))
        ++top;
    if (top == picture.height)
        return {};
    int bottom = picture.height;
    while (isEmptyRow(picture.row(bottom - 1), picture.width))
        --bottom;
    int left = picture.width;
    int right = 0;
    for (int y = top; y < bottom; ++y)
        widen(picture.row(y), picture.width, left, right);
    return {left, top, right - left, bottom - top};
}

}  // namespace trimora::batch
