#include "util/RKBlocker.h"

#include <gtest/gtest.h>

#include <QPointer>
#include <QPushButton>
#include <QTest>

#include "util/SpinningProgress.h"

namespace trimora::util {
namespace {

/// Counts the mouse events that reach it.
class Surface final : public QWidget {
 public:
    Surface() { resize(200, 100); }
    int events = 0;

 protected:
    void mousePressEvent(QMouseEvent*) override { ++events; }
    void mouseMoveEvent(QMouseEvent*) override { ++events; }
    void mouseReleaseEvent(QMouseEvent*) override { ++events; }
};

class RKBlockerTest : public ::testing::Test {
 protected:
    RKBlockerTest() {
        surface_.show();
        blocker_->show();
    }
    [[nodiscard]] bool isGone() {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        return blocker_.isNull();
    }

    Surface surface_;
    QPointer<RKBlocker> blocker_ = new RKBlocker(&surface_);
};

TEST_F(RKBlockerTest, StaysUntilEveryKeyHasBeenUnblocked) {
    blocker_->block("open");
    blocker_->block("save");
    blocker_->unblock("open");
    EXPECT_EQ(blocker_->blockers(), QStringList{"save"});
    EXPECT_EQ(blocker_->parentWidget(), &surface_);
    blocker_->unblock("save");
    EXPECT_TRUE(surface_.findChildren<RKBlocker*>().isEmpty());
    EXPECT_TRUE(isGone());
}

TEST_F(RKBlockerTest, BlockingTwiceWithOneKeyNeedsOneUnblock) {
    blocker_->block("open");
    blocker_->block("open");
    blocker_->unblock("open");
    EXPECT_TRUE(isGone());
}

TEST_F(RKBlockerTest, AnUnknownKeyUnblocksNothing) {
    blocker_->block("open");
    blocker_->unblock("print");
    EXPECT_FALSE(isGone());
}

TEST_F(RKBlockerTest, MouseEventsStopAtIt) {
    blocker_->block("open");
    QWindow* const window = surface_.windowHandle();
    QTest::mousePress(window, Qt::LeftButton, {}, QPoint(50, 50));
    QTest::mouseMove(window, QPoint(60, 60));
    QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(60, 60));
    EXPECT_EQ(surface_.events, 0);

    blocker_->unblock("open");
    QTest::mouseClick(window, Qt::LeftButton, {}, QPoint(50, 50));
    EXPECT_EQ(surface_.events, 2);
}

TEST_F(RKBlockerTest, CoversItsParentAndResizesWithIt) {
    EXPECT_EQ(blocker_->geometry(), QRect(0, 0, 200, 100));
    surface_.resize(300, 150);
    EXPECT_EQ(blocker_->geometry(), QRect(0, 0, 300, 150));
    EXPECT_EQ(blocker_->findChild<SpinningProgress*>()->geometry(), QRect(0, 0, 300, 150));
}

TEST_F(RKBlockerTest, MovedToAnotherWidgetItCoversThatOne) {
    Surface other;
    other.resize(80, 60);
    blocker_->setParent(&other);
    EXPECT_EQ(blocker_->geometry(), QRect(0, 0, 80, 60));
    surface_.resize(20, 20);
    EXPECT_EQ(blocker_->geometry(), QRect(0, 0, 80, 60));
    blocker_->unblock("all");
}

TEST_F(RKBlockerTest, TheWheelTurnsOnlyWhileItIsSeen) {
    auto* const wheel = blocker_->findChild<SpinningProgress*>();
    EXPECT_TRUE(wheel->isSpinning());
    surface_.hide();
    EXPECT_FALSE(wheel->isSpinning());
}

}  // namespace
}  // namespace trimora::util
