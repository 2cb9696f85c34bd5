#include "cutengine/kernels/DiscBlur.h"

#include <algorithm>
#include <cassert>
#include <cmath>
#include <cstring>
#include <functional>
#include <memory>
#include <numeric>
#include <vector>

#include "cutengine/kernels/DiscRows.h"
#include "foundation/PixelBuffer.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::BitmapView;
using foundation::IntRect;
using foundation::MutableBitmapView;
using foundation::PixelBuffer;

constexpr std::size_t kComponents = 4;

/// Columns that one job blurs: the rows under its disc stay in the cache nearest the core, while the
/// columns read beyond its edges stay a small share.
constexpr int kStripWidth = 256;
static_assert(kStripWidth % kDiscRowGranule == 0);

/// The disc's shape: column dx (and, a disc being round, row dx) reaches from -extent to extent.
class Disc {
 public:
    explicit Disc(double radius) : reach_(static_cast<int>(radius)) {
        for (int dx = -reach_; dx <= reach_; ++dx) {
            extents_.push_back(extentAt(dx, radius * radius));
            count_ += 2 * extents_.back() + 1;
        }
    }

    [[nodiscard]] int reach() const { return reach_; }
    [[nodiscard]] int extent(int dx) const { return extents_[static_cast<std::size_t>(dx + reach_)]; }
    [[nodiscard]] std::int64_t count() const { return count_; }

 private:
    [[nodiscard]] static int extentAt(int dx, double radiusSquared) {
        const double left = radiusSquared - static_cast<double>(dx) * dx;
        const auto inside = [left](double dy) { return dy * dy <= left; };
        int extent = static_cast<int>(std::sqrt(left));
        while (!inside(extent))
            --extent;
        while (inside(extent + 1))
            ++extent;
        return extent;
    }

    int reach_;
    std::vector<int> extents_;
    std::int64_t count_ = 0;
};

/// Blurs one strip of columns from top to bottom. The sum of a pixel's disc comes from that of the
/// pixel above: the arc that enters below is added, the arc that leaves above is taken away. The rows
/// that the disc covers are kept as planes, one a component, so that neighbouring pixels are
/// neighbouring bytes.
class DiscStrip {
 public:
    /// `to` holds the rows from `firstRow` on.
    DiscStrip(const Disc& disc, BitmapView from, int firstRow, MutableBitmapView to)
        : disc_(disc),
          from_(from),
          firstRow_(firstRow),
          to_(to),
          planes_(from.alphaMode == foundation::AlphaMode::opaque ? kComponents - 1 : kComponents),
          held_(2 * disc.reach() + 1),
          batch_(std::max(64, disc.reach() / 2)),
          stride_(static_cast<std::ptrdiff_t>(kStripWidth + held_ + 63) / 64 * 64) {
        for (int dx = -disc.reach(); dx <= disc.reach(); ++dx) {
            const auto column = static_cast<std::ptrdiff_t>(dx + disc.reach());
            const auto extent = static_cast<std::ptrdiff_t>(disc.extent(dx));
            arcs_.entering.push_back((extent + 1) * stride_ + column);
            arcs_.leaving.push_back(-extent * stride_ + column);
        }
    }

    /// `area` is at most kStripWidth wide. False where memory is refused; nothing changed.
    [[nodiscard]] bool blur(const IntRect& area) {
        const auto planeSize = static_cast<std::size_t>(stride_ * (held_ + batch_));
        PixelBuffer rows = PixelBuffer::allocate(planeSize * kComponents);
        if (!rows)
            return false;
        std::memset(rows.data(), 0, planeSize * kComponents);
        for (std::size_t i = 0; i < kComponents; ++i)
            rows_[i] = reinterpret_cast<std::int8_t*>(rows.data()) + i * planeSize;
        width_ = (area.width + kDiscRowGranule - 1) / kDiscRowGranule * kDiscRowGranule;
        for (int slot = 0; slot < held_; ++slot)
            fetchRow(area, area.y - disc_.reach() + slot, slot);
        sumFirstDiscs();
        writeRow(area, area.y);
        for (int done = 1; done < area.height; done += batch_) {
            const int rowCount = std::min(batch_, area.height - done);
            for (int i = 0; i < rowCount; ++i)
                fetchRow(area, area.y + done + i + disc_.reach(), held_ + i);
            for (int i = 0; i < rowCount; ++i) {
                slide(disc_.reach() + i);
                writeRow(area, area.y + done + i);
            }
            keepLastRows();
        }
        return true;
    }

