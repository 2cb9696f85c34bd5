#pragma once

#include "foundation/Bitmap.h"
#include "foundation/Result.h"

namespace trimora::cutengine {

/// A picture that can be had a part at a time, so that it need not be whole in memory. It never changes; any
/// thread, several at once.
class PictureRows {
 public:
    virtual ~PictureRows() = default;
    PictureRows(const PictureRows&) = delete;
    PictureRows& operator=(const PictureRows&) = delete;

    /// In pixels; 0 where there is no picture.
    [[nodiscard]] virtual int width() const = 0;
    [[nodiscard]] virtual int height() const = 0;

    /// Rows `first` to `end` (not included), all within the picture and at least one. They may have to be
    /// made: then they lie in `room`, which is made anew where it is too small. Some megabytes at a time are
    /// made fastest. What is returned lasts as long as `room` is left alone and this object lives. An error
    /// where memory is refused.
    [[nodiscard]] virtual foundation::Result<foundation::BitmapView> rows(int first, int end,
                                                                          foundation::Bitmap& room) const = 0;

 protected:
    PictureRows() = default;
};

/// The rows of a bitmap, which is borrowed.
class BitmapRows final : public PictureRows {
 public:
    explicit BitmapRows(foundation::BitmapView bitmap) : bitmap_(bitmap) {}

    [[nodiscard]] int width() const override { return bitmap_.width; }
    [[nodiscard]] int height() const override { return bitmap_.height; }
    [[nodiscard]] foundation::Result<foundation::BitmapView> rows(
        int first, int end, foundation::Bitmap& /*room*/) const override {
        return subview(bitmap_, {0, first, bitmap_.width, end - first});
    }

 private:
    foundation::BitmapView bitmap_;
};

}  // namespace trimora::cutengine
