#include "controls/CustomViewWithButton.h"

#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAccessible>
#include <QMouseEvent>
#include <QPainter>

#include "controls/ButtonSaveAppearance.h"
#include "controls/ColorableView.h"
#include "controls/ControlNotifications.h"
#include "controls/ControlsForTests.h"
#include "controls/SelectableView.h"
#include "controls/VerticallyCenteredTextFieldCell.h"
#include "testing/CapturedLog.h"

namespace trimora::controls {
namespace {

class CustomViewWithButtonTest : public ::testing::Test {
 protected:
    CustomViewWithButtonTest() {
        panel.setParent(&window);
        panel.setButton(new ButtonSaveAppearance(world.context()));
        panel.move(TestWindow::kPlace);
        window.show();
        QCoreApplication::processEvents();
        window.moveOut();
    }

    VirtualWorld world;
    TestWindow window;
    CustomViewWithButton panel{world.context()};
};

TEST_F(CustomViewWithButtonTest, IsHiddenUntilTheFirstPicture) {
    EXPECT_FALSE(panel.isVisible());
    world.notifications.post(notifications::kAddViewWithButton);
    EXPECT_TRUE(panel.isVisible());
}

TEST_F(CustomViewWithButtonTest, ADragMovesItByWhatThePointerMoves) {
    panel.unHideView();
    const QPointF centre = panel.viewCenter();
    window.press(panel, {3, 3});
    window.moveTo(panel, {13, 23});
    EXPECT_EQ(panel.pos(), TestWindow::kPlace + QPoint(10, 20));
    window.moveTo(panel, {-2, 8});
    EXPECT_EQ(panel.pos(), TestWindow::kPlace + QPoint(5, 25));
    EXPECT_EQ(panel.viewCenter(), centre + QPointF(5, 25));
    window.release(panel, {3, 3});
    window.moveTo(panel, {8, 8});
    EXPECT_EQ(panel.pos(), TestWindow::kPlace + QPoint(5, 25));
}

TEST_F(CustomViewWithButtonTest, AsksForTheBrushCursorWhenThePointerLeaves) {
    panel.unHideView();
    const NotificationCount leavings(world.notifications, notifications::kNeedsCursorUpdate);
    window.moveTo(panel, {3, 3});
    EXPECT_TRUE(panel.mouseIn());
    EXPECT_EQ(*leavings, 0);
    window.moveOut();
    EXPECT_EQ(*leavings, 1);
    EXPECT_FALSE(panel.mouseIn());
}

TEST_F(CustomViewWithButtonTest, TakesAPressThatBringsItsWindowToTheFront) {
    panel.unHideView();
    TestWindow other;
    other.show();
    other.activateWindow();
    QCoreApplication::processEvents();
    ASSERT_FALSE(window.isActiveWindow());
    const testing::CapturedLog log;
    QMouseEvent press(QEvent::MouseButtonPress, QPointF(3, 3), panel.mapToGlobal(QPointF(3, 3)),
                      Qt::LeftButton, Qt::LeftButton, {});
    QCoreApplication::sendEvent(&panel, &press);
    EXPECT_TRUE(log.contains("Got first mouse event"));
}

TEST_F(CustomViewWithButtonTest, ItsButtonWorks) {
    panel.unHideView();
    QCoreApplication::processEvents();
    const NotificationCount saves(world.notifications, notifications::kSavePicture);
    window.click(*panel.button(), {10, 10});
    EXPECT_EQ(*saves, 1);
    EXPECT_EQ(panel.size(), panel.button()->size() + QSize(16, 16));
}

TEST_F(CustomViewWithButtonTest, ArrowKeysMoveIt) {
    panel.unHideView();
    panel.setFocus();
    QTest::keyClick(&panel, Qt::Key_Right);
    QTest::keyClick(&panel, Qt::Key_Down, Qt::ShiftModifier);
    EXPECT_EQ(panel.pos(), TestWindow::kPlace + QPoint(1, 10));
}

TEST(ColorableView, FillsItsBoundsWithItsColour) {
    ColorableView view;
    view.resize(20, 10);
    view.setBackgroundColor(QColor(10, 20, 30));
    const QImage image = view.grab().toImage();
    EXPECT_EQ(image.pixelColor(0, 0), QColor(10, 20, 30));
    EXPECT_EQ(image.pixelColor(19, 9), QColor(10, 20, 30));
}

TEST(SelectableView, APressTurnsTheSelectionOver) {
    VirtualWorld world;
    TestWindow window;
    SelectableView view(world.context());
    int told = 0;
    view.onSelect = [&](bool) { ++told; };
    window.hold(view, {40, 40});
    const QImage rest = view.grab().toImage();
    window.click(view, {20, 20});
    EXPECT_TRUE(view.isSelected());
    EXPECT_NE(view.grab().toImage(), rest);
    window.click(view, {20, 20});
    EXPECT_FALSE(view.isSelected());
    view.setFocus();
    QTest::keyClick(&view, Qt::Key_Space);
    EXPECT_TRUE(view.isSelected());
    EXPECT_EQ(told, 3);
}

TEST(SelectableView, IsABoxToTickToAScreenReader) {
    VirtualWorld world;
    SelectableView view(world.context());
    QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(&view);
    EXPECT_EQ(access->role(), QAccessible::CheckBox);
    EXPECT_FALSE(access->state().checked);
    view.setSelected(true);
    EXPECT_TRUE(access->state().checked);
}

TEST(SelectableView, PassesItsLookOnToItsLayerOverAWhiteTile) {
    VirtualWorld world;
    SelectableView view(world.context());
    view.resize(40, 40);
    const auto shownAt = [&](int x, int y) { return view.grab().toImage().pixelColor(x, y); };
    EXPECT_EQ(shownAt(20, 20), QColor(Qt::white));
    view.setColor(QColor(10, 20, 30));
    view.setBorderWidth(3);
    view.setBorderColor(QColor(90, 80, 70));
    EXPECT_EQ(shownAt(20, 20), QColor(10, 20, 30));
    EXPECT_EQ(shownAt(1, 20), QColor(90, 80, 70));
    view.setCornerRadius(15);
    EXPECT_NE(shownAt(1, 1), QColor(90, 80, 70));
    EXPECT_EQ(view.cornerRadius(), 15);
    EXPECT_EQ(view.borderWidth(), 3);
}

TEST(VerticallyCenteredTextFieldCell, PutsOneLineInTheMiddle) {
    VerticallyCenteredTextFieldCell cell;
    cell.font.setPixelSize(16);
    const QRectF rect = cell.titleRectForBounds({10, 20, 100, 60});
    EXPECT_EQ(rect.x(), 10);
    EXPECT_EQ(rect.width(), 100);
    EXPECT_DOUBLE_EQ(rect.center().y(), 50);
    EXPECT_LT(rect.height(), 30);
    EXPECT_EQ(cell.titleRectForBounds({0, 0, 50, 5}).height(), 5);
}

TEST(VerticallyCenteredTextFieldCell, DrawsThere) {
    VerticallyCenteredTextFieldCell cell;
    cell.title = "HHH";
    cell.font.setPixelSize(16);
    QImage image(60, 60, QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    QPainter painter(&image);
    cell.drawInteriorWithFrame_inView({0, 0, 60, 60}, painter);
    painter.end();
    int first = 60;
    int last = 0;
    for (int y = 0; y < 60; ++y) {
        for (int x = 0; x < 60; ++x) {
            if (image.pixelColor(x, y).alpha() > 128) {
                first = std::min(first, y);
                last = std::max(last, y);
            }
        }
    }
    EXPECT_NEAR((first + last) / 2.0, 30, 3);
}

}  // namespace
}  // namespace trimora::controls