 private:
    /// Puts picture row `y` into the planes' row `slot`, pixels beyond the edges repeated.
    void fetchRow(const IntRect& area, int y, int slot) {
        const std::uint8_t* const row = from_.row(std::clamp(y, 0, from_.height - 1));
        const int begin = area.x - disc_.reach();
        const int end = area.x + area.width + disc_.reach();
        const int first = std::max(begin, 0);
        const int last = std::min(end, from_.width);
        DiscPlanes inside;
        for (std::size_t i = 0; i < kComponents; ++i)
            inside[i] = rows_[i] + slot * stride_ + (first - begin);
        splitRow(row + static_cast<std::size_t>(first) * kComponents, last - first, inside);
        for (std::int8_t* const plane : inside) {
            const auto before = static_cast<std::size_t>(first - begin);
            std::memset(plane - before, plane[0], before);
            std::memset(plane + (last - first), plane[last - first - 1],
                        static_cast<std::size_t>(end - last));
        }
    }

    /// The discs of the strip's first row, whose rows are the first that the planes hold. A row of a disc is
    /// what the planes' row sums up to at its end, less what it does before its beginning.
    void sumFirstDiscs() {
        std::vector<std::int32_t> sumsBefore(static_cast<std::size_t>(width_ + held_));
        for (std::size_t i = 0; i < planes_; ++i) {
            sums_[i].fill(0);
            for (int dy = -disc_.reach(); dy <= disc_.reach(); ++dy) {
                const std::int8_t* const row = rows_[i] + (dy + disc_.reach()) * stride_;
                std::inclusive_scan(row, row + sumsBefore.size() - 1, sumsBefore.begin() + 1, std::plus<>(),
                                    std::int32_t{0});
                const std::int32_t* const begin = sumsBefore.data() + disc_.reach() - disc_.extent(dy);
                const std::int32_t* const end = sumsBefore.data() + disc_.reach() + disc_.extent(dy) + 1;
                for (int x = 0; x < width_; ++x)
                    sums_[i][static_cast<std::size_t>(x)] += end[x] - begin[x];
            }
        }
    }

    /// Moves the discs from the planes' row `above` one row down.
    void slide(int above) {
        for (std::size_t i = 0; i < planes_; ++i)
            slideDiscs(rows_[i] + above * stride_, arcs_, sums_[i].data(), width_);
    }

    void writeRow(const IntRect& area, int y) {
        for (auto& means : means_)
            means.fill(255);
        for (std::size_t i = 0; i < planes_; ++i)
            meansOfSums(sums_[i].data(), static_cast<std::int32_t>(disc_.count()), means_[i].data(), width_);
        joinRow({means_[0].data(), means_[1].data(), means_[2].data(), means_[3].data()},
                to_.row(y - firstRow_) + static_cast<std::size_t>(area.x) * kComponents, area.width);
    }

    void keepLastRows() {
        for (std::int8_t* const plane : rows_)
            std::memmove(plane, plane + batch_ * stride_, static_cast<std::size_t>(held_ * stride_));
    }

    const Disc& disc_;
    BitmapView from_;
    int firstRow_;
    MutableBitmapView to_;
    std::size_t planes_;  ///< components worth blurring: an opaque picture's alpha stays 255
    int held_;            ///< rows that the disc covers
    int batch_;           ///< rows fetched at a time
    std::ptrdiff_t stride_;
    int width_ = 0;  ///< discs summed side by side: the strip's, and some more
    DiscArcs arcs_;
    DiscPlanes rows_{};
    alignas(64) std::array<std::array<std::int32_t, kStripWidth>, kComponents> sums_{};
    alignas(64) std::array<std::array<std::uint8_t, kStripWidth>, kComponents> means_{};
};

