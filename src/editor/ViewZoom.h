#pragma once

#include "editor/EditorOutlets.h"
#include "foundation/Geometry.h"

namespace trimora::cutengine {
class RKImageCutView;
}

namespace trimora::editor {

/// Zoom and position by command, and the mini-map's frame, which follows them. Without a picture nothing
/// happens. Main thread only; the outlets live longer.
class ViewZoom {
 public:
    explicit ViewZoom(const EditorOutlets& outlets) : outlets_(outlets) {}

    /// A quarter larger about the view's middle; out undoes in.
    void zoomIn();
    void zoomOut();
    void zoomToFit();
    /// One pixel of the picture to one of the screen; a picture that is smaller than the view at that size
    /// is fitted.
    void actualSize();

    /// Brings a place of the picture (shares 0..1 of it from its bottom left) to the view's middle, as far
    /// as the picture's limits let it. Does nothing where the whole picture is in view.
    void centreOn(foundation::Point share);

    /// Marks in the mini-map what is in view now. The cut view tells of most changes by itself, but not of
    /// a fit.
    void showVisiblePart();

 private:
    [[nodiscard]] cutengine::RKImageCutView& cutView() const;
    [[nodiscard]] foundation::Size displayedSize() const;
    void zoom(double deltaY);

    const EditorOutlets& outlets_;
};

}  // namespace trimora::editor
