#include "editor/CursorResetView.h"

#include <gtest/gtest.h>

#include "controls/ControlNotifications.h"
#include "controls/ControlsForTests.h"

namespace trimora::editor {
namespace {

class CursorResetViewTest : public ::testing::Test {
 protected:
    void SetUp() override { window_.hold(strip_, {40, 100}); }

    controls::VirtualWorld world_;
    controls::NotificationCount asked_{world_.notifications, controls::notifications::kNeedsCursorUpdate};
    controls::TestWindow window_;
    CursorResetView strip_{world_.notifications};
};

TEST_F(CursorResetViewTest, ThePointerBecomesTheArrowAndTheBrushComesBackAfterwards) {
    strip_.setCursor(Qt::CrossCursor);
    window_.moveTo(strip_, {20, 50});
    EXPECT_EQ(strip_.cursor().shape(), Qt::ArrowCursor);
    EXPECT_EQ(*asked_, 0);
    window_.moveOut();
    EXPECT_EQ(*asked_, 1);
}

TEST_F(CursorResetViewTest, ANewFrameIsFollowedAndCountsOnce) {
    strip_.setGeometry(120, 20, 60, 60);
    window_.moveTo(strip_, {30, 30});
    window_.moveOut();
    EXPECT_EQ(*asked_, 1);
    QTest::mouseMove(window_.windowHandle(), controls::TestWindow::kPlace + QPoint(5, 50));
    window_.moveOut();
    EXPECT_EQ(*asked_, 1) << "the old frame counts no more";
}

}  // namespace
}  // namespace trimora::editor
