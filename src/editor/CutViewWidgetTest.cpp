#include "editor/CutViewWidget.h"

#include <gtest/gtest.h>

#include <QFocusEvent>
#include <QNativeGestureEvent>
#include <QPointingDevice>
#include <QScreen>
#include <QTest>
#include <QWheelEvent>
#include <QWindow>
#include <cmath>
#include <utility>

#include "editor/CutViewFixtureForTests.h"
#include "editor/CutViewInput.h"
#include "util/BitmapImage.h"

namespace trimora::editor {
namespace {

using cutengine::Cursor;
using cutengine::DragMode;

class CutViewWidgetTest : public CutViewFixture {
 protected:
    QWindow* window() { return widget_.windowHandle(); }

    void press(QPoint place, Qt::MouseButton button = Qt::LeftButton,
               Qt::KeyboardModifiers held = Qt::NoModifier) {
        QTest::mousePress(&widget_, button, held, place);
    }
    void move(QPoint place) { QTest::mouseMove(&widget_, place); }
    void release(QPoint place, Qt::MouseButton button = Qt::LeftButton) {
        QTest::mouseRelease(&widget_, button, Qt::NoModifier, place);
    }

    void wheel(QPoint place, QPoint angle, Qt::KeyboardModifiers held = Qt::NoModifier) {
        QWheelEvent event(place, widget_.mapToGlobal(place), {}, angle, Qt::NoButton, held, Qt::NoScrollPhase,
                          false);
        QCoreApplication::sendEvent(&widget_, &event);
    }
};

TEST_F(CutViewWidgetTest, AStrokeCutsWhereThePointerIs) {
    openPicture();
    press({100, 50});
    release({100, 50});
    queues_.settle();
    EXPECT_EQ(maskAt(100, 50), 0);
    EXPECT_EQ(maskAt(100, 249), 255);
}

TEST_F(CutViewWidgetTest, AStrokeFollowsEveryMovement) {
    openPicture();
    press({100, 50});
    move({150, 200});
    move({300, 50});
    release({300, 50});
    queues_.settle();
    for (const QPoint& on : {QPoint(125, 125), QPoint(150, 200), QPoint(225, 125), QPoint(300, 50)})
        EXPECT_EQ(maskAt(on.x(), on.y()), 0) << on.x() << ", " << on.y();
    EXPECT_EQ(maskAt(200, 50), 255);
}

TEST_F(CutViewWidgetTest, APanFollowsThePointer) {
    openPicture();
    widget_.setToolDragMode(DragMode::pan);
    const auto before = view().transform();
    press({100, 100});
    EXPECT_EQ(widget_.cursor().shape(), Qt::ClosedHandCursor);
    move({130, 120});
    release({130, 120});
    EXPECT_EQ(view().transform().tx, before.tx + 30);
    EXPECT_EQ(view().transform().ty, before.ty - 20);
}

TEST_F(CutViewWidgetTest, TheRightButtonPansInBrushMode) {
    openPicture();
    const auto before = view().transform();
    press({100, 100}, Qt::RightButton);
    move({110, 100});
    release({110, 100}, Qt::RightButton);
    EXPECT_EQ(view().transform().tx, before.tx + 10);
    EXPECT_EQ(view().historyLength(), 1);
}

TEST_F(CutViewWidgetTest, ASecondButtonDuringAStrokeStartsNothing) {
    openPicture();
    press({100, 50});
    press({100, 50}, Qt::RightButton);
    EXPECT_TRUE(view().isTracking());
    release({100, 50});
    EXPECT_FALSE(view().isTracking());
}

TEST_F(CutViewWidgetTest, TheWheelZoomsAtThePointer) {
    openPicture();
    wheel({100, 75}, {0, 120});
    EXPECT_NEAR(view().transform().a, 1.2, 1e-6);
    // The point under the pointer, (-100, 75) from the centre, stays there.
    EXPECT_NEAR(view().transform().tx - 100 * 1.2, 100, 1e-4);
    EXPECT_NEAR(view().transform().ty + 75 * 1.2, 225, 1e-4);
}

TEST_F(CutViewWidgetTest, ASidewaysWheelSaysNothing) {
    openPicture();
    wheel({100, 75}, {120, 0});
    EXPECT_TRUE(view().imageFit());
}

TEST_F(CutViewWidgetTest, AltAndTheWheelSizeTheBrush) {
    openPicture();
    wheel({100, 75}, {120, 0}, Qt::AltModifier);
    EXPECT_EQ(view().brushDiameter(), 30);
    EXPECT_EQ(view().transform().a, 1);
}

TEST_F(CutViewWidgetTest, APinchZoomsEvenWithAltHeld) {
    openPicture();
    QTest::keyPress(window(), Qt::Key_Alt, Qt::NoModifier);
    QNativeGestureEvent pinch(Qt::ZoomNativeGesture, QPointingDevice::primaryPointingDevice(), 2, {200, 150},
                              {200, 150}, {200, 150}, 0.1, {});
    QCoreApplication::sendEvent(&widget_, &pinch);
    EXPECT_NEAR(view().transform().a, 1.1, 1e-6);
    EXPECT_EQ(view().brushDiameter(), 20);
    QTest::keyRelease(window(), Qt::Key_Alt);
}

TEST_F(CutViewWidgetTest, HeldCommandShowsTheOpenHandAtOnce) {
    openPicture();
    move({10, 10});
    EXPECT_EQ(view().cursorKind(), Cursor::Kind::brush);
    QTest::keyPress(window(), Qt::Key_Control);
    EXPECT_EQ(widget_.cursor().shape(), Qt::OpenHandCursor);
    QTest::keyRelease(window(), Qt::Key_Control);
    EXPECT_EQ(widget_.cursor().shape(), Qt::BitmapCursor);
}

TEST_F(CutViewWidgetTest, ModifiersThatChangedElsewhereCountFromTheNextPress) {
    openPicture();
    const auto before = view().transform();
    press({100, 100}, Qt::LeftButton, Qt::ControlModifier);
    QTest::mouseEvent(QTest::MouseMove, &widget_, Qt::NoButton, Qt::ControlModifier, {120, 100});
    release({120, 100});
    EXPECT_EQ(view().transform().tx, before.tx + 20);
}

TEST_F(CutViewWidgetTest, TheKeyThatSwapsTheBrushWorksWithAModifierOnceAPress) {
    int swaps = 0;
    widget_.onBrushSwap([&] { ++swaps; });
    QTest::keyClick(window(), Qt::Key_I);
    EXPECT_EQ(view().brushAlphaValue(), 0);
    QTest::keyClick(window(), Qt::Key_I, Qt::ControlModifier);
    EXPECT_EQ(view().brushAlphaValue(), 1);
    QTest::keyClick(window(), Qt::Key_I, Qt::AltModifier);
    EXPECT_EQ(view().brushAlphaValue(), 0);
    EXPECT_EQ(swaps, 2);
}

TEST_F(CutViewWidgetTest, WatchedKeysStillReachTheOtherWidgets) {
    class Listener final : public QWidget {
     public:
        explicit Listener(QWidget* parent) : QWidget(parent) {}
        int heard = 0;

     protected:
        void keyPressEvent(QKeyEvent* /*event*/) override { ++heard; }
    } listener(&widget_);
    listener.show();
    listener.setFocus();
    QTest::keyClick(window(), Qt::Key_I, Qt::ControlModifier);
    EXPECT_EQ(listener.heard, 1);
    EXPECT_EQ(view().brushAlphaValue(), 1);
}

TEST_F(CutViewWidgetTest, SpaceHeldPansAndGivesTheToolBack) {
    openPicture();
    move({10, 10});
    QTest::keyPress(&widget_, Qt::Key_Space);
    EXPECT_EQ(view().dragMode(), DragMode::pan);
    EXPECT_EQ(widget_.cursor().shape(), Qt::OpenHandCursor);
    QTest::keyRelease(&widget_, Qt::Key_Space);
    EXPECT_EQ(view().dragMode(), DragMode::paint);
}

TEST_F(CutViewWidgetTest, AToolChosenWhileSpaceIsHeldComesWhenItIsLetGo) {
    widget_.setToolDragMode(DragMode::pan);
    QTest::keyPress(&widget_, Qt::Key_Space);
    widget_.setToolDragMode(DragMode::paint);
    EXPECT_EQ(view().dragMode(), DragMode::pan);
    QTest::keyRelease(&widget_, Qt::Key_Space);
    EXPECT_EQ(view().dragMode(), DragMode::paint);
}

TEST_F(CutViewWidgetTest, LosingTheKeyboardEndsTheStroke) {
    openPicture();
    press({100, 100});
    move({120, 100});
    QFocusEvent out(QEvent::FocusOut, Qt::ActiveWindowFocusReason);
    QCoreApplication::sendEvent(&widget_, &out);
    EXPECT_FALSE(view().isTracking());
    queues_.settle();
    EXPECT_EQ(view().historyLength(), 2);
    EXPECT_EQ(maskAt(110, 100), 0);
    release({120, 100});
    queues_.settle();
    EXPECT_EQ(view().historyLength(), 2);
}

TEST_F(CutViewWidgetTest, AWindowThatLosesThePersonLetsGoOfEverything) {
    openPicture();
    QTest::keyPress(window(), Qt::Key_Control);
    press({100, 100}, Qt::LeftButton, Qt::ControlModifier);
    EXPECT_TRUE(view().isTracking());
    QWidget other;
    other.show();
    other.activateWindow();
    QCoreApplication::processEvents();
    ASSERT_FALSE(widget_.isActiveWindow());
    EXPECT_FALSE(view().isTracking());
    widget_.activateWindow();
    QCoreApplication::processEvents();
    move({10, 10});
    EXPECT_EQ(view().cursorKind(), Cursor::Kind::brush);
    QTest::keyRelease(window(), Qt::Key_Control);
}

TEST_F(CutViewWidgetTest, HidingEndsTheStroke) {
    openPicture();
    press({100, 100});
    widget_.hide();
    EXPECT_FALSE(view().isTracking());
}

TEST_F(CutViewWidgetTest, ALeftPressOnTheEmptyViewAsksForAPicture) {
    int asked = 0;
    widget_.onOpenRequest([&] { ++asked; });
    press({100, 100}, Qt::RightButton);
    release({100, 100}, Qt::RightButton);
    EXPECT_EQ(asked, 0);
    press({100, 100});
    release({100, 100});
    EXPECT_EQ(asked, 1);
}

TEST_F(CutViewWidgetTest, LeavingTheViewGivesTheArrowBack) {
    openPicture();
    move({10, 10});
    EXPECT_EQ(widget_.cursor().shape(), Qt::BitmapCursor);
    QEvent leave(QEvent::Leave);
    QCoreApplication::sendEvent(&widget_, &leave);
    EXPECT_EQ(widget_.cursor().shape(), Qt::ArrowCursor);
}

TEST_F(CutViewWidgetTest, AResizedWidgetRefitsThePicture) {
    openPicture();
    widget_.resize(200, 150);
    settle();
    EXPECT_EQ(view().viewSize(), (foundation::Size{200, 150}));
    EXPECT_NEAR(view().transform().a, 0.5, 1e-6);
}

TEST_F(CutViewWidgetTest, FramesFollowWhileThePictureMovesAndStopAtRest) {
    openPicture();
    widget_.repaint();
    auto* const nextFrame = widget_.findChild<QTimer*>();
    ASSERT_NE(nextFrame, nullptr);
    EXPECT_FALSE(nextFrame->isActive());
    wheel({100, 75}, {0, 120});
    widget_.repaint();
    EXPECT_TRUE(nextFrame->isActive());
    nextFrame->stop();
    time_.advance(1);
    widget_.repaint();
    EXPECT_FALSE(nextFrame->isActive());
}

/// Run at several scale factors of the screen (see the folder's CMakeLists.txt).
class DeviceRatioTest : public CutViewWidgetTest {
 protected:
    /// Whether `screen` shows all of `frame` but its outermost pixels, unchanged, with its corner at `at`.
    static bool shows(const QImage& screen, const QImage& frame, QPoint at) {
        const QRect inside = frame.rect().adjusted(1, 1, -1, -1);
        return screen.copy(inside.translated(at)) == frame.copy(inside);
    }
};

TEST_F(DeviceRatioTest, TheScreenShowsTheEnginesPixelsUntouched) {
    QWidget outer;
    outer.resize(500, 400);
    CutViewWidget inner({queues_, time_, notifications_, folder_.path() / "inner"}, &outer);
    inner.setGeometry(33, 17, 201, 151);
    outer.show();
    QCoreApplication::processEvents();
    inner.view().setImage(plainPicture(64, 64));
    queues_.settle();
    time_.advance(1);
    inner.repaint();

    const double scale = inner.devicePixelRatioF();
    const foundation::IntRect whole = devicePixels(inner.rect(), scale);
    auto expected = foundation::Bitmap::create(whole.width, whole.height, foundation::AlphaMode::opaque);
    inner.view().drawRect(expected->view(), whole);
    const QImage frame = util::sharedImage(std::as_const(*expected).view());
    const QImage screen =
        outer.screen()->grabWindow(outer.winId()).toImage().convertToFormat(QImage::Format_RGB32);
    ASSERT_GE(screen.width(), static_cast<int>(500 * scale));

    // The corner falls between two pixels at fractional scale factors; either will do, but unblended.
    const QPointF corner = QPointF(inner.pos()) * scale;
    bool found = false;
    for (const double x : {std::floor(corner.x()), std::ceil(corner.x())}) {
        for (const double y : {std::floor(corner.y()), std::ceil(corner.y())})
            found = found || shows(screen, frame, QPointF(x, y).toPoint());
    }
    EXPECT_TRUE(found);
}

TEST_F(DeviceRatioTest, TheBrushIsDrawnForTheScreen) {
    openPicture();
    move({10, 10});
    EXPECT_EQ(widget_.cursor().pixmap().size(), QSize(26, 26) * widget_.devicePixelRatioF());
    EXPECT_EQ(widget_.cursor().hotSpot(), QPoint(13, 13));
}

}  // namespace
}  // namespace trimora::editor
