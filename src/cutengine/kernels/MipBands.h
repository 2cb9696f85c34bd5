#pragma once

#include "cutengine/kernels/MipPyramid.h"
#include "foundation/Bitmap.h"
#include "foundation/Queues.h"

namespace trimora::cutengine::kernels {

/// Makes the smaller copies of a picture out of bands of its rows, each while it is still in the cache:
/// whoever makes the picture adds a band when its rows are done. Every row is to be added; bands may come in
/// any order, on several threads at once, and again where their rows were made anew.
class MipBands {
 public:
    /// A band begins at a multiple of so many rows, and ends at another one or with the picture.
    static constexpr int kStep = 8;

    /// The copies of `base`, whose owner outlives them. Out of memory leaves fewer levels.
    explicit MipBands(foundation::BitmapView base);

    /// Rows `first` to `end`, not included, of the base are as they will stay.
    void add(int first, int end);

    /// The same of rows that still lie elsewhere, the first of them row `first`: writes them to their places
    /// in `base` past the caches, where those that come next find room.
    void take(foundation::BitmapView rows, int first, foundation::MutableBitmapView base);

    /// The pyramid, once all rows have been added. What is left of the work is shared out.
    [[nodiscard]] MipPyramid finished(foundation::Workers& workers) &&;

 private:
    void addBelowHalf(int first, int end);

    MipPyramid made_;
};

}  // namespace trimora::cutengine::kernels
