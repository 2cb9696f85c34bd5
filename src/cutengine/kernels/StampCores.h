#pragma once

#include <cstddef>
#include <cstdint>
#include <span>
#include <vector>

#include "cutengine/kernels/StampCoverage.h"
#include "cutengine/kernels/StampRows.h"
#include "foundation/Bitmap.h"
#include "foundation/Geometry.h"

/// What is sure to end at `fill` under a list of stamps, so that it can be filled at once in place of
/// being painted: inner part of StrokePainter.h.
///
/// Mixing brings each component closer to fill's or leaves it, and fill stays fill. So a pixel ends at
/// fill if any stamp covers it wholly; and also if eight stamps cover it by 128 or more of 255 each,
/// whatever it held: a difference of 255 becomes 127 at most, then 63, 31, 15, 7, 3, 1 and 0. Stamps of a
/// stroke lie so close together that the second holds nearly up to the stroke's edge.
///
/// Where that many stamps lie on a line, a pixel that the first and the last of them cover so far is
/// covered so far by those between, too: what is within a distance of both ends of a line is within it of
/// every point of the line. So a core is what two discs have in common.
namespace trimora::cutengine::kernels {

/// Ellipses of one size, two by two. A pixel belongs to a core if it belongs to both of the pair.
class CoreList {
 public:
    /// `inset` is how far beside its middle a pixel must still lie inside, both ways: 0.5 for the whole
    /// pixel, 0 for its middle alone.
    explicit CoreList(double inset) : inset_(inset) {}

    void clear();
    void add(const StampEllipse& first, const StampEllipse& second);

    /// Sets every pixel of the cores within the plane to `fill`.
    void fill(foundation::MutableBitmapView plane, std::uint32_t fill) const;

    // By the vector; longer than count() by the widest one.
    std::vector<double> firstX, firstY, secondX, secondY, rx, perRy;
    std::vector<std::int32_t> tops, bottoms;  ///< rows that a core may meet
    [[nodiscard]] std::size_t count() const { return count_; }
    [[nodiscard]] double inset() const { return inset_; }

 private:
    double inset_;
    std::size_t count_ = 0;
};

/// The cores of some stamps of one call: shared ones wherever stamps lie on a line, those of single stamps at
/// the line's ends and where there is none.
class StampCores {
 public:
    explicit StampCores(double solid);

    /// Finds the cores of `stamps`, which follow each other in this order, in place of those found before.
    void find(std::span<const StampEllipse> stamps);
    void fill(foundation::MutableBitmapView plane, std::uint32_t fill) const;

 private:
    void add(std::span<const StampEllipse> stamps);
    void addCovered(const StampEllipse& stamp);
    bool addShared(std::span<const StampEllipse> stamps);

    double solid_;
    CoreList covered_;  ///< wholly, by a stamp
    CoreList shared_;   ///< by half or more, by enough stamps
    StampEllipse lastCovered_;
    StampEllipse lastShared_;
};

}  // namespace trimora::cutengine::kernels
