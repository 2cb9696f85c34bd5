#include "cutengine/MaskPainter.h"

#include <algorithm>
#include <new>
#include <utility>

#include "cutengine/kernels/PixelRows.h"
#include "cutengine/kernels/Resample.h"
#include "cutengine/kernels/StrokePainter.h"

namespace trimora::cutengine {

using foundation::Bitmap;
using foundation::IntRect;
using foundation::MutableBitmapView;
using foundation::Pixel;
using foundation::Rect;
using foundation::Result;
using foundation::Size;

namespace {

constexpr Pixel kNothingCut{0, 0, 0, 255};
constexpr Pixel kTransparent{};
constexpr Rect kEndOfStroke{0, 0, -1, -1};
/// Side of the largest brush in view points; the soft stamp is made for it.
constexpr float kLargestStamp = 200;

Bitmap filledPlane(const PlaneSize& size, Pixel fill) {
    Result<Bitmap> plane = Bitmap::createFilled(size.width, size.height, fill);
    if (!plane)
        throw std::bad_alloc();
    return std::move(*plane);
}

bool hasSize(const Bitmap& plane, const PlaneSize& size) {
    return plane.width() == size.width && plane.height() == size.height;
}

/// A plane of the same size needs no other memory.
void refill(Bitmap& plane, const PlaneSize& size, Pixel fill) {
    if (hasSize(plane, size)) {
        plane.fill(fill);
        return;
    }
    plane = {};
    plane = filledPlane(size, fill);
}

/// Puts rows into a plane as wide, from `top` on; returns where that changed it.
IntRect putRows(foundation::BitmapView rows, int top, MutableBitmapView plane) {
    IntRect changed;
    std::vector<std::int32_t> places(static_cast<std::size_t>(rows.width + kernels::kPlacesSlack));
    for (int y = 0; y < rows.height; ++y) {
        const int count =
            kernels::differingPixels(rows.row(y), plane.row(top + y), rows.width, places.data());
        if (count == 0)
            continue;
        const int first = places.front();
        const int last = places[static_cast<std::size_t>(count) - 1];
        changed = united(changed, {first, top + y, last + 1 - first, 1});
    }
    if (!changed.isEmpty())
        copyPixels(subview(rows, {changed.x, changed.y - top, changed.width, changed.height}),
                   subview(plane, changed));
    return changed;
}

}  // namespace

PlaneSize PlaneSize::forPicture(Size picture) {
    if (picture.isEmpty())
        return {};
    const bool wide = picture.width / picture.height > 1;
    const double width = wide ? kLargestPlaneSide : picture.width * kLargestPlaneSide / picture.height;
    const double height = wide ? picture.height * kLargestPlaneSide / picture.width : kLargestPlaneSide;
    const bool fits = picture.width <= width;
    const auto side = [](double value) { return std::max(1, static_cast<int>(value)); };
    if (fits)
        return {side(picture.width), side(picture.height), 1};
    return {side(width), side(height), static_cast<float>(width / picture.width)};
}

void MaskPainter::beginDocument(Size picture) {
    pictureSize_ = picture;
    newContextImage_ = {};
    needsContectUpdate_ = true;
}

void MaskPainter::append(std::span<const Rect> stamps, const PaintSettings& settings) {
    const std::scoped_lock lock(bufferMutex_);
    for (const Rect& stamp : stamps)
        eventBuffer_.push_back({stamp, settings});
}

void MaskPainter::appendEndOfStroke() {
    const std::scoped_lock lock(bufferMutex_);
    eventBuffer_.push_back({kEndOfStroke, {}});
}

void MaskPainter::emptyBuffer() {
    const std::scoped_lock lock(bufferMutex_);
    eventBuffer_.clear();
}

std::size_t MaskPainter::bufferedStamps() const {
    const std::scoped_lock lock(bufferMutex_);
    return eventBuffer_.size();
}

kernels::BrushStamp MaskPainter::brushMask(float hardness) const {
    return {kLargestStamp / maskScale_, hardness};
}

void MaskPainter::setNewContextImage(kernels::MaskRows mask) {
    newContextImage_ = std::move(mask);
    isStateToCome_ = true;
    changedSinceState_ = newContextImage_.isWhole ? bitmapContext_.view().bounds() : rowsToCome();
}

void MaskPainter::setStateShown() {
    isStateToCome_ = false;
    changedSinceState_ = rowsToCome();
}

IntRect MaskPainter::rowsToCome() const {
    if (newContextImage_.isWhole)
        return {};
    return {0, newContextImage_.top, newContextImage_.pixels.width(), newContextImage_.pixels.height()};
}

std::optional<MaskPainter::Shown> MaskPainter::paintPass(const foundation::Task& recordHistoryState) {
    return pass([&](IntRect& changed) {
        for (std::vector<Queued> batch = takeBatch(); !batch.empty(); batch = takeBatch()) {
            if (batch.front().isEndOfStroke()) {
                recordHistoryState();
                break;
            }
            paintBatch(batch, changed);
        }
    });
}

std::optional<MaskPainter::Shown> MaskPainter::rebuildPass() {
    return pass([](IntRect&) {});
}

std::optional<MaskPainter::Shown> MaskPainter::pass(const Paint& paint) {
    IntRect changed;
    bool all = false;  // is to be shown, and the snapshotter does not take it for what it was
    if (needsContectUpdate_.exchange(false)) {
        all = newContextImage_.isWhole;
        try {
            changed = rebuildPlanes();
        } catch (const std::bad_alloc&) {
            needsContectUpdate_ = true;
            throw;
        }
    }
    if (bitmapContext_.isEmpty() || colorContext_.isEmpty())
        return std::nullopt;
    if (std::exchange(isBrokenOff_, true) && !all) {
        snapshotter_.reset();
        all = true;
    }
    paint(changed);
    std::optional<Shown> shown;
    if (all || !changed.isEmpty()) {
        shown = {snapshotter_.take(bitmapContext_.view(), changed),
                 all ? bitmapContext_.view().bounds() : changed};
    }
    isBrokenOff_ = false;
    return shown;
}

/// Returns where rows that came changed the mask plane as it was; nothing where it was made anew.
IntRect MaskPainter::rebuildPlanes() {
    if (newContextImage_.isWhole) {
        changedSinceState_ = bitmapContext_.view().bounds();
        makePlanes(PlaneSize::forPicture(pictureSize_));
        newContextImage_ = {};
        changedSinceState_ = bitmapContext_.view().bounds();
        return {};
    }
    emptyColorPlane({bitmapContext_.width(), bitmapContext_.height()});
    const IntRect changed =
        putRows(newContextImage_.pixels.view(), newContextImage_.top, bitmapContext_.view());
    newContextImage_ = {};
    changedSinceState_ = isStateToCome_ ? IntRect{} : united(changedSinceState_, changed);
    return changed;
}

void MaskPainter::makePlanes(const PlaneSize& size) {
    snapshotter_.reset();
    if (size.width == 0) {
        bitmapContext_ = {};
        colorContext_ = {};
        return;
    }
    maskScale_ = size.maskScale;
    const Bitmap& mask = newContextImage_.pixels;
    if (mask.isEmpty() || !hasSize(bitmapContext_, size))
        refill(bitmapContext_, size, kNothingCut);
    emptyColorPlane(size);
    if (mask.isEmpty()) {
        (void)snapshotter_.takeFilled(size.width, size.height, kNothingCut.alpha);
        return;
    }
    foundation::InlineWorkers here;
    kernels::resample(mask.view(), bitmapContext_.view(), here, kernels::Filter::triangle);
}

void MaskPainter::emptyColorPlane(const PlaneSize& size) {
    if (isColorEmpty_ && hasSize(colorContext_, size))
        return;
    refill(colorContext_, size, kTransparent);
    isColorEmpty_ = true;
}

/// The leading stamps of the buffer that are painted alike, or one end-of-stroke mark, or nothing.
std::vector<MaskPainter::Queued> MaskPainter::takeBatch() {
    const std::scoped_lock lock(bufferMutex_);
    if (eventBuffer_.empty())
        return {};
    const auto begin = eventBuffer_.begin();
    auto end = begin + 1;
    if (!begin->isEndOfStroke()) {
        const auto differs = [&](const Queued& other) {
            return other.isEndOfStroke() || other.settings != begin->settings;
        };
        end = std::find_if(end, eventBuffer_.end(), differs);
    }
    std::vector<Queued> batch(begin, end);
    eventBuffer_.erase(begin, end);
    return batch;
}

void MaskPainter::paintBatch(const std::vector<Queued>& batch, IntRect& maskChanged) {
    std::vector<Rect> stamps;
    stamps.reserve(batch.size());
    for (const Queued& queued : batch)
        stamps.push_back(inPlanePixels(queued.stamp));

    const PaintSettings& settings = batch.front().settings;
    const kernels::BrushStamp soft = brushMask(settings.hardness);
    const kernels::Brush brush{settings.fill, settings.hardness < kHardEdge ? &soft : nullptr};
    if (settings.colorMode) {
        isColorEmpty_ = false;
        (void)kernels::paintStamps(colorContext_.view(), stamps, brush);
        return;
    }
    // Where painting is broken off nobody knows what has changed.
    const IntRect before = std::exchange(changedSinceState_, bitmapContext_.view().bounds());
    const IntRect changed = kernels::paintStamps(bitmapContext_.view(), stamps, brush);
    changedSinceState_ = united(before, changed);
    maskChanged = united(maskChanged, changed);
}

Rect MaskPainter::inPlanePixels(const Rect& stamp) const {
    const double scale = maskScale_;
    Rect scaled{stamp.x * scale, stamp.y * scale, stamp.width * scale, stamp.height * scale};
    if (scaled.width < 1)
        scaled.width = scaled.height = 1;
    return scaled;
}

}  // namespace trimora::cutengine
