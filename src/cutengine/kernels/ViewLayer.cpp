#include "cutengine/kernels/ViewLayer.h"

#include <algorithm>
#include <cstring>

namespace trimora::cutengine::kernels {
namespace {

std::size_t pixelsIn(int blocks) {
    return static_cast<std::size_t>(blocks) * kViewBlockWidth;
}

/// The larger pitch counts: where a picture is not scaled alike both ways, neither is blurred.
int suitableLevel(const ViewLayerSource& source, int width, int height, int levels) {
    return levelFor(std::max(source.across.length / width, source.down.length / height), levels);
}

ViewPlane placedPlane(const ViewLayerSource& source) {
    const foundation::BitmapView whole = source.picture->level(0);
    const int index = std::max(suitableLevel(source, whole.width, whole.height, source.picture->levelCount()),
                               source.picture->finestLevel());
    const foundation::BitmapView level = source.picture->level(index);
    return {level, placed(source.across, whole.width, index, level.width),
            placed(source.down, whole.height, index, level.height)};
}

ViewMask placedMask(const ViewLayerSource& source) {
    const MaskSnapshot& mask = *source.mask;
    const int index =
        suitableLevel(source, mask.width(), mask.height(), static_cast<int>(mask.levels().size()));
    const MaskSnapshot::Level& level = mask.levels()[static_cast<std::size_t>(index)];
    return {level, placed(source.across, mask.width(), index, level.width),
            placed(source.down, mask.height(), index, level.height)};
}

Cover coverOfShares(const float* shares, int count) {
    const auto all = [&](float value) {
        return std::all_of(shares, shares + count, [value](float share) { return share == value; });
    };
    if (all(1))
        return Cover::whole;
    return all(0) ? Cover::none : Cover::mixed;
}

}  // namespace

ViewLayer::ViewLayer(const ViewLayerSource& source)
    : source_(source), drawable_(source.across.isDrawable() && source.down.isDrawable()) {
    if (!drawable_)
        return;
    if (source.mask != nullptr)
        mask_.emplace(placedMask(source));
    if (source.picture != nullptr) {
        plane_.emplace(placedPlane(source));
        opaque_ = source.picture->level(0).alphaMode == foundation::AlphaMode::opaque;
    } else {
        opaque_ = source.colour.alpha == 255;
        alignas(64) std::array<foundation::Pixel, kViewBlockWidth> block;
        block.fill(source.colour);
        widenSamples(&block.front().blue, block.size(), colourBlock_.data());
    }
}

void ViewLayer::moveToColumns(int x, int width) {
    rowCoverage_ = 0;
    covers_ = {};
    if (!drawable_)
        return;
    for (int i = 0; i < width; ++i)
        columnCoverage_[static_cast<std::size_t>(i)] = source_.across.coverageOf(x + i);
    columnCovers_ = {};
    for (int block = 0; block < width / kViewBlockWidth; ++block)
        columnCovers_.set(block, block + 1,
                          coverOfShares(columnCoverage_.data() + block * kViewBlockWidth, kViewBlockWidth));
    if (plane_)
        plane_->moveToColumns(x, width);
    if (mask_)
        mask_->moveToColumns(x, width);
}

void ViewLayer::moveToRow(int y) {
    if (!drawable_)
        return;
    const float before = rowCoverage_;
    rowCoverage_ = source_.down.coverageOf(y);
    bool coversChange = rowCoverage_ != before;
    if (rowCoverage_ != 0) {
        if (plane_)
            plane_->moveToRow(y);
        if (mask_)
            coversChange = mask_->moveToRow(y) || coversChange;
    }
    if (coversChange)
        findCovers();
}

void ViewLayer::findCovers() {
    covers_ = {};
    if (rowCoverage_ == 0)
        return;
    covers_ = columnCovers_ & BlockCovers::allOf(rowCoverage_ == 1 ? Cover::whole : Cover::mixed);
    if (mask_)
        covers_ = covers_ & mask_->covers();
}

void ViewLayer::sample(int begin, int end, Sample* to) {
    if (plane_) {
        plane_->sample(begin * kViewBlockWidth, end * kViewBlockWidth, to);
        return;
    }
    for (int block = begin; block < end; ++block)
        to = std::copy(colourBlock_.begin(), colourBlock_.end(), to);
}

void ViewLayer::draw(int begin, int end, std::uint8_t* to) {
    if (plane_) {
        plane_->draw(begin * kViewBlockWidth, end * kViewBlockWidth, to);
        return;
    }
    for (std::size_t i = 0; i < pixelsIn(end - begin); ++i)
        std::memcpy(to + i * sizeof(source_.colour), &source_.colour, sizeof(source_.colour));
}

void ViewLayer::drawOver(int begin, int end, Sample* base) {
    sample(begin, end, samples_.data());
    findShares(begin, end, shares_.data());
    if (opaque_)
        coverSamples(base, samples_.data(), shares_.data(), pixelsIn(end - begin));
    else
        blendSamples(base, samples_.data(), shares_.data(), pixelsIn(end - begin));
}

void ViewLayer::findShares(int begin, int end, Share* shares) {
    if (mask_) {
        mask_->findShares(begin, end, columnCoverage_.data(), rowCoverage_, shares);
        return;
    }
    for (int i = begin * kViewBlockWidth; i < end * kViewBlockWidth; ++i, shares += kSharesPerPixel) {
        const float shown = columnCoverage_[static_cast<std::size_t>(i)] * rowCoverage_;
        std::fill_n(shares, kSharesPerPixel, static_cast<Share>(shown * kFullShare + 0.5F));
    }
}

}  // namespace trimora::cutengine::kernels
