#pragma once

#include "foundation/Geometry.h"

namespace trimora::editor {

/// Where everything in the drop area lies. View points, y-up, origin at the bottom left.
///
/// Nothing depends on anything but the view's size and the three measured sizes below, so the whole
/// picture of the area can be worked out without drawing it.
struct DragViewLayout {
    /// What the area is to hold.
    struct Contents {
        double titleHeight = 0;        ///< of the title as laid out in its font
        double descriptionHeight = 0;  ///< and of the description
        foundation::Size image;        ///< the picture's own size, empty for none
    };

    /// Font size of title and description, in points, for a view of this size: both shrink with a small
    /// view and stop growing with a large one.
    [[nodiscard]] static double titleFont(foundation::Size view);
    [[nodiscard]] static double descriptionFont(foundation::Size view);

    [[nodiscard]] static DragViewLayout of(foundation::Size view, const Contents& contents);

    foundation::Rect frame;         ///< the dashed frame's line
    foundation::Rect image;         ///< the picture: in proportion, never above its own size
    foundation::Point gaugeCentre;  ///< of the half-disc that shows progress instead of the picture
    double gaugeRadius = 0;
    foundation::Rect title;  ///< texts begin at the top of their rectangles
    foundation::Rect description;
    foundation::Rect info;
};

}  // namespace trimora::editor
