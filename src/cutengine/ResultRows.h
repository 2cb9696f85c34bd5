#pragma once

#include <cstdint>

#include "cutengine/Picture.h"
#include "cutengine/PictureRows.h"
#include "cutengine/kernels/MaskSnapshot.h"
#include "cutengine/kernels/ResultComposer.h"
#include "foundation/Bitmap.h"
#include "foundation/Queues.h"

namespace trimora::cutengine {

/// What lies behind a cut-out.
struct ResultBackground {
    enum class Kind : std::uint8_t { hidden, colour, picture, blurred };
    Kind kind = Kind::hidden;
    foundation::Pixel colour;  ///< premultiplied; of Kind::colour
    /// Of Kind::picture: stretched over the result. Of Kind::blurred: has the result's size, and is blurred
    /// as blurredCopy() does it; only the rows that are asked for, and they are not kept.
    BitmapPtr picture;
};

/// The result of cutting, as it was at one moment: the background and the masked picture flattened, in
/// straight alpha. Composed anew for every row that is asked for; what it is made of is kept alive.
class ResultRows final : public PictureRows {
 public:
    /// The picture has the result's size. The mask is stretched over it; none shows all of it. The workers
    /// must outlive this.
    ResultRows(BitmapPtr picture, kernels::MaskSnapshotPtr mask, ResultBackground background,
               foundation::Workers& workers);

    [[nodiscard]] int width() const override { return picture_->width(); }
    [[nodiscard]] int height() const override { return picture_->height(); }
    [[nodiscard]] foundation::Result<foundation::BitmapView> rows(int first, int end,
                                                                  foundation::Bitmap& room) const override;

    /// All of it at once; none, and a line in the log, where there is no memory.
    [[nodiscard]] PicturePtr whole() const;

 private:
    [[nodiscard]] kernels::Background backgroundOf(int first, foundation::MutableBitmapView rows) const;
    void compose(int first, foundation::MutableBitmapView rows) const;

    BitmapPtr picture_;
    kernels::MaskSnapshotPtr mask_;
    ResultBackground background_;
    foundation::Workers& workers_;
};

}  // namespace trimora::cutengine
