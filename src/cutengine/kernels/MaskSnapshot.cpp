#include "cutengine/kernels/MaskSnapshot.h"

#include <algorithm>
#include <cstddef>
#include <cstring>
#include <mutex>
#include <new>
#include <utility>

#include "cutengine/kernels/MaskRow.h"

namespace trimora::cutengine::kernels {
namespace {

using foundation::BitmapView;
using foundation::IntRect;

constexpr int kTileSide = MaskSnapshot::kTileSide;
constexpr int kAlphaByte = 3;
constexpr int kBytesPerPixel = 4;

// Memory of released tiles, kept warm for the next ones: memory fresh from the system costs a page
// fault for every 4 KiB, several times what filling a tile does.
class TileStock {
 public:
    static constexpr std::size_t kMost = 1024;  // 16 MiB, four times the tiles of the largest plane

    void* take(std::size_t size, std::size_t alignment) {
        {
            const std::scoped_lock lock(mutex_);
            if (size == blockSize_ && !blocks_.empty()) {
                void* const block = blocks_.back();
                blocks_.pop_back();
                return block;
            }
        }
        return ::operator new (size, std::align_val_t{alignment});
    }

    void giveBack(void* block, std::size_t size, std::size_t alignment) noexcept {
        {
            const std::scoped_lock lock(mutex_);
            blockSize_ = size;  // all blocks are of one size: only tiles are kept here
            if (blocks_.size() < kMost) {
                blocks_.push_back(block);
                return;
            }
        }
        ::operator delete (block, std::align_val_t{alignment});
    }

    TileStock() { blocks_.reserve(kMost); }

 private:
    std::mutex mutex_;
    std::size_t blockSize_ = 0;
    std::vector<void*> blocks_;
};

// Lives as long as the process: snapshots held by static objects may be released after any destructor.
TileStock& tileStock() {
    static auto* const instance = new TileStock;
    return *instance;
}

// Makes a tile and its reference count in one block of the stock.
template <typename T>
struct TileAllocator {
    using value_type = T;
    TileAllocator() = default;
    template <typename U>
    explicit TileAllocator(const TileAllocator<U>& /*other*/) {}