/// The sum of one component over columns `first` to `last` of a row, edges repeated.
std::int64_t clampedSum(BitmapView from, int y, int first, int last, std::size_t component) {
    const std::uint8_t* const row = from.row(std::clamp(y, 0, from.height - 1)) + component;
    const auto at = [row](int x) { return std::int64_t{row[static_cast<std::size_t>(x) * kComponents]}; };
    const std::int64_t before = std::min(last, -1) - std::min(first, 0) + 1;
    const std::int64_t after = last - std::max(first, from.width) + 1;
    std::int64_t sum =
        std::max<std::int64_t>(before, 0) * at(0) + std::max<std::int64_t>(after, 0) * at(from.width - 1);
    for (int x = std::max(first, 0); x <= std::min(last, from.width - 1); ++x)
        sum += at(x);
    return sum;
}

/// The same blur with no memory and no limit on the radius, sliding along each row in 64 bits; for
/// discs too large for DiscStrip, which no picture of less than half a million pixels around needs.
void blurPlainly(const Disc& disc, BitmapView from, int firstRow, MutableBitmapView to, const IntRect& area) {
    for (int y = area.y; y < area.bottom(); ++y) {
        for (std::size_t component = 0; component < kComponents; ++component) {
            std::int64_t sum = 0;
            for (int dy = -disc.reach(); dy <= disc.reach(); ++dy)
                sum +=
                    clampedSum(from, y + dy, area.x - disc.extent(dy), area.x + disc.extent(dy), component);
            for (int x = area.x; x < area.right(); ++x) {
                to.row(y - firstRow)[static_cast<std::size_t>(x) * kComponents + component] =
                    static_cast<std::uint8_t>((2 * sum + disc.count()) / (2 * disc.count()));
                for (int dy = -disc.reach(); dy <= disc.reach(); ++dy) {
                    const int extent = disc.extent(dy);
                    sum += clampedSum(from, y + dy, x + 1 + extent, x + 1 + extent, component) -
                           clampedSum(from, y + dy, x - extent, x - extent, component);
                }
            }
        }
    }
}

}  // namespace

void discBlur(BitmapView from, MutableBitmapView to, double radius, foundation::Workers& workers) {
    assert(from.height == to.height);
    discBlurRows(from, 0, to, radius, workers);
}

void discBlurRows(BitmapView from, int firstRow, MutableBitmapView to, double radius,
                  foundation::Workers& workers) {
    assert(from.width == to.width && firstRow >= 0 && firstRow + to.height <= from.height);
    if (!(radius >= 1)) {
        foundation::copyPixels(subview(from, {0, firstRow, to.width, to.height}), to);
        return;
    }
    const Disc disc(radius);
    const bool sumsFit = disc.count() <= kLargestDiscCount;

    // Strips of full height cost least; a narrow picture is cut across as well, as long as the bands
    // are much taller than the disc, whose height each of them reads twice.
    const int strips = (from.width + kStripWidth - 1) / kStripWidth;
    const int wanted = (2 * workers.width() + strips - 1) / strips;
    const int bands = std::clamp(to.height / (8 * disc.reach()), 1, wanted);
    workers.run(strips * bands, [&](int part) {
        const int x = part % strips * kStripWidth;
        const auto top = [&](int band) { return static_cast<int>(std::int64_t{band} * to.height / bands); };
        const int y = top(part / strips);
        const IntRect area{x, firstRow + y, std::min(kStripWidth, from.width - x),
                           top(part / strips + 1) - y};
        if (!sumsFit || !std::make_unique<DiscStrip>(disc, from, firstRow, to)->blur(area))
            blurPlainly(disc, from, firstRow, to, area);
    });
}

}  // namespace trimora::cutengine::kernels
