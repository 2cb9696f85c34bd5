#include "codecs/JpegParts.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <vector>

#include "codecs/RowShares.h"

namespace trimora::codecs {
namespace {

using foundation::MutableBitmapView;
using foundation::Workers;

constexpr int kMostParts = 4;  // further ones would do little but pass over rows
constexpr int kBlockRowsAtOnce = 4;
constexpr int kBlockRowsNearEnough = 2;  // each leap costs about as much as reading so many

/// One of the readings: it passes over the rows above its share, and reads those.
class Part {
 public:
    /// `scratch` has room for a row.
    Part(Bytes file, RowShares& shares, int index, std::uint8_t* scratch)
        : reading_(file), shares_(shares), index_(index), scratch_(scratch) {}

    /// Stops all shares where anything is wrong.
    void run(MutableBitmapView to) {
        const bool isSound = reading_.readHeader() && reading_.start() && (index_ == 0 || goToShare()) &&
                             readShare(to) && findsNothingWrong();
        if (!isSound)
            shares_.stop();
    }

 private:
    bool goToShare() {
        const int disturbed = reading_.rowsDisturbedBySkipping();
        const int near = kBlockRowsNearEnough * reading_.blockRows();
        while (const auto place = shares_.place(index_, reading_.rowsRead() + disturbed)) {
            const int from = *place - disturbed;
            const bool isNear = from <= reading_.rowsRead() + near;
            if (!reading_.skipTo(from) || !findsNothingWrong())
                return false;
            if (isNear && shares_.begin(index_, *place))
                return reading_.dropRows(disturbed, scratch_);
        }
        return true;
    }

    bool readShare(MutableBitmapView to) {
        while (const int rows = shares_.claim(index_, kBlockRowsAtOnce * reading_.blockRows())) {
            if (!reading_.readRows(to, reading_.rowsRead() + rows) || !findsNothingWrong())
                return false;
        }
        return true;
    }

    [[nodiscard]] bool findsNothingWrong() const {
        return !reading_.isRemarkable() && !reading_.isCutShort();
    }

    JpegReading reading_;
    RowShares& shares_;
    int index_;
    std::uint8_t* scratch_;
};

}  // namespace

bool readJpegInParts(JpegReading& header, Bytes file, MutableBitmapView to, Workers& workers) {
    const int parts = std::min(workers.width(), kMostParts);
    if (parts < 2 || !header.canSkip())
        return false;
    const std::size_t rowSize = 4 * static_cast<std::size_t>(to.width);
    std::vector<std::uint8_t> scratch(rowSize * static_cast<std::size_t>(parts));
    RowShares shares(to.height, parts, header.blockRows());
    workers.run(parts, [&](int part) {
        Part(file, shares, part, scratch.data() + rowSize * static_cast<std::size_t>(part)).run(to);
    });
    return !shares.isStopped();
}

}  // namespace trimora::codecs
