#pragma once

#include <gtest/gtest.h>

#include <array>
#include <string>
#include <vector>

#include "cutengine/RKImageCutView.h"
#include "foundation/ManualQueues.h"
#include "foundation/VirtualTime.h"
#include "testing/CapturedLog.h"
#include "testing/TemporaryFolder.h"

namespace trimora::cutengine {

/// A window that only takes notes.
class RecordingHost final : public CutViewHost {
 public:
    void openPicture(RKImageCutView& sender) override { openedFor.push_back(&sender); }
    void setCursor(const Cursor& cursor) override { cursors.push_back(cursor); }
    void setNeedsDisplay(const foundation::Rect& area) override { displayed.push_back(area); }
    [[nodiscard]] double scaleFactor() const override { return scale; }
    void historyCannotBeKept(const std::string& reason) override { troubles.push_back(reason); }
    void memoryIsMissing() override { ++missingMemory; }

    std::vector<RKImageCutView*> openedFor;
    std::vector<Cursor> cursors;
    std::vector<foundation::Rect> displayed;
    std::vector<std::string> troubles;
    int missingMemory = 0;
    double scale = 1;
};

/// A controller that only takes notes.
class RecordingDelegate final : public RKImageCutViewDelegate {
 public:
    void cutViewWillStartDraw(RKImageCutView* /*view*/) override { calls.emplace_back("willStart"); }
    void cutViewDidEndDraw(RKImageCutView* /*view*/) override { calls.emplace_back("didEnd"); }
    void cutViewDidChangeHistoryState(RKImageCutView* /*view*/) override { ++historyChanges; }
    void cutView_didChangeBrushDiameter(RKImageCutView* /*view*/, float diameter) override {
        diameters.push_back(diameter);
    }
    void RectBorderForMiniMap(RKImageCutView* /*view*/, float SootnX, float SootnY, float SizeW,
                              float SizeH) override {
        miniMaps.push_back({SootnX, SootnY, SizeW, SizeH});
    }

    std::vector<std::string> calls;
    int historyChanges = 0;
    std::vector<float> diameters;
    std::vector<std::array<float, 4>> miniMaps;
};

inline constexpr foundation::Point kMiddle{200, 150};  ///< of the view of CutViewTest

/// A cut view of 400 x 300 view points with its queues pumped by hand and its history in a folder of
/// the test's own.
class CutViewTest : public ::testing::Test {
 protected:
    CutViewTest() {
        view.setDelegate(&delegate);
        view.setViewSize({400, 300});
    }

    /// A grey, opaque picture of this size.
    static PicturePtr greyPicture(int width, int height) {
        return Picture::create(foundation::Bitmap::createFilled(width, height, {128, 128, 128, 255},
                                                                foundation::AlphaMode::opaque)
                                   .value());
    }

    /// Loads a grey picture and lets everything queued finish.
    void load(int width, int height) {
        view.setImage(greyPicture(width, height));
        queues.settle();
    }

    /// A press, drags through the points and the release, as a person does them.
    void stroke(const std::vector<foundation::Point>& points, MouseButton button = MouseButton::left) {
        press(points.front(), button);
        for (std::size_t i = 1; i < points.size(); ++i)
            drag(points[i], points[i - 1], button);
        view.mouseUp({button, points.back()});
        queues.settle();
    }
    void press(foundation::Point at, MouseButton button = MouseButton::left) {
        if (button == MouseButton::right)
            view.rightMouseDown({button, at});
        else
            view.mouseDown({button, at});
    }
    void drag(foundation::Point to, foundation::Point from, MouseButton button = MouseButton::left) {
        view.mouseDragged({button, to, to.x - from.x, from.y - to.y});
    }

    /// The mask's alpha under a place in the view, 255 where nothing is cut.
    int maskAt(foundation::Point inView) {
        const auto inverse = view.imageLayer()->toView(view.transform()).inverted();
        const foundation::Point p = inverse->apply(inView);
        const foundation::Bitmap plane = view.copyMaskPlane();
        const int x = static_cast<int>(p.x * static_cast<double>(view.maskScale()));
        const int y = plane.height() - 1 - static_cast<int>(p.y * static_cast<double>(view.maskScale()));
        return plane.pixel(x, y).alpha;
    }

    testing::TemporaryFolder home;
    foundation::ManualQueueFactory queues;
    foundation::VirtualTime time;
    foundation::NotificationCenter notifications;
    RecordingHost host;
    RecordingDelegate delegate;
    RKImageCutView view{{queues, time, notifications, home.path() / "history"}, host};
};

}  // namespace trimora::cutengine
