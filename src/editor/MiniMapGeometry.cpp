#include "editor/MiniMapGeometry.h"

#include <algorithm>

namespace trimora::editor {

using foundation::Point;
using foundation::Rect;
using foundation::Size;

MiniMapFit MiniMapFit::of(Size picture, Size frame) {
    if (picture.isEmpty())
        return {};
    const auto r = static_cast<float>(picture.height / picture.width);
    const auto frameWidth = static_cast<float>(frame.width);
    const auto frameHeight = static_cast<float>(frame.height);
    if (r <= 1)
        return {frameWidth, frameWidth * r};
    return {frameHeight * (1 / r), frameHeight};
}

Rect MiniMapFit::picture(Size frame) const {
    const auto width = static_cast<double>(sizeWidthMiniMap);
    const auto height = static_cast<double>(sizeHeightMiniMap);
    return {(frame.width - width) / 2, (frame.height - height) / 2, width, height};
}

Rect MiniMapFit::border(Size frame, float sootnX, float sootnY, float sizeW, float sizeH) const {
    const auto mw = static_cast<double>(sizeWidthMiniMap);
    const auto mh = static_cast<double>(sizeHeightMiniMap);
    return {(frame.width - mw) * 0.5 + static_cast<double>(1 - sootnX) * (mw * 0.5),
            (frame.height * 0.5 - mh * 0.5) + static_cast<double>(1 - sootnY) * (mh * 0.5),
            static_cast<double>(sizeW * sizeWidthMiniMap), static_cast<double>(sizeH * sizeHeightMiniMap)};
}

Point MiniMapFit::share(Size frame, Point place) const {
    const Rect shown = picture(frame);
    if (shown.isEmpty())
        return {0.5, 0.5};
    return {std::clamp((place.x - shown.x) / shown.width, 0.0, 1.0),
            std::clamp((place.y - shown.y) / shown.height, 0.0, 1.0)};
}

}  // namespace trimora::editor
