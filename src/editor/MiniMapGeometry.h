#pragma once

#include "foundation/Geometry.h"

namespace trimora::editor {

/// How large the picture is in the mini-map, in points. Kept as 32-bit floats, as the ratios are that the
/// cut view reports.
struct MiniMapFit {
    float sizeWidthMiniMap = 0;
    float sizeHeightMiniMap = 0;
    friend bool operator==(const MiniMapFit&, const MiniMapFit&) = default;

    /// A landscape or square picture takes the frame's width, a portrait one its height; the other side
    /// follows. Nothing for an empty picture.
    [[nodiscard]] static MiniMapFit of(foundation::Size picture, foundation::Size frame);

    /// The picture in the middle of the frame. Points of the frame, y-up.
    [[nodiscard]] foundation::Rect picture(foundation::Size frame) const;

    /// The part of the picture that the cut view shows. Points of the frame, y-up.
    ///
    /// sootnX, sootnY: twice the picture's offset over its displayed size; 1 puts the border at the left or
    /// bottom edge of the picture, 0 at its centre. sizeW, sizeH: the view's size over the displayed size;
    /// 1 is the whole picture, and more than that reaches beyond it.
    [[nodiscard]] foundation::Rect border(foundation::Size frame, float sootnX, float sootnY, float sizeW,
                                          float sizeH) const;

    /// A place in the frame as a share of the picture, from its bottom left; kept within 0..1. The middle
    /// for an empty picture.
    [[nodiscard]] foundation::Point share(foundation::Size frame, foundation::Point place) const;
};

}  // namespace trimora::editor
