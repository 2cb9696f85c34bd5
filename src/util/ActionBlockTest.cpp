#include "util/ActionBlock.h"

#include <gtest/gtest.h>

#include <QPushButton>
#include <QTest>
#include <vector>

#include "util/RKBlocker.h"

namespace trimora::util {
namespace {

/// Remembers where the mouse events were that it got.
class Sensor final : public QWidget {
 public:
    using QWidget::QWidget;
    std::vector<QPoint> presses;
    std::vector<QPoint> drags;
    std::vector<QPoint> releases;

 protected:
    void mousePressEvent(QMouseEvent* event) override { presses.push_back(event->position().toPoint()); }
    void mouseMoveEvent(QMouseEvent* event) override { drags.push_back(event->position().toPoint()); }
    void mouseReleaseEvent(QMouseEvent* event) override { releases.push_back(event->position().toPoint()); }
};

class ActionBlockTest : public ::testing::Test {
 protected:
    ActionBlockTest() {
        window_.resize(200, 100);
        left_->setGeometry(10, 20, 60, 40);
        inner_->setGeometry(5, 5, 20, 20);
        right_->setGeometry(100, 20, 60, 40);
        window_.show();
    }
    QWidget window_;
    Sensor* left_ = new Sensor(&window_);
    Sensor* inner_ = new Sensor(left_);
    Sensor* right_ = new Sensor(&window_);
};

TEST_F(ActionBlockTest, AllSubviewsAreListedDepthFirst) {
    EXPECT_EQ(allSubviews(window_), (QList<QWidget*>{left_, inner_, right_}));
}

TEST_F(ActionBlockTest, RemovingAllSubviewsLeavesNone) {
    removeAllSubviews(window_);
    EXPECT_TRUE(allSubviews(window_).isEmpty());
}

TEST_F(ActionBlockTest, LayersAreWantedByTheViewAndAllBelow) {
    EXPECT_FALSE(wantsLayer(*inner_));
    setWantsLayerToAllSubviews(window_);
    for (const QWidget* view : {&window_, static_cast<QWidget*>(inner_), static_cast<QWidget*>(right_)})
        EXPECT_TRUE(wantsLayer(*view));
    setWantsLayerToViewAndSubViews(*left_, false);
    EXPECT_FALSE(wantsLayer(*inner_));
    EXPECT_TRUE(wantsLayer(*right_));
}

TEST_F(ActionBlockTest, ABackgroundFillsTheView) {
    setBackgroundColor(*left_, Qt::red);
    layerBackground(*right_, Qt::green);
    EXPECT_EQ(imageRepresentation(*left_).pixelColor(1, 1), QColor(Qt::red));
    EXPECT_EQ(imageRepresentationOld(*right_).pixelColor(1, 1), QColor(Qt::green));
    EXPECT_TRUE(wantsLayer(*right_));
}

TEST_F(ActionBlockTest, ACornerRadiusCutsTheCorners) {
    setMaskWithCornerRadius(*left_, 10);
    EXPECT_FALSE(left_->mask().contains(QPoint(1, 1)));
    EXPECT_FALSE(left_->mask().contains(QPoint(58, 38)));
    EXPECT_TRUE(left_->mask().contains(QPoint(30, 1)));
    EXPECT_TRUE(left_->mask().contains(QPoint(5, 5)));
}

TEST_F(ActionBlockTest, AnImageLayerFillsTheBoundsWithItsProportionsKept) {
    QImage image(30, 10, QImage::Format_RGB32);  // as wide as three squares: red, green, blue
    for (int x = 0; x < 30; ++x) {
        for (int y = 0; y < 10; ++y)
            image.setPixelColor(x, y, x < 10 ? Qt::red : x < 20 ? Qt::green : Qt::blue);
    }
    right_->resize(60, 60);
    setImageLayer(*right_, image);
    const QImage shown = imageRepresentation(*right_);
    for (const QPoint& corner : {QPoint(3, 3), QPoint(56, 3), QPoint(3, 56), QPoint(56, 56)})
        EXPECT_EQ(shown.pixelColor(corner), QColor(Qt::green));
}

TEST_F(ActionBlockTest, AnImageLayerReplacesTheOneBeforeAndStaysBelowTheSubviews) {
    QImage image(4, 4, QImage::Format_RGB32);
    image.fill(Qt::red);
    setBackgroundColor(*inner_, Qt::blue);
    setImageLayer(*left_, image);
    image.fill(Qt::green);
    setImageLayer(*left_, image);
    EXPECT_EQ(allSubviews(*left_).size(), 2);
    EXPECT_EQ(imageRepresentation(*left_).pixelColor(50, 30), QColor(Qt::green));
    EXPECT_EQ(imageRepresentation(*left_).pixelColor(10, 10), QColor(Qt::blue));
}

TEST_F(ActionBlockTest, AnImageRepresentationHasTheSizeOfTheBoundsAtAnyScale) {
    EXPECT_EQ(imageRepresentation(*left_).size(), QSize(60, 40));
    EXPECT_EQ(imageRepresentation(*left_, 1.5).size(), QSize(90, 60));
    EXPECT_EQ(imageRepresentation(*left_, 2).deviceIndependentSize(), QSizeF(60, 40));
}

TEST_F(ActionBlockTest, AWindowScreenshotShowsWhatCoversTheView) {
    setBackgroundColor(*left_, Qt::red);
    setBackgroundColor(*right_, Qt::green);
    right_->setGeometry(40, 20, 60, 40);
    const QImage shown = imageRepresentationWindowScreenshot(*left_);
    EXPECT_EQ(shown.size(), QSize(60, 40));
    EXPECT_EQ(shown.pixelColor(1, 1), QColor(Qt::red));
    EXPECT_EQ(shown.pixelColor(45, 20), QColor(Qt::green));
}

TEST_F(ActionBlockTest, PointsAndBoundsAreConvertedToTheWindow) {
    EXPECT_EQ(pointInFrame(*inner_, {1, 2}), QPointF(16, 27));
    EXPECT_EQ(coordInFrame(*inner_), QRectF(15, 25, 20, 20));
}

TEST_F(ActionBlockTest, AnEventIsLocatedInAnyView) {
    const QPointF global = window_.mapToGlobal(QPointF(20, 30));
    const QMouseEvent event(QEvent::MouseMove, QPointF(20, 30), global, Qt::NoButton, Qt::NoButton, {});
    EXPECT_EQ(locationInView(event, *inner_), QPointF(5, 5));
}

TEST_F(ActionBlockTest, ALockedMouseBelongsToTheViewUntilItIsLetGo) {
    QWindow* const window = window_.windowHandle();
    QTest::mousePress(window, Qt::LeftButton, {}, QPoint(110, 30));
    lockMouse(*left_);
    QTest::mouseMove(window, QPoint(150, 30));
    QTest::mouseRelease(window, Qt::LeftButton, {}, QPoint(150, 30));
    EXPECT_EQ(left_->drags, std::vector<QPoint>{QPoint(140, 10)});
    EXPECT_EQ(left_->releases, std::vector<QPoint>{QPoint(140, 10)});
    EXPECT_TRUE(right_->drags.empty());

    QTest::mouseClick(window, Qt::LeftButton, {}, QPoint(110, 30));
    EXPECT_EQ(right_->presses.size(), 2U);
    EXPECT_TRUE(left_->presses.empty());
}

TEST_F(ActionBlockTest, WithNoButtonHeldTheMouseIsNotLocked) {
    lockMouse(*left_);
    QTest::mouseClick(window_.windowHandle(), Qt::LeftButton, {}, QPoint(110, 30));
    EXPECT_TRUE(left_->releases.empty());
    EXPECT_EQ(right_->releases.size(), 1U);
}

TEST_F(ActionBlockTest, OneBlockerServesAllKeysOfAView) {
    blockWithoutProgress(window_, "open");
    blockWithoutProgress(window_, "save");
    EXPECT_EQ(QTest::qWaitForWindowExposed(&window_), true);
    const QWidget* const top = window_.childAt(5, 5);
    const auto* const blocker = dynamic_cast<const RKBlocker*>(top);
    ASSERT_NE(blocker, nullptr);
    EXPECT_EQ(blocker->blockers(), (QStringList{"open", "save"}));
    unblock(window_, "open");
    EXPECT_EQ(window_.childAt(5, 5), top);
    unblock(window_, "save");
    EXPECT_EQ(window_.childAt(5, 5), nullptr);
}

TEST_F(ActionBlockTest, APressIsHandedToTheNextViewBelow) {
    auto* const cover = new Sensor(&window_);
    cover->setGeometry(0, 0, 200, 100);
    cover->show();
    auto* const above = new Sensor(&window_);
    above->setGeometry(0, 0, 200, 100);
    above->show();
    const QPointF at(110, 30);
    const QMouseEvent press(QEvent::MouseButtonPress, at, cover->mapToGlobal(at), Qt::LeftButton,
                            Qt::LeftButton, {});
    EXPECT_EQ(nextViewForEvent(*cover, at), right_);
    EXPECT_TRUE(handleMouseDown(*cover, press));
    EXPECT_EQ(right_->presses, std::vector<QPoint>{QPoint(10, 10)});
    EXPECT_TRUE(above->presses.empty());

    right_->hide();
    EXPECT_EQ(nextViewForEvent(*cover, at), nullptr);
    EXPECT_FALSE(handleMouseDown(*cover, press));
    EXPECT_EQ(nextViewForEvent(window_, at), nullptr);
}

}  // namespace
}  // namespace trimora::util
