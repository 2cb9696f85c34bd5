#pragma once

#include <array>
#include <cstdint>
#include <memory>
#include <vector>

#include "foundation/Bitmap.h"
#include "foundation/Geometry.h"

namespace trimora::cutengine::kernels {

/// What the mask plane looked like after one paint pass: its alpha (255 shows the picture, 0 is cut
/// away) in square tiles, with ever smaller copies for drawing it small.
///
/// Immutable and shared: the screen reads one while the painter makes the next. Successive snapshots
/// share every tile that no stamp touched, so one costs what changed and never a whole plane.
class MaskSnapshot {
 public:
    static constexpr int kTileSide = 128;
    struct Tile {
        alignas(64) std::array<std::uint8_t, kTileSide * kTileSide> alpha;  ///< top row first

        /// Of each row: 0 or 255 where all of its alpha is that, else kMixed. Most rows of most masks need
        /// not be read.
        std::array<std::uint8_t, kTileSide> rows;
        static constexpr std::uint8_t kMixed = 1;
    };
    using TilePtr = std::shared_ptr<const Tile>;

    /// One size of the mask. Tiles stand row by row, top row first; pixels of the last column and row
    /// of tiles beyond width and height repeat the edge.
    struct Level {
        int width = 0;
        int height = 0;
        int tilesAcross = 0;
        std::vector<TilePtr> tiles;

        [[nodiscard]] std::uint8_t alphaAt(int x, int y) const {
            const auto index =
                static_cast<std::size_t>(y / kTileSide) * static_cast<std::size_t>(tilesAcross) +
                static_cast<std::size_t>(x / kTileSide);
            const auto inside = (y % kTileSide) * kTileSide + x % kTileSide;
            return tiles[index]->alpha[static_cast<std::size_t>(inside)];
        }
    };

    [[nodiscard]] int width() const { return levels_.front().width; }
    [[nodiscard]] int height() const { return levels_.front().height; }

    /// Level 0 is the plane; each further one is half as large, sides rounded up, down to 1 x 1; its
    /// pixels are the rounded mean of the (up to) four above.
    [[nodiscard]] const std::vector<Level>& levels() const { return levels_; }

 private:
    friend class MaskSnapshotter;
    std::vector<Level> levels_;
};

using MaskSnapshotPtr = std::shared_ptr<const MaskSnapshot>;

/// Makes the snapshots of one plane, each from the one before. Used on the painting queue alone.
class MaskSnapshotter {
 public:
    /// The plane as it is now. `changed` holds every pixel that differs from the last snapshot made
    /// here (top row first); a plane of another size is read whole whatever it says.
    [[nodiscard]] MaskSnapshotPtr take(foundation::BitmapView plane, const foundation::IntRect& changed);

    /// A plane that has just been filled with one alpha, without reading it: all tiles are one.
    [[nodiscard]] MaskSnapshotPtr takeFilled(int width, int height, std::uint8_t alpha);

    /// Forgets the last snapshot: the next one is read whole.
    void reset() { last_.reset(); }

 private:
    MaskSnapshotPtr last_;
};

}  // namespace trimora::cutengine::kernels
