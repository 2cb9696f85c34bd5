#pragma once

#include <cstddef>
#include <cstdint>

#include "foundation/Geometry.h"
#include "foundation/PixelBuffer.h"
#include "foundation/Result.h"

namespace trimora::foundation {

/// How the colour components of a bitmap relate to its alpha.
enum class AlphaMode : std::uint8_t {
    premultiplied,  ///< colour already multiplied by alpha: what painting and composing work on
    straight,       ///< colour as it is, 0 where alpha is 0: what a PNG file holds
    opaque,         ///< every alpha is 255, so both readings are the same
};

/// A borrowed, writable rectangle of pixels. Copies are cheap and refer to the same memory, which
/// the owner must keep alive. Four bytes a pixel in the order B, G, R, A; top row first.
struct MutableBitmapView {
    std::uint8_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    std::size_t stride = 0;  ///< bytes from one row to the next
    AlphaMode alphaMode = AlphaMode::premultiplied;

    [[nodiscard]] std::uint8_t* row(int y) const { return pixels + static_cast<std::size_t>(y) * stride; }
    [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }
    [[nodiscard]] IntRect bounds() const { return {0, 0, width, height}; }
};

/// A borrowed rectangle of pixels to read; otherwise as MutableBitmapView.
struct BitmapView {
    const std::uint8_t* pixels = nullptr;
    int width = 0;
    int height = 0;
    std::size_t stride = 0;
    AlphaMode alphaMode = AlphaMode::premultiplied;

    BitmapView() = default;
    BitmapView(const std::uint8_t* data, int w, int h, std::size_t bytesPerRow, AlphaMode mode)
        : pixels(data), width(w), height(h), stride(bytesPerRow), alphaMode(mode) {}
    BitmapView(const MutableBitmapView& other)  // NOLINT(google-explicit-constructor)
        : BitmapView(other.pixels, other.width, other.height, other.stride, other.alphaMode) {}

    [[nodiscard]] const std::uint8_t* row(int y) const {
        return pixels + static_cast<std::size_t>(y) * stride;
    }
    [[nodiscard]] bool isEmpty() const { return width <= 0 || height <= 0; }
    [[nodiscard]] IntRect bounds() const { return {0, 0, width, height}; }
};

/// The part of a view inside `area` (clipped to the view); refers to the same memory.
[[nodiscard]] BitmapView subview(BitmapView view, const IntRect& area);
[[nodiscard]] MutableBitmapView subview(MutableBitmapView view, const IntRect& area);

/// A colour of one pixel, 0..255 a component. Whether it is premultiplied is said where it is used.
struct Pixel {
    std::uint8_t blue = 0;
    std::uint8_t green = 0;
    std::uint8_t red = 0;
    std::uint8_t alpha = 0;
    friend bool operator==(const Pixel&, const Pixel&) = default;
};

/// Owns the pixels of a picture: 8 bits a component, B, G, R, A in memory, top row first, rows padded
/// to 64 bytes. Movable, not copyable (a copy of a large picture should be seen in the code: clone()).
/// A default-made bitmap is empty and allocates nothing. Not shared between threads while written.
class Bitmap {
 public:
    /// Largest width or height that any picture may have.
    static constexpr int kMaxSide = 1 << 20;

    Bitmap() = default;
    Bitmap(Bitmap&& other) noexcept { swap(other); }
    Bitmap& operator=(Bitmap&& other) noexcept;

    /// A bitmap of undefined contents. A size below 1 x 1, a side above kMaxSide or memory that is
    /// refused returns an error; nothing changed.
    [[nodiscard]] static Result<Bitmap> create(int width, int height,
                                               AlphaMode alphaMode = AlphaMode::premultiplied);

    /// As create(), with `spare` bytes of the same memory after the last row: room for whoever makes the
    /// pixels out of something larger, in place.
    [[nodiscard]] static Result<Bitmap> createWithSpare(int width, int height, AlphaMode alphaMode,
                                                        std::size_t spare);

    /// As create(), every pixel set to `fill`.
    [[nodiscard]] static Result<Bitmap> createFilled(int width, int height, Pixel fill,
                                                     AlphaMode alphaMode = AlphaMode::premultiplied);

    [[nodiscard]] Result<Bitmap> clone() const;

    [[nodiscard]] int width() const { return width_; }
    [[nodiscard]] int height() const { return height_; }
    [[nodiscard]] std::size_t stride() const { return stride_; }
    [[nodiscard]] AlphaMode alphaMode() const { return alphaMode_; }
    [[nodiscard]] bool isEmpty() const { return width_ == 0; }

    /// Relabels the pixels without touching them: for code that has just written them so.
    void setAlphaMode(AlphaMode mode) { alphaMode_ = mode; }

    [[nodiscard]] MutableBitmapView view() { return {buffer_.data(), width_, height_, stride_, alphaMode_}; }
    [[nodiscard]] BitmapView view() const { return {buffer_.data(), width_, height_, stride_, alphaMode_}; }
    [[nodiscard]] std::uint8_t* row(int y) { return view().row(y); }
    [[nodiscard]] const std::uint8_t* row(int y) const { return view().row(y); }
    [[nodiscard]] Pixel pixel(int x, int y) const;
    void setPixel(int x, int y, Pixel value);

    void fill(Pixel value);

 private:
    void swap(Bitmap& other) noexcept;

    PixelBuffer buffer_;
    int width_ = 0;
    int height_ = 0;
    std::size_t stride_ = 0;
    AlphaMode alphaMode_ = AlphaMode::premultiplied;
};

/// Copies pixels between views of the same size, as they are.
void copyPixels(BitmapView from, MutableBitmapView to);

/// Whether two views have the same size and the same bytes in every pixel (row padding not counted).
[[nodiscard]] bool samePixels(BitmapView a, BitmapView b);

}  // namespace trimora::foundation
