#include "codecs/JpegParts.h"

#include <algorithm>
#include <new>

#include "codecs/JpegTail.h"
#include "codecs/JpegWalk.h"
#include "codecs/RowShares.h"

namespace trimora::codecs {
namespace {

using foundation::Workers;

constexpr int kMostParts = 4;  // further ones would do little but pass over rows
constexpr int kBlockRowsAtOnce = 4;
constexpr int kBlockRowsNearEnough = 2;  // each leap costs about as much as reading so many

/// What the parts of one picture have in common.
struct Job {
    const JpegReading& header;
    Bytes file;
    const JpegTarget& to;
    RowShares& shares;
};

/// One of the parts: it finds its share, and reads it.
class Part {
 public:
    Part(const Job& job, int index) : job_(job), index_(index), room_(job.header) {}

    /// False where anything is wrong.
    bool run() { return index_ == 0 ? readFromTop() : readShareBelow(); }

 private:
    bool readFromTop() {
        JpegReading reading(job_.file);
        return reading.readHeader() && reading.start() && readShare(reading, 0);
    }

    bool readShareBelow() {
        if (auto walk = JpegWalk::begin(job_.header, job_.file))
            return walkToShare(*walk);
        JpegReading reading(job_.file);
        return reading.readHeader() && reading.start() && skipToShare(reading);
    }

    /// The library passes over the rows above. It wants to do that in leaps.
    bool skipToShare(JpegReading& reading) {
        const int disturbed = reading.rowsDisturbedBySkipping();
        const int near = kBlockRowsNearEnough * reading.blockRows();
        while (const auto place = job_.shares.place(index_, reading.rowsRead() + disturbed)) {
            const int from = *place - disturbed;
            const bool isNear = from <= reading.rowsRead() + near;
            if (!reading.skipTo(from) || !findsNothingWrong(reading))
                return false;
            if (isNear && job_.shares.begin(index_, *place))
                return reading.dropRows(disturbed, room_.view().row(0)) && readShare(reading, 0);
        }
        return true;
    }

    bool walkToShare(JpegWalk& walk) {
        const int rows = job_.header.blockRows();
        while (const auto place = job_.shares.place(index_, (std::max(walk.blockRow(), 1) + 1) * rows)) {
            const int from = *place / rows - 1;  // one row of blocks is read for the rows below it alone
            const bool isNear = from <= walk.blockRow() + kBlockRowsAtOnce;
            if (!walk.goTo(isNear ? from : walk.blockRow() + kBlockRowsAtOnce))
                return false;
            if (!isNear)
                continue;
            const auto tail = jpegTail(job_.header, job_.file, walk.place(), walk.blockRow());
            if (!tail)
                return true;  // nothing is wrong but that this part can be of no help
            if (job_.shares.begin(index_, *place))
                return readTail(*tail, walk.blockRow());
        }
        return true;
    }

    bool readTail(const JpegTail& tail, int blockRow) {
        JpegReading reading(tail.start, tail.rest);
        const int rows = job_.header.blockRows();
        return reading.readHeader() && reading.start() && reading.dropRows(2 * rows, room_.view().row(0)) &&
               readShare(reading, (blockRow - 1) * rows);
    }

    /// `above` are the rows of the picture above the first of the reading.
    bool readShare(JpegReading& reading, int above) {
        while (const int count = job_.shares.claim(index_, kBlockRowsAtOnce * job_.header.blockRows())) {
            if (!job_.to.read(reading, above, reading.rowsRead() + count, room_) ||
                !findsNothingWrong(reading))
                return false;
        }
        return (above + reading.rowsRead() < job_.to.height() || reading.readEnd()) &&
               findsNothingWrong(reading);
    }

    static bool findsNothingWrong(const JpegReading& reading) {
        return !reading.isRemarkable() && !reading.isCutShort();
    }

    const Job& job_;
    int index_;
    JpegTarget::Room room_;
};

/// Stops all shares where anything is wrong.
void readPart(const Job& job, int index) {
    bool isSound = false;
    try {
        isSound = Part(job, index).run();
    } catch (const std::bad_alloc&) {  // of a part's own room; one reading may have enough
    }
    if (!isSound)
        job.shares.stop();
}

}  // namespace

bool readJpegInParts(JpegReading& header, Bytes file, const JpegTarget& to, Workers& workers) {
    const int parts = std::min(workers.width(), kMostParts);
    if (parts < 2 || !header.canSkip())
        return false;
    RowShares shares(to.height(), parts, header.blockRows());
    const Job job{header, file, to, shares};
    workers.run(parts, [&](int part) { readPart(job, part); });
    return !shares.isStopped();
}

}  // namespace trimora::codecs
