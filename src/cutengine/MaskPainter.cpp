#include "cutengine/MaskPainter.h"

#include <algorithm>
#include <new>
#include <utility>

#include "cutengine/kernels/Resample.h"
#include "cutengine/kernels/StrokePainter.h"

namespace trimora::cutengine {

using foundation::Bitmap;
using foundation::IntRect;
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

/// A plane of the same size needs no other memory.
void refill(Bitmap& plane, const PlaneSize& size, Pixel fill) {
    if (plane.width() == size.width && plane.height() == size.height) {
        plane.fill(fill);
        return;
    }
    plane = {};
    plane = filledPlane(size, fill);
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
    const bool rebuilt = needsContectUpdate_.exchange(false);
    try {
        if (rebuilt)
            rebuildPlanes();
    } catch (const std::bad_alloc&) {
        needsContectUpdate_ = true;
        throw;
    }
    if (bitmapContext_.isEmpty() || colorContext_.isEmpty())
        return std::nullopt;
    const bool isUnread = std::exchange(isBrokenOff_, true) && !rebuilt;
    if (isUnread)
        snapshotter_.reset();
    IntRect changed;
    paint(changed);
    const bool all = rebuilt || isUnread;
    std::optional<Shown> shown;
    if (all || !changed.isEmpty()) {
        shown = {snapshotter_.take(bitmapContext_.view(), changed),
                 all ? bitmapContext_.view().bounds() : changed};
    }
    isBrokenOff_ = false;
    return shown;
}

void MaskPainter::rebuildPlanes() {
    snapshotter_.reset();
    const PlaneSize size = PlaneSize::forPicture(pictureSize_);
    if (size.width == 0) {
        bitmapContext_ = {};
        colorContext_ = {};
        newContextImage_ = {};
        return;
    }
    maskScale_ = size.maskScale;
    refill(bitmapContext_, size, kNothingCut);
    refill(colorContext_, size, kTransparent);
    if (newContextImage_.isEmpty()) {
        (void)snapshotter_.takeFilled(size.width, size.height, kNothingCut.alpha);
        return;
    }
    foundation::InlineWorkers here;
    kernels::resample(newContextImage_.view(), bitmapContext_.view(), here, kernels::Filter::triangle);
    newContextImage_ = {};
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
    Bitmap& plane = settings.colorMode ? colorContext_ : bitmapContext_;
    const IntRect changed = kernels::paintStamps(plane.view(), stamps, brush);
    if (!settings.colorMode)
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
