#pragma once

#include <atomic>
#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>
#include <optional>

#include "cutengine/Colour.h"
#include "cutengine/Cursor.h"
#include "cutengine/CutViewHost.h"
#include "cutengine/HistoryStore.h"
#include "cutengine/InputEvents.h"
#include "cutengine/Layer.h"
#include "cutengine/MaskPainter.h"
#include "cutengine/Picture.h"
#include "cutengine/ResultRows.h"
#include "cutengine/StrokeBuilder.h"
#include "foundation/Clock.h"
#include "foundation/NotificationCenter.h"
#include "foundation/Queues.h"

namespace trimora::cutengine {

/// Whether a brush gesture paints or moves the picture.
enum class DragMode : std::uint64_t { paint = 0, pan = 1 };

/// The editing surface: shows the picture being cut, keeps the mask painted over it, shows what
/// replaces the parts cut away, and turns mouse, wheel and keys into painting, panning and zooming.
///
/// Life cycle. Empty until the first setImage(): painting, panning and zooming do nothing, the cursor
/// is the arrow and a left press asks the host to open a picture. Each setImage() begins a fresh
/// document: new layers, a new mask (nothing cut), an empty stroke buffer, a history of one state,
/// the picture fitted to the view. setImage(nullptr) empties the view again.
///
/// Spaces. View points: y-up, origin at the view's bottom left. Picture points: the picture's own
/// pixels, y-up, origin at its bottom left. Mask pixels: picture points times maskScale(). One affine
/// transform, about the picture's centre, places the picture (see Layer).
///
/// Threads. Everything here is called on the main thread; delegate and host are called there too.
/// Painting, mask rebuilds and history files run on a serial queue of its own, "serial que". A press
/// that is painted before another picture arrives is painted; one that is not is dropped. The
/// destructor waits for that queue.
///
/// Ownership. Host, delegate and services are borrowed. The delegate may be null; whoever sets it
/// clears it before it goes.
class RKImageCutView {
 public:
    /// What the view works with; all outlive it.
    struct Services {
        foundation::QueueFactory& queues;
        foundation::Clock& clock;
        foundation::NotificationCenter& notifications;
        /// Folder of the history files; created, private to its owner, when the view is made. None for who
        /// never steps back: nothing goes to the disk then, and there is no step to take.
        std::optional<std::filesystem::path> historyFolder;
    };

    RKImageCutView(const Services& services, CutViewHost& host);
    ~RKImageCutView();
    RKImageCutView(const RKImageCutView&) = delete;
    RKImageCutView& operator=(const RKImageCutView&) = delete;

    void setDelegate(RKImageCutViewDelegate* delegate) { delegate_ = delegate; }
    [[nodiscard]] RKImageCutViewDelegate* delegate() const { return delegate_; }

    // ── The picture ────────────────────────────────────────────────────────────────────────────
    [[nodiscard]] const PicturePtr& image() const { return image_; }
    void setImage(PicturePtr picture);

    /// Background and masked picture flattened to one picture of the picture's size, in straight
    /// alpha; none where there is no picture or no memory. Zoom and position play no part.
    [[nodiscard]] PicturePtr getResult();

    /// The same as it is at this moment, to be composed part by part on any thread while the view goes on;
    /// a blurred background is made as it is needed. The view's queues must outlive it.
    [[nodiscard]] std::shared_ptr<const ResultRows> resultRows();

    // ── The brush ──────────────────────────────────────────────────────────────────────────────
    static constexpr float kSmallestBrush = 10;
    static constexpr float kLargestBrush = 200;

    /// In view points, a whole number within the two limits above.
    [[nodiscard]] float brushDiameter() const { return brushDiameter_; }
    /// Clamps and rounds (halves away from zero), shows it in the cursor and tells the delegate the value as
    /// asked for.
    void setBrushDiameter(float diameter);
    /// The same without telling anybody.
    void setBrushDiameterSilent(float diameter);

    /// The mask value that the brush writes, 0..1: 0 cuts away, 1 brings back.
    [[nodiscard]] float brushAlphaValue() const { return brushAlphaValue_; }
    void setBrushAlphaValue(float alpha) { brushAlphaValue_ = alpha; }

    /// 0..1: where between centre and rim the soft edge begins. From 0.985 the edge is hard.
    [[nodiscard]] float brushHardness() const { return brushHardness_; }
    void setBrushHardness(float hardness);

    /// Colour painted in colour mode and shown as the solid background; none is transparent.
    [[nodiscard]] const std::optional<Colour>& brushColor() const { return brushColor_; }
    void setBrushColor(std::optional<Colour> colour) { brushColor_ = colour; }

    [[nodiscard]] DragMode dragMode() const { return dragMode_; }
    void setDragMode(DragMode mode) { dragMode_ = mode; }

