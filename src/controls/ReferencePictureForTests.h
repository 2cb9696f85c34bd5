#pragma once

#include <QImage>
#include <QRect>
#include <vector>

namespace trimora::controls {

/// Where a picture of controls differs from the one that is kept of them: the blocks, 4 points on each
/// side, in pixels. A picture of another size differs as a whole.
///
/// What another version of the font's renderer does passes: each block may lie a pixel away, and its
/// pixels may be off by an eighth of their range on average. A lost focus ring or a moved image does not.
[[nodiscard]] std::vector<QRect> differences(const QImage& shown, const QImage& kept, double scale);

}  // namespace trimora::controls
