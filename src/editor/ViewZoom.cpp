#include "editor/ViewZoom.h"

#include <algorithm>

#include "editor/CutViewWidget.h"
#include "editor/MiniMap.h"

namespace trimora::editor {

using cutengine::RKImageCutView;
using foundation::Point;
using foundation::Size;

namespace {

// The cut view zooms by 1 + delta / 50 for a scroll delta, at most by 0.3 either way.
constexpr double kDeltaPerFactor = 50;
constexpr double kLargestChange = 0.3;
constexpr double kZoomIn = 1.25;
// Far more steps than lead from one end of the zoom to the other.
constexpr int kMostSteps = 64;

double deltaFor(double factor) {
    return (factor - 1) * kDeltaPerFactor;
}

}  // namespace

RKImageCutView& ViewZoom::cutView() const {
    return outlets_.viCut->view();
}

Size ViewZoom::displayedSize() const {
    const Size picture = cutView().image()->size();
    const double zoom = cutView().transform().a;
    return {picture.width * zoom, picture.height * zoom};
}

void ViewZoom::zoom(double deltaY) {
    if (cutView().image() == nullptr)
        return;
    const Size view = cutView().viewSize();
    cutView().setImageFit(false);
    cutView().scaleImg({view.width / 2, view.height / 2}, deltaY);
    showVisiblePart();
}

void ViewZoom::zoomIn() {
    zoom(deltaFor(kZoomIn));
}

void ViewZoom::zoomOut() {
    zoom(deltaFor(1 / kZoomIn));
}

void ViewZoom::zoomToFit() {
    cutView().setImageFit(true);
    cutView().correctImagePositionWithFiting(true);
    showVisiblePart();
}

void ViewZoom::actualSize() {
    if (cutView().image() == nullptr)
        return;
    const double wanted = 1 / outlets_.viCut->scaleFactor();
    for (int step = 0; step < kMostSteps && cutView().transform().a != wanted; ++step) {
        const double before = cutView().transform().a;
        zoom(deltaFor(std::clamp(wanted / before, 1 - kLargestChange, 1 + kLargestChange)));
        // The limits of the zoom, and the fit, let it come no nearer.
        if (cutView().imageFit() || cutView().transform().a == before)
            break;
    }
}

void ViewZoom::centreOn(Point share) {
    if (cutView().image() == nullptr)
        return;
    const Size shown = displayedSize();
    const Size view = cutView().viewSize();
    if (cutView().imageFit() || (shown.width <= view.width && shown.height <= view.height))
        return;
    const Point centre{view.width / 2 - (share.x - 0.5) * shown.width,
                       view.height / 2 - (share.y - 0.5) * shown.height};
    outlets_.viCut->take(
        PictureMoved{{centre.x - cutView().transform().tx, centre.y - cutView().transform().ty}});
}

void ViewZoom::showVisiblePart() {
    if (cutView().image() == nullptr)
        return;
    const Size shown = displayedSize();
    const Size view = cutView().viewSize();
    if (shown.isEmpty())
        return;
    const auto transform = cutView().transform();
    outlets_.miniMap->showBorder(static_cast<float>(2 * transform.tx / shown.width),
                                 static_cast<float>(2 * transform.ty / shown.height),
                                 static_cast<float>(view.width / shown.width),
                                 static_cast<float>(view.height / shown.height));
}

}  // namespace trimora::editor
