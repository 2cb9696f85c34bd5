#pragma once

#include <cstddef>
#include <cstdint>
#include <vector>

#include "codecs/ColourProfile.h"
#include "foundation/Bitmap.h"
#include "foundation/Queues.h"

namespace trimora::codecs {

/// Takes in the rows of a picture of 16 bits a sample and puts them into a bitmap of 8, colours converted
/// at full precision. Rows are held in bands, so that a whole picture of 16 bits need not be.
class WideRows {
 public:
    /// Rows go to `target`, converted by `profile` (may be null). With `rowsHeld` rows at a time; row()
    /// may be asked in any order within a band, and bands go downwards.
    WideRows(foundation::MutableBitmapView target, const ColourProfile* profile, foundation::Workers& workers,
             int rowsHeld);

    /// Where row `y` is to be written: R,G,B,A straight, 16 bits each, of this machine's byte order; zeros
    /// at first. Asking for a row below the band at hand passes that band on.
    [[nodiscard]] std::uint16_t* row(int y);

    /// Passes on what is still held. Rows never asked for are as transparent as those never written.
    void flush();

 private:
    void pass(int y);

    foundation::MutableBitmapView target_;
    const ColourProfile* profile_;
    foundation::Workers& workers_;
    std::size_t samplesPerRow_;
    int rowsHeld_;
    int first_ = 0;
    int end_ = 0;  // the row after the last one asked for
    std::vector<std::uint16_t> samples_;
};

}  // namespace trimora::codecs