    T* allocate(std::size_t count) {
        return static_cast<T*>(tileStock().take(count * sizeof(T), alignof(T)));
    }
    void deallocate(T* block, std::size_t count) noexcept {
        tileStock().giveBack(block, count * sizeof(T), alignof(T));
    }
    template <typename U>
    void construct(U* place) {
        ::new (static_cast<void*>(place)) U;  // alpha is written right after: not zeroed first
    }
    friend bool operator==(const TileAllocator&, const TileAllocator&) { return true; }
};

using Tile = MaskSnapshot::Tile;
using Level = MaskSnapshot::Level;

std::uint8_t* rowOf(Tile& tile, int y) {
    return tile.alpha.data() + static_cast<std::ptrdiff_t>(y) * kTileSide;
}
const std::uint8_t* rowOf(const Tile& tile, int y) {
    return tile.alpha.data() + static_cast<std::ptrdiff_t>(y) * kTileSide;
}

std::size_t tileIndex(const Level& level, int column, int row) {
    return static_cast<std::size_t>(row) * static_cast<std::size_t>(level.tilesAcross) +
           static_cast<std::size_t>(column);
}

// The pixels of a tile that lie on the picture, in the tile's own coordinates.
IntRect pictureIn(const Level& level, int column, int row) {
    return {0, 0, std::min(kTileSide, level.width - column * kTileSide),
            std::min(kTileSide, level.height - row * kTileSide)};
}

// Repeats the last column and row of what is on the picture over the rest of the tile.
void repeatEdges(Tile& tile, const IntRect& picture) {
    for (int y = 0; y < picture.height && picture.width < kTileSide; ++y) {
        std::uint8_t* const row = rowOf(tile, y);
        std::memset(row + picture.width, row[picture.width - 1],
                    static_cast<std::size_t>(kTileSide - picture.width));
    }
    for (int y = picture.height; y < kTileSide; ++y)
        std::memcpy(rowOf(tile, y), rowOf(tile, picture.height - 1), kTileSide);
}

// Says again what rows from `begin` on hold, `end` not included.
void sumUpRows(Tile& tile, int begin, int end) {
    for (int y = begin; y < end; ++y) {
        const std::uint8_t value = *rowOf(tile, y);
        const bool decided = (value == 0 || value == 255) &&
                             endOfEqualValues(rowOf(tile, y), 0, kTileSide, value) == kTileSide;
        tile.rows[static_cast<std::size_t>(y)] = decided ? value : Tile::kMixed;
    }
}

// Takes part of a tile of level 0 from the plane.
void readPlane(BitmapView plane, int column, int row, const IntRect& part, Tile& tile) {
    for (int y = part.y; y < part.bottom(); ++y) {
        const std::uint8_t* const from =
            plane.row(row * kTileSide + y) +
            static_cast<std::ptrdiff_t>(column * kTileSide + part.x) * kBytesPerPixel + kAlphaByte;
        std::uint8_t* const to = rowOf(tile, y) + part.x;
        for (int x = 0; x < part.width; ++x)
            to[x] = from[static_cast<std::ptrdiff_t>(x) * kBytesPerPixel];
    }
}

// The rounded mean of each 2 x 2 pixels of `above`. Where fewer than four are there the repeated edge
// stands in for the others, and the mean comes out the same.
void halve(const Level& above, int column, int row, const IntRect& part, Tile& tile) {
    constexpr int kHalf = kTileSide / 2;
    const auto quarter = [&](int x, int y) -> const Tile& {
        const int lastColumn = above.tilesAcross - 1;
        const int lastRow = static_cast<int>(above.tiles.size()) / above.tilesAcross - 1;
        const int sourceColumn = std::min(2 * column + x / kHalf, lastColumn);
        return *above.tiles[tileIndex(above, sourceColumn, std::min(2 * row + y / kHalf, lastRow))];
    };
    for (int y = part.y; y < part.bottom(); ++y) {
        for (int begin = part.x; begin < part.right();) {
            const int end = std::min(part.right(), (begin / kHalf + 1) * kHalf);
            const Tile& from = quarter(begin, y);
            const std::uint8_t* const upper = rowOf(from, y % kHalf * 2);
            const std::uint8_t* const lower = upper + kTileSide;
            std::uint8_t* const to = rowOf(tile, y);
            for (int x = begin; x < end; ++x) {
                const int at = x % kHalf * 2;
                to[x] = static_cast<std::uint8_t>(
                    (upper[at] + upper[at + 1] + lower[at] + lower[at + 1] + 2) / 4);
            }
            begin = end;
        }
    }
}

// Renews the tiles of a level that meet `changed`; `write(column, row, part, tile)` fills in the part
// of a tile that changed.
template <typename Write>
void renew(Level& level, const IntRect& changed, const Write& write) {
    for (int row = changed.y / kTileSide; row * kTileSide < changed.bottom(); ++row) {
        for (int column = changed.x / kTileSide; column * kTileSide < changed.right(); ++column) {
            MaskSnapshot::TilePtr& kept = level.tiles[tileIndex(level, column, row)];
            const auto tile = std::allocate_shared<Tile>(TileAllocator<Tile>());
            const IntRect picture = pictureIn(level, column, row);
            const IntRect local{changed.x - column * kTileSide, changed.y - row * kTileSide, changed.width,
                                changed.height};
            const IntRect part = kept == nullptr ? picture : intersected(local, picture);
            if (part != picture)
                *tile = *kept;
            write(column, row, part, *tile);
            repeatEdges(*tile, picture);
            sumUpRows(*tile, part.y, part.bottom() == picture.bottom() ? kTileSide : part.bottom());
            kept = tile;
        }
    }
}

int tilesFor(int pixels) {
    return (pixels + kTileSide - 1) / kTileSide;
}

// Every level of a plane, with no tile in place yet.
std::vector<Level> emptyLevels(int width, int height) {
    std::vector<Level> levels;
    for (;;) {
        const int across = tilesFor(width);
        const auto count = static_cast<std::size_t>(across) * static_cast<std::size_t>(tilesFor(height));
        levels.push_back({width, height, across, std::vector<MaskSnapshot::TilePtr>(count)});
        if (width == 1 && height == 1)
            return levels;
        width = (width + 1) / 2;
        height = (height + 1) / 2;
    }
}

// The pixels of the next level that depend on `changed`.
IntRect halved(const IntRect& changed) {
    const int x = changed.x / 2;
    const int y = changed.y / 2;
    return {x, y, (changed.right() + 1) / 2 - x, (changed.bottom() + 1) / 2 - y};
}

}  // namespace

MaskSnapshotPtr MaskSnapshotter::take(BitmapView plane, const IntRect& changed) {
    if (plane.isEmpty()) {
        reset();
        return nullptr;
    }
    const bool sameSize =
        last_ != nullptr && last_->width() == plane.width && last_->height() == plane.height;
    IntRect dirty = sameSize ? intersected(changed, plane.bounds()) : plane.bounds();
    if (dirty.isEmpty())
        return last_;
    const auto made = std::make_shared<MaskSnapshot>();
    std::vector<Level>& levels = made->levels_;
    levels = sameSize ? last_->levels_ : emptyLevels(plane.width, plane.height);
    for (std::size_t k = 0; k < levels.size(); ++k) {
        renew(levels[k], dirty, [&](int column, int row, const IntRect& part, Tile& tile) {
            if (k == 0)
                readPlane(plane, column, row, part, tile);
            else
                halve(levels[k - 1], column, row, part, tile);
        });
        dirty = halved(dirty);
    }
    last_ = made;
    return last_;
}

MaskSnapshotPtr MaskSnapshotter::takeFilled(int width, int height, std::uint8_t alpha) {
    const auto tile = std::allocate_shared<Tile>(TileAllocator<Tile>());
    tile->alpha.fill(alpha);
    sumUpRows(*tile, 0, kTileSide);
    const auto made = std::make_shared<MaskSnapshot>();
    made->levels_ = emptyLevels(width, height);
    for (Level& level : made->levels_)
        std::fill(level.tiles.begin(), level.tiles.end(), tile);
    last_ = made;
    return last_;
}

}  // namespace trimora::cutengine::kernels
