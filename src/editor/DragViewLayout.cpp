#include "editor/DragViewLayout.h"

#include <algorithm>

#include "controls/Metrics.h"

namespace trimora::editor {

using foundation::Size;

namespace {

constexpr double kLargestTextUnit = 25;
constexpr double kImageShare = 0.6;  ///< of the view's sides: the box that the picture is fitted into
constexpr double kImageMargin = 30;  ///< taken from that box
constexpr double kImageRise = 35;    ///< from the text to the picture
constexpr double kTitleFloor = 15;
constexpr double kInfoLeft = 47;
constexpr double kInfoTop = 40;

double textUnit(Size view) {
    return std::min({view.width / 25, view.height / 20, kLargestTextUnit});
}

Size fitted(Size image, Size box) {
    if (image.isEmpty() || box.isEmpty())
        return {};
    const double share = std::min({box.width / image.width, box.height / image.height, 1.0});
    return {image.width * share, image.height * share};
}

}  // namespace

double DragViewLayout::titleFont(Size view) {
    return textUnit(view) * 0.7;
}

double DragViewLayout::descriptionFont(Size view) {
    return textUnit(view) * 0.8;
}

DragViewLayout DragViewLayout::of(Size view, const Contents& contents) {
    const auto [w, h] = view;
    const double inset = controls::metrics::kDropFrameInset;
    const double t = contents.titleHeight + contents.descriptionHeight / 2;
    const Size shown =
        fitted(contents.image, {w * kImageShare - kImageMargin, h * kImageShare - kImageMargin});
    const double b = h * 0.5 - shown.height * 0.5;
    return {
        .frame = {inset, inset, w - 2 * inset, h - 2 * inset},
        .image = {w * 0.5 - shown.width * 0.5, b + t + kImageRise, shown.width, shown.height},
        .gaugeCentre = {w * 0.5, b + t},
        .gaugeRadius = shown.width * 0.5,
        .title = {0, kTitleFloor, w, b + t * 0.5},
        .description = {0, 0, w, b - t * 0.5},
        .info = {kInfoLeft, 0, w, h - kInfoTop},
    };
}

}  // namespace trimora::editor
