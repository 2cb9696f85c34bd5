#pragma once

#include <cstddef>
#include <cstdint>

/// The view renderer's arithmetic on rows of samples, for the widest vectors that the processor has.
///
/// A sample is one component of one pixel in 128ths of a level, 0 to kFullSample: fine enough that
/// stretching and blending together stay within a twentieth of a level. Weights and shares are in
/// 32768ths, 0 to kFullShare, which stands for the whole. Counts are numbers of samples, four a pixel,
/// and multiples of kSampleGranule (pixels of a quarter of it); memory needs no alignment. Every sample is
/// computed by itself, so a row comes out the same however it is divided.
namespace trimora::cutengine::kernels {

using Sample = std::int16_t;
using Share = std::int16_t;

inline constexpr std::size_t kSampleGranule = 64;
inline constexpr int kSamplesPerLevel = 128;
inline constexpr Sample kFullSample = 255 * kSamplesPerLevel;
inline constexpr Share kFullShare = 32767;

/// What a mask and a border leave of pixels, as four equal shares for each. A pixel's `quad` holds the
/// four mask values that it lies between, 0 to 255, in the bytes of a word: top left in the lowest, then
/// top right, bottom left, bottom right. `weights` are those of the right ones and `weight` that of the
/// bottom ones, 0 to 1; `coverages` and `coverage` are multiplied in.
struct MaskRow {
    const std::uint32_t* quads;
    const float* weights;
    float weight;
    const float* coverages;
    float coverage;
};
void maskShares(const MaskRow& row, std::size_t pixels, Share* shares);

/// to = left + (right - left) weight, from bytes.
void stretchSamples(const std::uint8_t* left, const std::uint8_t* right, const Share* weights,
                    std::size_t count, Sample* to);

/// The same from pairs of pixels: eight bytes for every four samples, the left pixel and the right one.
void stretchPairs(const std::uint8_t* pairs, const Share* weights, std::size_t count, Sample* to);

/// to = top + (bottom - top) weight.
void mixSamples(const Sample* top, const Sample* bottom, Share weight, std::size_t count, Sample* to);

/// mixSamples() and narrowSamples() in one.
void mixToBytes(const Sample* top, const Sample* bottom, Share weight, std::size_t count, std::uint8_t* to);

/// Bytes to samples.
void widenSamples(const std::uint8_t* from, std::size_t count, Sample* to);

/// Samples to bytes, rounded to the nearest.
void narrowSamples(const Sample* from, std::size_t count, std::uint8_t* to);

/// base = base + (top - base) share: an opaque layer over what is there.
void coverSamples(Sample* base, const Sample* top, const Share* shares, std::size_t count);

/// base = base - base hidden + top share: a layer with alpha over what is there.
void blendSamples(Sample* base, const Sample* top, const Share* shares, const Share* hidden,
                  std::size_t count);

}  // namespace trimora::cutengine::kernels
