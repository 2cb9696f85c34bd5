#pragma once

#include "foundation/Geometry.h"

/// The arithmetic of placing a picture in the view. A placement T draws the picture scaled by (a, b, c,
/// d) about its own centre, with that centre at the view point (tx, ty); y-up.
namespace trimora::cutengine::placement {

inline constexpr double kLargestZoom = 20;
/// View points of empty view that may show between the picture and an edge of the view.
inline constexpr double kPanMargin = 80;

/// The length of T's second column: the zoom, for T without shear.
[[nodiscard]] double zoomLevel(const foundation::AffineTransform& t);

/// T with its zoom multiplied by `factor` but never beyond kLargestZoom; the translation stays.
[[nodiscard]] foundation::AffineTransform zoomed(const foundation::AffineTransform& t, float factor);

/// The zoom factor of one scroll step: 1 for 0, within 0.7..1.3.
[[nodiscard]] float scrollFactor(double deltaY);

/// The size that the picture has on screen.
[[nodiscard]] foundation::Size displayedSize(const foundation::AffineTransform& t, foundation::Size picture);

/// The whole picture as large as the view takes it, at most kLargestZoom, centred.
[[nodiscard]] foundation::AffineTransform fitted(foundation::Size picture, foundation::Size view);

/// T moved, if need be, so that a picture smaller than the view less its margins stays kPanMargin from
/// every edge, and a larger one leaves no gap wider than that.
[[nodiscard]] foundation::AffineTransform limited(const foundation::AffineTransform& t,
                                                  foundation::Size picture, foundation::Size view);

/// T moved so that what was drawn at `anchor` (view points) under `before` is there again under T.
[[nodiscard]] foundation::AffineTransform anchored(const foundation::AffineTransform& t,
                                                   const foundation::AffineTransform& before,
                                                   foundation::Point anchor);

}  // namespace trimora::cutengine::placement
