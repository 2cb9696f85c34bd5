#include "cutengine/RKImageCutView.h"

#include <algorithm>
#include <cmath>
#include <utility>

#include "cutengine/imageutil/PictureActions.h"
#include "foundation/Log.h"
#include "foundation/OutOfMemory.h"

namespace trimora::cutengine {

using foundation::Bitmap;
using foundation::IntRect;
using foundation::Point;
using foundation::Rect;
using foundation::Result;
using foundation::Size;
using foundation::Task;

RKImageCutView::RKImageCutView(const Services& services, CutViewHost& host)
    : services_(services),
      host_(host),
      history_(services.historyFolder),
      cursorObservation_(services.notifications.observe("rk.cutView.needsCursorUpdate",
                                                        [this](const auto&) { updateCursor(); })),
      serial_(services.queues.makeSerialQueue("serial que")) {}

RKImageCutView::~RKImageCutView() {
    ++document_;
}

// ── Queues ──────────────────────────────────────────────────────────────────────────────────────

/// What a task cannot do for want of memory ends there; the host is told, where there is memory for that. The
/// view may have gone meanwhile.
void RKImageCutView::doQueued(const Task& task, foundation::SerialQueue& main, RKImageCutView& view,
                              const std::weak_ptr<char>& alive) {
    if (foundation::asFarAsMemoryGoes("not enough memory to go on with the picture", task))
        return;
    foundation::asFarAsMemoryGoes("not enough memory to say so", [&] {
        main.async([&view, alive] {
            if (!alive.expired())
                view.host_.memoryIsMissing();
        });
    });
}

void RKImageCutView::onSerialQueue(Task task) {
    onSerialQueue(document_, std::move(task));
}

void RKImageCutView::onSerialQueue(std::uint64_t document, Task task) {
    serial_->async([this, document, task = std::move(task)] {
        if (document != document_)
            return;
        documentAtWork_ = document;
        doQueued(task, services_.queues.mainQueue(), *this, alive_);
    });
}

void RKImageCutView::onMainQueue(Task task) {
    services_.queues.mainQueue().async([this, alive = std::weak_ptr(alive_), task = std::move(task)] {
        if (!alive.expired())
            doQueued(task, services_.queues.mainQueue(), *this, alive);
    });
}

// ── Picture ─────────────────────────────────────────────────────────────────────────────────────

void RKImageCutView::setImage(PicturePtr picture) {
    discardQueuedWork();
    image_ = std::move(picture);
    historyTroubleTold_ = false;
    makeLayers();
    painter_.beginDocument(imageLayer_->size());
    // Nobody waits for the mask: until it is there all of the picture shows, as it does then.
    onSerialQueue([this] { showMask(painter_.rebuildPass()); });
    recordHistoryState();
    imageFit_ = true;
    correctImagePositionWithFiting(true);
    needsDisplay();
    if (image_)
        drawBackground();
}

/// Whatever was asked for the picture before is void, its history too; a pass that is running ends first, so
/// the next document begins on a queue at rest.
void RKImageCutView::discardQueuedWork() {
    painter_.emptyBuffer();
    stroke_.end();
    ++blurRequest_;
    blurPending_ = false;
    ++document_;
    serial_->sync([this] { history_.clear(); });
}

void RKImageCutView::makeLayers() {
    const Size size = image_ ? image_->size() : Size{};
    rootLayer_.removeAllSublayers();
    bluredLayer_ = std::make_shared<Layer>(size);
    bluredLayer_->setHidden(true);
    rootLayer_.addSublayer(bluredLayer_);

    imageLayer_ = std::make_shared<Layer>(size);
    if (image_ && image_->isValid())
        imageLayer_->setContents(makeDrawable(image_, services_.queues.workers()));
    rootLayer_.addSublayer(imageLayer_);

    maskLayer_ = std::make_shared<Layer>(size);
    imageLayer_->setMask(maskLayer_);
}

kernels::MaskSnapshotPtr RKImageCutView::mask() const {
    if (!maskLayer_)
        return nullptr;
    const LayerContents contents = maskLayer_->contents();
    const auto* snapshot = std::get_if<kernels::MaskSnapshotPtr>(&contents);
    return snapshot != nullptr ? *snapshot : nullptr;
}

// ── Brush ───────────────────────────────────────────────────────────────────────────────────────

void RKImageCutView::setBrushDiameterSilent(float diameter) {
    brushDiameter_ = std::round(std::clamp(diameter, kSmallestBrush, kLargestBrush));
}

void RKImageCutView::setBrushDiameter(float diameter) {
    setBrushDiameterSilent(diameter);
    updateCursor();
    if (delegate_ != nullptr)
        delegate_->cutView_didChangeBrushDiameter(this, diameter);
}

void RKImageCutView::setBrushHardness(float hardness) {
    brushHardness_ = std::clamp(hardness, 0.0F, 1.0F);
}

// ── Painting ────────────────────────────────────────────────────────────────────────────────────

void RKImageCutView::updateMap() {
    onSerialQueue([this] { paintPass(); });
}

void RKImageCutView::paintPass() {
    showMask(painter_.paintPass([this] { recordState(); }));
}

void RKImageCutView::showMask(const std::optional<MaskPainter::Shown>& shown) {
    if (!shown)
        return;
    maskLayer_->setContents(shown->mask);
    onMainQueue([this, changed = shown->changed] { maskChanged(changed); });
}

void RKImageCutView::maskChanged(const IntRect& maskPixels) {
    if (!hasPlacedPicture())
        return;
    if (isAnimating()) {
        needsDisplay();
        return;
    }
    const kernels::MaskSnapshotPtr shown = mask();
    if (!shown)
        return;
    // Bilinear sampling carries a change one mask pixel further; smaller copies of the mask one
    // device pixel further still, which two view points cover at any scale factor.
    constexpr double kMaskReach = 2;
    constexpr double kViewReach = 2;
    const Size size = imageLayer_->size();
    const double toPictureX = size.width / shown->width();
    const double toPictureY = size.height / shown->height();
    const double left = (maskPixels.x - kMaskReach) * toPictureX;
    const double right = (maskPixels.right() + kMaskReach) * toPictureX;
    const double top = (shown->height() - maskPixels.y + kMaskReach) * toPictureY;
    const double bottom = (shown->height() - maskPixels.bottom() - kMaskReach) * toPictureY;
    const auto map = imageLayer_->toView(imageLayer_->transform());
    const Point lower = map.apply({left, bottom});
    const Point upper = map.apply({right, top});
    const Rect area{lower.x - kViewReach, lower.y - kViewReach, upper.x - lower.x + 2 * kViewReach,
                    upper.y - lower.y + 2 * kViewReach};
    host_.setNeedsDisplay(intersected(area, {0, 0, viewSize_.width, viewSize_.height}));
}

void RKImageCutView::resetMask() {
    painter_.setNeedsContectUpdate();
    updateMap();
    recordHistoryState();
}

void RKImageCutView::loadMask(Bitmap mask) {
    // A task must be copyable, which a bitmap is not.
    onSerialQueue([this, loaded = std::make_shared<Bitmap>(std::move(mask))] {
        painter_.setNewContextImage({std::move(*loaded)});
        painter_.setNeedsContectUpdate();
        paintPass();
        recordState();
    });
}

Bitmap RKImageCutView::copyMaskPlane() {
    Bitmap copy;
    serial_->sync([&] {
        if (Result<Bitmap> made = painter_.bitmapContext().clone())
            copy = std::move(*made);
    });
    return copy;
}

Bitmap RKImageCutView::copyColorPlane() {
    Bitmap copy;
    serial_->sync([&] {
        if (Result<Bitmap> made = painter_.colorContext().clone())
            copy = std::move(*made);
    });
    return copy;
}

// ── History ─────────────────────────────────────────────────────────────────────────────────────

void RKImageCutView::clearHistory() {
    serial_->sync([this] { history_.clear(); });
    recordHistoryState();
}

void RKImageCutView::recordHistoryState() {
    onSerialQueue([this] { recordState(); });
}

void RKImageCutView::recordState() {
    const Result<void> recorded =
        history_.record(painter_.bitmapContext().view(), painter_.changedSinceState());
    painter_.setStateShown();
    onMainQueue([this, recorded, document = documentAtWork_] {
        if (!recorded && !historyTroubleTold_ && document == document_) {
            historyTroubleTold_ = true;
            foundation::log::warning("history cannot be kept: %s", recorded.error().message.c_str());
            host_.historyCannotBeKept(recorded.error().message);
        }
        historyChanged();
    });
}

void RKImageCutView::prevHistoryState() {
    stepHistory(HistoryStore::Step::back);
}

void RKImageCutView::nextHistoryState() {
    if (history_.canStepForward())
        stepHistory(HistoryStore::Step::forward);
}

void RKImageCutView::stepHistory(HistoryStore::Step step) {
    onSerialQueue([this, step] {
        std::optional<kernels::MaskRows> loaded = history_.step(step, painter_.changedSinceState());
        if (!loaded)
            return;
        painter_.setNewContextImage(std::move(*loaded));
        painter_.setNeedsContectUpdate();
        onSerialQueue(documentAtWork_, [this] { paintPass(); });
        onMainQueue([this] { historyChanged(); });
    });
}

void RKImageCutView::historyChanged() {
    if (delegate_ != nullptr)
        delegate_->cutViewDidChangeHistoryState(this);
}

}  // namespace trimora::cutengine