    /// Paints into the colour plane instead of the mask; nothing shows that plane.
    [[nodiscard]] bool colorMode() const { return colorMode_; }
    void setColorMode(bool on) { colorMode_ = on; }

    // ── The background ─────────────────────────────────────────────────────────────────────────
    /// The controller's note of its choice; the view never reads it.
    [[nodiscard]] bool blurMode() const { return blurMode_; }
    void setBlurMode(bool on) { blurMode_ = on; }

    /// Shows the background plane: the blurred picture, or the brush colour when off.
    [[nodiscard]] bool isBlurOn() const { return blurOn_; }
    void setBlurOn(bool on);

    /// True hides the background plane, so what is cut away is transparent; false changes nothing.
    [[nodiscard]] bool isColorOn() const { return colorOn_; }
    void setColorOn(bool on);

    /// Refills the background plane for blurOn and brushColor.
    void drawBackground();

    /// Has the painting queue paint what is buffered. Every stamp asks for it by itself.
    void updateMap();

    // ── History ────────────────────────────────────────────────────────────────────────────────
    [[nodiscard]] std::int64_t historyLength() const { return history_.length(); }
    [[nodiscard]] std::int64_t historyCurrentState() const { return history_.currentState(); }
    [[nodiscard]] std::int64_t historyFileIndex() const { return history_.fileIndex(); }
    [[nodiscard]] const std::filesystem::path& historyDirectory() const { return history_.directory(); }
    void prevHistoryState();
    void nextHistoryState();
    void clearHistory();
    /// Takes the mask as it is once all painting asked for so far is done.
    void recordHistoryState();
    /// Brings the whole picture back, as one step that can be undone.
    void resetMask();
    /// Puts a mask from elsewhere in place of the one that was painted, as one step that can be undone. Its
    /// alpha alone counts (255 shows the picture); it may have any size, and is scaled to the mask plane.
    void loadMask(foundation::Bitmap mask);

    // ── Zoom and position ──────────────────────────────────────────────────────────────────────
    /// Zooms about a pointer (view points) by a scroll step.
    void scaleImg(foundation::Point pointer, double deltaY);
    /// Multiplies the zoom about the view's centre, at once, on the picture alone.
    void setScale(float factor);
    /// A field that nothing writes; the zoom lives in transform().
    [[nodiscard]] float scale() const { return scale_; }
    /// Moves the picture by so many view points at once, as far as its limits let it; it is not fitted any
    /// more then.
    void moveBy(foundation::Point way);
    void correctImagePositionWithFiting(bool fit);
    void limitDrag();
    /// Whether the picture is shown at the size that fits the view. Setting it and correcting the
    /// position with fitting brings the picture back to that size.
    [[nodiscard]] bool imageFit() const { return imageFit_; }
    void setImageFit(bool fit) { imageFit_ = fit; }
    /// The final transform of the picture, not the one in flight; identity while empty.
    [[nodiscard]] foundation::AffineTransform transform() const;
    /// The view's size in view points; a new one refits or reclamps the picture.
    [[nodiscard]] foundation::Size viewSize() const { return viewSize_; }
    void setViewSize(foundation::Size size);

    // ── Input, as the host receives it ─────────────────────────────────────────────────────────
    void mouseDown(const MouseEvent& event);
    void rightMouseDown(const MouseEvent& event);
    void mouseDragged(const MouseEvent& event);
    /// Either button's release ends a gesture.
    void mouseUp(const MouseEvent& event);
    void mouseEntered();
    void mouseExited();
    void scrollWheel(const ScrollEvent& event);
    void keyDown(const KeyEvent& event);
    void flagsChanged(Modifiers held);
    /// Whether a press is being followed.
    [[nodiscard]] bool isTracking() const { return tracking_; }

    // ── Cursor ─────────────────────────────────────────────────────────────────────────────────
    /// Chooses the pointer again and hands it to the host.
    void updateCursor();
    /// The kind that updateCursor() last chose.
    [[nodiscard]] Cursor::Kind cursorKind() const { return cursorKind_; }
    [[nodiscard]] const std::optional<Cursor>& imageCursor() const { return imageCursor_; }
    void setImageCursor(std::optional<Cursor> cursor) { imageCursor_ = std::move(cursor); }

    // ── What the screen shows ──────────────────────────────────────────────────────────────────
    /// Draws the part `area` (pixels, top row first) of a frame into `target`, which is the whole view
    /// at the host's scale factor, as it looks at this moment of the clock.
    void drawRect(foundation::MutableBitmapView target, const foundation::IntRect& area);
    /// Whether a next frame would differ from this one without further input.
    [[nodiscard]] bool isAnimating() const;

