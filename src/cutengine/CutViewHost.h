#pragma once

#include <string>

#include "cutengine/Cursor.h"
#include "foundation/Geometry.h"

namespace trimora::cutengine {

class RKImageCutView;

/// What the cut view asks of the window that shows it. All calls come on the main thread.
class CutViewHost {
 public:
    virtual ~CutViewHost() = default;

    /// The window's content controller is to run `openPicture:` with the view as argument.
    virtual void openPicture(RKImageCutView& sender) = 0;

    /// The pointer over the view is to look so from now on.
    virtual void setCursor(const Cursor& cursor) = 0;

    /// This part of the view (view points, y-up) shows something new.
    virtual void setNeedsDisplay(const foundation::Rect& area) = 0;

    /// Device pixels per view point of the screen that the view is on.
    [[nodiscard]] virtual double scaleFactor() const = 0;

    /// Undo cannot be kept (a full disk, say). Told once a picture; painting goes on.
    virtual void historyCannotBeKept(const std::string& reason) = 0;

    /// Something that was asked for and goes on by itself could not be done for want of memory.
    virtual void memoryIsMissing() = 0;
};

/// What the cut view tells its controller. All calls come on the main thread; `view` is the sender,
/// or null where a controller calls the message itself.
class RKImageCutViewDelegate {
 public:
    virtual ~RKImageCutViewDelegate() = default;

    /// A press that has a picture to work on begins, to paint or to pan.
    virtual void cutViewWillStartDraw(RKImageCutView* view) = 0;

    /// That gesture has ended.
    virtual void cutViewDidEndDraw(RKImageCutView* view) = 0;

    /// A state was recorded, or undo or redo brought one back.
    virtual void cutViewDidChangeHistoryState(RKImageCutView* view) = 0;

    /// `setBrushDiameter` ran; `diameter` is the value as requested, before it was clamped.
    virtual void cutView_didChangeBrushDiameter(RKImageCutView* view, float diameter) = 0;

    /// The position was corrected. SootnX, SootnY: twice the picture's centre in view points divided
    /// by its displayed size; SizeW, SizeH: the view's size divided by the displayed size.
    virtual void RectBorderForMiniMap(RKImageCutView* view, float SootnX, float SootnY, float SizeW,
                                      float SizeH) = 0;
};

}  // namespace trimora::cutengine
