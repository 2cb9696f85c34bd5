#pragma once

#include <algorithm>
#include <functional>

#include "foundation/Queues.h"

namespace trimora::codecs {

/// Splits `rows` into bands of `rowsPerBand` and has the workers call band(first row, row after the last)
/// for each. Returns when all are done.
inline void inBands(foundation::Workers& workers, int rows, int rowsPerBand,
                    const std::function<void(int, int)>& band) {
    workers.run((rows + rowsPerBand - 1) / rowsPerBand, [&](int index) {
        const int first = index * rowsPerBand;
        band(first, std::min(first + rowsPerBand, rows));
    });
}

}  // namespace trimora::codecs
