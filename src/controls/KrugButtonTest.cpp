#include "controls/KrugButton.h"

#include <gtest/gtest.h>

#include <QContextMenuEvent>

#include "controls/ControlNotifications.h"
#include "controls/ControlsForTests.h"
#include "controls/Motion.h"

namespace trimora::controls {
namespace {

constexpr QPoint kMiddle{20, 20};
constexpr QPoint kCorner{2, 2};  // inside the square, outside the circle

class KrugButtonTest : public ::testing::Test {
 protected:
    KrugButtonTest() {
        button.setImage("hand_noActive_new");
        button.setAlternateImage("hand_active_new");
        button.onShowMenu = [this](KrugButton&) { ++menus; };
        QObject::connect(&button, &QAbstractButton::clicked, [this] { ++clicks; });
        window.hold(button, button.sizeHint());
    }

    VirtualWorld world;
    NotificationCount leavings{world.notifications, notifications::kNeedsCursorUpdate};
    TestWindow window;
    KrugButton button{world.context()};
    int menus = 0;
    int clicks = 0;
};

TEST_F(KrugButtonTest, AClickInTheCircleFires) {
    window.click(button, kMiddle);
    EXPECT_EQ(clicks, 1);
}

TEST_F(KrugButtonTest, AClickInACornerDoesNothingAndLeavesItEnabled) {
    window.click(button, kCorner);
    EXPECT_EQ(clicks, 0);
    EXPECT_FALSE(button.isDown());
    EXPECT_TRUE(button.isEnabled());
    button.setEnabled(false);
    window.click(button, kCorner);
    EXPECT_FALSE(button.isEnabled());
}

TEST_F(KrugButtonTest, APressInACornerReachesNobodyUnderIt) {
    class Under final : public QWidget {
     public:
        using QWidget::QWidget;
        int presses = 0;

     protected:
        void mousePressEvent(QMouseEvent* /*event*/) override { ++presses; }
        void mouseReleaseEvent(QMouseEvent* /*event*/) override { ++presses; }
    };
    Under under(&window);
    under.setGeometry(0, 0, 300, 300);
    under.show();
    button.setParent(&under);
    button.show();
    button.move(TestWindow::kPlace);
    window.click(button, kCorner);
    EXPECT_EQ(under.presses, 0);
    button.setParent(&window);
}

TEST_F(KrugButtonTest, AReleaseOutsideTheCircleDoesNotFire) {
    window.press(button, kMiddle);
    EXPECT_TRUE(button.isDown());
    window.moveTo(button, kCorner);
    EXPECT_FALSE(button.isDown());
    window.release(button, kCorner);
    EXPECT_EQ(clicks, 0);
}

TEST_F(KrugButtonTest, ShowsItsAlternateImageWhileHeldDown) {
    const QImage rest = button.grab().toImage();
    window.press(button, kMiddle);
    EXPECT_NE(button.grab().toImage(), rest);
    window.release(button, kMiddle);
    EXPECT_EQ(button.grab().toImage(), rest);
    EXPECT_EQ(button.image(), "hand_noActive_new");
    EXPECT_EQ(button.alternateImage(), "hand_active_new");
}

TEST_F(KrugButtonTest, RestingOnItForOneAndAHalfSecondsOpensTheMenu) {
    window.moveTo(button, kMiddle);
    world.advance(1.49);
    EXPECT_EQ(menus, 0);
    world.advance(0.02);
    EXPECT_EQ(menus, 1);
    world.advance(10);
    EXPECT_EQ(menus, 1);
}

TEST_F(KrugButtonTest, MovingInsideTheCircleRestartsTheWait) {
    window.moveTo(button, kMiddle);
    world.advance(1.4);
    window.moveTo(button, kMiddle + QPoint(1, 0));
    world.advance(1.4);
    EXPECT_EQ(menus, 0);
    world.advance(0.2);
    EXPECT_EQ(menus, 1);
}

TEST_F(KrugButtonTest, LeavingCallsTheMenuOff) {
    window.moveTo(button, kMiddle);
    world.advance(1);
    window.moveOut();
    world.advance(5);
    EXPECT_EQ(menus, 0);
}

TEST_F(KrugButtonTest, MovingIntoACornerCountsAsLeaving) {
    window.moveTo(button, kMiddle);
    const int before = *leavings;
    window.moveTo(button, kCorner);
    EXPECT_FALSE(button.mouseIn());
    EXPECT_EQ(*leavings, before + 1);
    world.advance(5);
    EXPECT_EQ(menus, 0);
}

TEST_F(KrugButtonTest, AMenuThatOpensUnderAPressTakesTheClickAway) {
    window.moveTo(button, kMiddle);
    window.press(button, kMiddle);
    world.advance(1.6);
    EXPECT_EQ(menus, 1);
    window.release(button, kMiddle);
    EXPECT_EQ(clicks, 0);
}

TEST_F(KrugButtonTest, TheRightButtonOpensTheMenuInTheCircleOnly) {
    window.press(button, kCorner, Qt::RightButton);
    window.release(button, kCorner, Qt::RightButton);
    EXPECT_EQ(menus, 0);
    window.press(button, kMiddle, Qt::RightButton);
    EXPECT_EQ(menus, 1);
    window.release(button, kMiddle, Qt::RightButton);
    EXPECT_EQ(clicks, 0);
}

TEST_F(KrugButtonTest, TheMenuKeyOpensTheMenu) {
    QContextMenuEvent event(QContextMenuEvent::Keyboard, kMiddle, button.mapToGlobal(kMiddle));
    QCoreApplication::sendEvent(&button, &event);
    EXPECT_EQ(menus, 1);
}

TEST_F(KrugButtonTest, LeavingAsksForTheBrushCursor) {
    window.moveTo(button, kMiddle);
    EXPECT_TRUE(button.mouseIn());
    EXPECT_EQ(button.cursor().shape(), Qt::ArrowCursor);
    const int before = *leavings;
    window.moveOut();
    EXPECT_EQ(*leavings, before + 1);
    EXPECT_FALSE(button.mouseIn());
}

TEST_F(KrugButtonTest, GrowsUnderThePointerWithASpringAndStaysGrown) {
    EXPECT_EQ(button.displayedScale(), 1);
    window.moveTo(button, kMiddle);
    const double whole = 0.15 * 1.5;
    double largest = 1;
    for (int i = 0; i < 20; ++i) {
        world.advance(whole / 20);
        largest = std::max(largest, button.displayedScale());
    }
    EXPECT_GT(largest, 1.15);
    world.advance(1e-9);
    EXPECT_DOUBLE_EQ(button.displayedScale(), motion::kHoverScale);
    world.advance(1);
    EXPECT_DOUBLE_EQ(button.displayedScale(), motion::kHoverScale);
}

TEST_F(KrugButtonTest, ShrinksFromTheScaleThatIsShown) {
    window.moveTo(button, kMiddle);
    world.advance(0.05);
    const double shown = button.displayedScale();
    ASSERT_GT(shown, 1);
    ASSERT_LT(shown, motion::kHoverScale);
    window.moveOut();
    EXPECT_DOUBLE_EQ(button.displayedScale(), shown);
    world.advance((shown - 1) / 2);
    EXPECT_LT(button.displayedScale(), shown);
    EXPECT_GT(button.displayedScale(), 1);
    world.advance((shown - 1) / 2 + 1e-9);
    EXPECT_DOUBLE_EQ(button.displayedScale(), 1);
}

TEST_F(KrugButtonTest, AsksForFramesOnlyWhileItMoves) {
    window.moveTo(button, kMiddle);
    world.advance(2);  // grown, and the menu was opened
    EXPECT_EQ(world.time.scheduled(), 0);
    window.moveOut();
    world.advance(0.01);
    EXPECT_EQ(world.time.scheduled(), 1);
    world.advance(1);
    EXPECT_EQ(world.time.scheduled(), 0);
}

TEST_F(KrugButtonTest, ADisabledOneNeitherGrowsNorClicks) {
    window.moveTo(button, kMiddle);
    button.setEnabled(false);
    world.advance(1);
    EXPECT_FALSE(button.mouseIn());
    EXPECT_DOUBLE_EQ(button.displayedScale(), 1);
    window.click(button, kMiddle);
    EXPECT_EQ(clicks, 0);
    window.moveOut();
    window.moveTo(button, kMiddle);
    EXPECT_FALSE(button.mouseIn());
}

TEST_F(KrugButtonTest, HidingItUnderThePointerCountsAsLeaving) {
    window.moveTo(button, kMiddle);
    button.hide();
    EXPECT_FALSE(button.mouseIn());
    world.advance(5);
    EXPECT_EQ(menus, 0);
}

TEST_F(KrugButtonTest, TheKeyboardReachesAndClicksIt) {
    QTest::keyClick(&window, Qt::Key_Tab);
    ASSERT_TRUE(button.hasFocus());
    QTest::keyClick(&button, Qt::Key_Space);
    QTest::keyClick(&button, Qt::Key_Return);
    QTest::keyClick(&button, Qt::Key_Enter);
    EXPECT_EQ(clicks, 3);
}

TEST_F(KrugButtonTest, TheFocusIsSeenAfterTabAndAClickTakesNone) {
    window.click(button, kMiddle);
    EXPECT_FALSE(button.hasFocus());
    const QImage rest = button.grab().toImage();
    QTest::keyClick(&window, Qt::Key_Tab);
    EXPECT_NE(button.grab().toImage(), rest);
}

}  // namespace
}  // namespace trimora::controls
