#include "cutengine/kernels/ViewLayer.h"

#include <algorithm>
#include <cstring>

namespace trimora::cutengine::kernels {
namespace {

constexpr std::size_t kComponents = 4;

std::size_t samplesIn(int blocks) {
    return static_cast<std::size_t>(blocks) * kViewBlockWidth * kComponents;
}

/// The larger pitch counts: where a picture is not scaled alike both ways, neither is blurred.
int suitableLevel(const ViewLayerSource& source, int width, int height, int levels) {
    return levelFor(std::max(source.across.length / width, source.down.length / height), levels);
}

ViewPlane placedPlane(const ViewLayerSource& source) {
    const foundation::BitmapView whole = source.picture->level(0);
    const int index = suitableLevel(source, whole.width, whole.height, source.picture->levelCount());
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

/// How much of what is below a pixel of this alpha hides where it shows by `share`.
Share hiddenShare(Sample alpha, Share share) {
    const int opacity = (alpha * kFullShare + kFullSample / 2) / kFullSample;
    return static_cast<Share>((opacity * share + (1 << 14)) >> 15);
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
    }
}

void ViewLayer::moveToColumns(int x, int width) {
    blocks_ = width / kViewBlockWidth;
    rowCoverage_ = 0;
    covers_.fill(Cover::none);
    if (!drawable_)
        return;
    for (int i = 0; i < width; ++i)
        columnCoverage_[static_cast<std::size_t>(i)] = source_.across.coverageOf(x + i);
    for (int block = 0; block < blocks_; ++block)
        columnCovers_[static_cast<std::size_t>(block)] =
            coverOfShares(columnCoverage_.data() + block * kViewBlockWidth, kViewBlockWidth);
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
    for (int block = 0; coversChange && block < blocks_; ++block)
        covers_[static_cast<std::size_t>(block)] = findCover(block);
}

Cover ViewLayer::findCover(int block) const {
    const Cover border = columnCovers_[static_cast<std::size_t>(block)];
    if (rowCoverage_ == 0 || border == Cover::none)
        return Cover::none;
    const Cover masked = mask_ ? mask_->coverOf(block) : Cover::whole;
    if (masked == Cover::none)
        return Cover::none;
    return border == Cover::whole && rowCoverage_ == 1 ? masked : Cover::mixed;
}

void ViewLayer::sample(int begin, int end, Sample* to) {
    if (plane_) {
        plane_->sample(begin * kViewBlockWidth, end * kViewBlockWidth, to);
        return;
    }
    const std::array<std::uint8_t, kComponents> components{source_.colour.blue, source_.colour.green,
                                                           source_.colour.red, source_.colour.alpha};
    for (std::size_t i = 0; i < samplesIn(end - begin); ++i)
        to[i] = static_cast<Sample>(components[i % kComponents] * kSamplesPerLevel);
}

void ViewLayer::draw(int begin, int end, std::uint8_t* to) {
    if (plane_) {
        plane_->draw(begin * kViewBlockWidth, end * kViewBlockWidth, to);
        return;
    }
    for (int i = 0; i < (end - begin) * kViewBlockWidth; ++i)
        std::memcpy(to + static_cast<std::size_t>(i) * kComponents, &source_.colour, kComponents);
}

void ViewLayer::drawOver(int begin, int end, Sample* base) {
    const std::size_t count = samplesIn(end - begin);
    sample(begin, end, samples_.data());
    findShares(begin, end, shares_.data());
    if (opaque_) {
        coverSamples(base, samples_.data(), shares_.data(), count);
        return;
    }
    for (std::size_t i = 0; i < count; i += kComponents)
        std::fill_n(hidden_.begin() + static_cast<std::ptrdiff_t>(i), kComponents,
                    hiddenShare(samples_[i + kComponents - 1], shares_[i]));
    blendSamples(base, samples_.data(), shares_.data(), hidden_.data(), count);
}

void ViewLayer::findShares(int begin, int end, Share* shares) {
    if (mask_) {
        mask_->findShares(begin, end, columnCoverage_.data(), rowCoverage_, shares);
        return;
    }
    for (int i = begin * kViewBlockWidth; i < end * kViewBlockWidth; ++i, shares += kComponents) {
        const float shown = columnCoverage_[static_cast<std::size_t>(i)] * rowCoverage_;
        std::fill_n(shares, kComponents, static_cast<Share>(shown * kFullShare + 0.5F));
    }
}

}  // namespace trimora::cutengine::kernels
