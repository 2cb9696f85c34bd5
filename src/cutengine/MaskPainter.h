#pragma once

#include <atomic>
#include <deque>
#include <functional>
#include <memory>
#include <mutex>
#include <optional>
#include <span>
#include <vector>

#include "cutengine/kernels/BrushStamp.h"
#include "cutengine/kernels/MaskCodec.h"
#include "cutengine/kernels/MaskSnapshot.h"
#include "foundation/Bitmap.h"
#include "foundation/Geometry.h"
#include "foundation/Queues.h"

namespace trimora::cutengine {

/// Hardness from which a stamp has a hard edge and the soft stamp is not used.
inline constexpr float kHardEdge = 0.985F;
/// Longest side of the painting planes, in mask pixels.
inline constexpr double kLargestPlaneSide = 2000;

/// How a stamp is painted: fixed when it is queued, so that what a stroke paints never depends on when
/// the painting queue gets to it.
struct PaintSettings {
    bool colorMode = false;  ///< into the colour plane instead of the mask plane
    foundation::Pixel fill;  ///< premultiplied
    float hardness = 1;      ///< 0..1
    friend bool operator==(const PaintSettings&, const PaintSettings&) = default;
};

/// The size of the painting planes for a picture, and the mask pixels per picture point.
struct PlaneSize {
    int width = 0;
    int height = 0;
    float maskScale = 1;

    /// 0 x 0 for a picture without area; else at least 1 pixel a side, at most kLargestPlaneSide.
    [[nodiscard]] static PlaneSize forPicture(foundation::Size picture);
};

/// The two painting planes, the buffer of stamps that wait for them, and the paint pass that brings
/// the one into the other.
///
/// Threads: the main thread appends stamps and begins documents; the painting queue runs passes and
/// owns the planes. The buffer has a lock of its own, held for moments, never while painting.
class MaskPainter {
 public:
    /// What one pass changed in the mask plane.
    struct Shown {
        kernels::MaskSnapshotPtr mask;
        foundation::IntRect changed;  ///< mask pixels, top row first
    };

    // ── Main thread ────────────────────────────────────────────────────────────────────────────
    /// A picture of another size: the planes are rebuilt at the next pass. Call it while no pass runs.
    void beginDocument(foundation::Size picture);
    void append(std::span<const foundation::Rect> stamps, const PaintSettings& settings);
    /// The stroke is whole: the pass that comes here records one history state.
    void appendEndOfStroke();
    void emptyBuffer();
    [[nodiscard]] std::size_t bufferedStamps() const;

    // ── Any thread ─────────────────────────────────────────────────────────────────────────────
    /// The planes are rebuilt at the next pass: nothing cut, or the mask given beforehand.
    void setNeedsContectUpdate() { needsContectUpdate_ = true; }
    [[nodiscard]] float maskScale() const { return maskScale_; }
    /// The soft stamp of this hardness at the present scale.
    [[nodiscard]] kernels::BrushStamp brushMask(float hardness) const;

    // ── Painting queue ─────────────────────────────────────────────────────────────────────────
    /// What the next rebuild loads: a mask, of which an empty one means nothing cut, or the rows that make
    /// another mask of the one in the plane.
    void setNewContextImage(kernels::MaskRows mask);

    /// The part of the mask plane that may differ from the state that the history shows: all that has changed
    /// since setStateShown(), and all that setNewContextImage() is still to change.
    [[nodiscard]] const foundation::IntRect& changedSinceState() const { return changedSinceState_; }
    /// The history shows the mask plane as it is.
    void setStateShown();

    /// Rebuilds the planes where that is due, paints what is buffered up to the end of a stroke, calls
    /// `recordHistoryState` there, and returns the mask as it is now where it changed. Throws std::bad_alloc:
    /// stamps may then be lost, and the next pass shows the whole mask as it has become.
    [[nodiscard]] std::optional<Shown> paintPass(const foundation::Task& recordHistoryState);

    /// As paintPass(), but leaves what is buffered to the next pass.
    [[nodiscard]] std::optional<Shown> rebuildPass();

    [[nodiscard]] const foundation::Bitmap& bitmapContext() const { return bitmapContext_; }
    [[nodiscard]] const foundation::Bitmap& colorContext() const { return colorContext_; }

 private:
    struct Queued {
        foundation::Rect stamp;  ///< picture points; width and height of -1 mark the end of a stroke
        PaintSettings settings;
        [[nodiscard]] bool isEndOfStroke() const { return stamp.width == -1; }
    };

    /// What a pass paints: grows the rectangle by what it changed in the mask plane.
    using Paint = std::function<void(foundation::IntRect&)>;
    [[nodiscard]] std::optional<Shown> pass(const Paint& paint);
    [[nodiscard]] foundation::IntRect rebuildPlanes();
    void makePlanes(const PlaneSize& size);
    void emptyColorPlane(const PlaneSize& size);
    [[nodiscard]] foundation::IntRect rowsToCome() const;
    [[nodiscard]] std::vector<Queued> takeBatch();
    void paintBatch(const std::vector<Queued>& batch, foundation::IntRect& maskChanged);
    [[nodiscard]] foundation::Rect inPlanePixels(const foundation::Rect& stamp) const;

    mutable std::mutex bufferMutex_;
    std::deque<Queued> eventBuffer_;
    std::atomic<bool> needsContectUpdate_ = false;
    std::atomic<float> maskScale_ = 1;

    foundation::Size pictureSize_;
    foundation::Bitmap bitmapContext_;
    foundation::Bitmap colorContext_;
    bool isColorEmpty_ = false;  ///< false where something may have been painted into the colour plane
    kernels::MaskRows newContextImage_;
    bool isStateToCome_ = false;  ///< whether newContextImage_ makes the state that the history shows
    foundation::IntRect changedSinceState_;
    kernels::MaskSnapshotter snapshotter_;
    bool isBrokenOff_ = false;  ///< whether the last pass ended before its mask was shown
};

}  // namespace trimora::cutengine
