#pragma once

#include <cstddef>
#include <cstdint>

/// The view renderer's arithmetic on rows of samples, for the widest vectors that the processor has.
///
/// A sample is one component of one pixel in 128ths of a level, 0 to kFullSample: fine enough that
/// stretching and blending together stay within a twentieth of a level. Weights and shares are in
/// 32768ths, 0 to kFullShare, which stands for the whole; there are two equal ones for each pixel.
///
/// Samples stand in groups of kGroupPixels pixels: blue and red of all of them in turn, then green and
/// alpha. That is how the bytes of pixels fall apart by a shift and a mask, with nothing to be moved
/// between lanes. Counts are numbers of pixels and multiples of kGroupPixels; pixels begin at even addresses,
/// and nothing else is aligned. Every sample is computed by itself, so a row comes out the same however it is
/// divided.
namespace trimora::cutengine::kernels {

using Sample = std::int16_t;
using Share = std::int16_t;

inline constexpr std::size_t kGroupPixels = 16;
inline constexpr std::size_t kSamplesPerPixel = 4;
inline constexpr std::size_t kSharesPerPixel = 2;
inline constexpr int kSamplesPerLevel = 128;
inline constexpr Sample kFullSample = 255 * kSamplesPerLevel;
inline constexpr Share kFullShare = 32767;

/// What a mask and a border leave of pixels. A pixel's `quad` holds the four mask values that it lies
/// between, 0 to 255, in the bytes of a word: top left in the lowest, then top right, bottom left, bottom
/// right. `weights` are those of the right ones and `weight` that of the bottom ones, 0 to 1;
/// `coverages` and `coverage` are multiplied in.
struct MaskRow {
    const std::uint32_t* quads;
    const float* weights;
    float weight;
    const float* coverages;
    float coverage;
};
void maskShares(const MaskRow& row, std::size_t pixels, Share* shares);

/// to = left + (right - left) weight, from rows of pixels.
void stretchRun(const std::uint8_t* left, const std::uint8_t* right, const Share* weights, std::size_t pixels,
                Sample* to);

/// The same from pixels picked out of one row: left is that at `indices`, right the one after it. Indices
/// grow by 0 to 2 from each to the next. `row` has `width` pixels, at least kGroupPixels.
void stretchPicked(const std::uint8_t* row, std::size_t width, const std::uint32_t* indices,
                   const Share* weights, std::size_t pixels, Sample* to);

/// to = top + (bottom - top) weight.
void mixSamples(const Sample* top, const Sample* bottom, Share weight, std::size_t pixels, Sample* to);

/// mixSamples() and narrowSamples() in one.
void mixToBytes(const Sample* top, const Sample* bottom, Share weight, std::size_t pixels, std::uint8_t* to);

/// Pixels to samples.
void widenSamples(const std::uint8_t* from, std::size_t pixels, Sample* to);

/// Samples to pixels, rounded to the nearest level.
void narrowSamples(const Sample* from, std::size_t pixels, std::uint8_t* to);

/// base = base + (top - base) share: an opaque layer over what is there.
void coverSamples(Sample* base, const Sample* top, const Share* shares, std::size_t pixels);

/// base = base - base alpha(top) share + top share: a layer with alpha over what is there.
void blendSamples(Sample* base, const Sample* top, const Share* shares, std::size_t pixels);

}  // namespace trimora::cutengine::kernels