    // ── The planes, for those who look inside ──────────────────────────────────────────────────
    /// Mask pixels per picture point.
    [[nodiscard]] float maskScale() const { return painter_.maskScale(); }
    /// The mask as it is shown; none before the first paint pass.
    [[nodiscard]] kernels::MaskSnapshotPtr mask() const;
    /// Copies of the planes after all painting asked for so far; empty where there is none. Blocks on
    /// the painting queue.
    [[nodiscard]] foundation::Bitmap copyMaskPlane();
    [[nodiscard]] foundation::Bitmap copyColorPlane();
    [[nodiscard]] const std::shared_ptr<Layer>& imageLayer() const { return imageLayer_; }
    [[nodiscard]] const std::shared_ptr<Layer>& bluredLayer() const { return bluredLayer_; }
    [[nodiscard]] const std::shared_ptr<Layer>& maskLayer() const { return maskLayer_; }
    [[nodiscard]] const Layer& layer() const { return rootLayer_; }

 private:
    static void doQueued(const foundation::Task& task, foundation::SerialQueue& main, RKImageCutView& view,
                         const std::weak_ptr<char>& alive);
    /// Work for a picture: dropped when another one has come before its turn. Without a number it is for that
    /// of this moment, which is the next one already for work that queues more: that gives documentAtWork_.
    void onSerialQueue(foundation::Task task);
    void onSerialQueue(std::uint64_t document, foundation::Task task);
    void onMainQueue(foundation::Task task);

    void discardQueuedWork();
    void makeLayers();
    void paintPass();
    void showMask(const std::optional<MaskPainter::Shown>& shown);
    void maskChanged(const foundation::IntRect& maskPixels);
    void recordState();
    void stepHistory(HistoryStore::Step step);
    void historyChanged();

    void beginGesture(const MouseEvent& event);
    void continueGesture(const MouseEvent& event);
    void finishGestureWork();
    void layStamps(foundation::Point pointer);
    [[nodiscard]] PaintSettings paintSettings() const;
    [[nodiscard]] bool pressPans() const { return commandPressed_ != (dragMode_ == DragMode::pan); }

    [[nodiscard]] bool hasPlacedPicture() const;
    void placeLayers(const foundation::AffineTransform& transform);
    void animateLayers(const foundation::AffineTransform& transform, double duration);
    void removeAnimations();
    void needsDisplay();

    [[nodiscard]] Cursor brushCursor() const;
    void startBlur();
    void showBlur(std::uint64_t request, std::shared_ptr<const DrawablePicture> blurred);
    [[nodiscard]] ResultBackground resultBackground();

    Services services_;
    CutViewHost& host_;
    RKImageCutViewDelegate* delegate_ = nullptr;

    PicturePtr image_;
    Layer rootLayer_;
    std::shared_ptr<Layer> bluredLayer_;
    std::shared_ptr<Layer> imageLayer_;
    std::shared_ptr<Layer> maskLayer_;
    foundation::Size viewSize_;
    foundation::Bitmap tile_;  ///< the checkerboard at tileScale_
    double tileScale_ = 0;

    bool dragging_ = false;  ///< the present gesture pans
    bool cutting_ = false;   ///< the present gesture paints
    bool tracking_ = false;  ///< a press is being followed until its release
    bool altPressed_ = false;
    bool commandPressed_ = false;  ///< held, or the right button began the gesture; inverts the drag mode
    bool rightButtonSetCommand_ = false;
    bool keyboardCommand_ = false;
    bool mouseIn_ = false;

    float brushDiameter_ = 20;
    float brushAlphaValue_ = 0;
    float brushHardness_ = 1;
    float scale_ = 0;
    std::optional<Colour> brushColor_;
    DragMode dragMode_ = DragMode::paint;
    bool colorMode_ = false;
    bool blurMode_ = false;
    bool blurOn_ = false;
    bool colorOn_ = false;
    bool imageFit_ = false;
    bool historyTroubleTold_ = false;
    Cursor::Kind cursorKind_ = Cursor::Kind::arrow;
    std::optional<Cursor> imageCursor_;

    std::uint64_t blurRequest_ = 0;  ///< a blur that ends under an older number is dropped
    bool blurPending_ = false;

    /// Counts documents: work queued for an older one is dropped when its turn comes.
    std::atomic<std::uint64_t> document_ = 0;
    std::uint64_t documentAtWork_ = 0;  ///< that of the task on the painting queue, for it alone
    /// Work on other queues that may end after the view looks whether this still lives.
    std::shared_ptr<char> alive_ = std::make_shared<char>();

    StrokeBuilder stroke_;
    MaskPainter painter_;
    HistoryStore history_;
    foundation::NotificationCenter::Observation cursorObservation_;
    std::unique_ptr<foundation::SerialQueue> serial_;  ///< last: its work uses the members above
};

}  // namespace trimora::cutengine
