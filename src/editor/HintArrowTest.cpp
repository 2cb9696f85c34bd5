#include "editor/HintArrow.h"

#include <gtest/gtest.h>

#include <QCoreApplication>
#include <QEvent>
#include <QImage>
#include <cmath>
#include <utility>

#include "controls/ControlsForTests.h"

namespace trimora::editor {
namespace {

using controls::KeyPath;
using controls::PropertyAnimation;

class HintArrowTest : public ::testing::Test {
 protected:
    double rise() { return arrow_.layer().presentation(world_.time.seconds()).translationY; }

    controls::VirtualWorld world_;
    HintArrow arrow_{world_.context()};
};

TEST_F(HintArrowTest, AnAnimationGoesFromOneHeightToTheOther) {
    const PropertyAnimation made = HintArrow::animationYFrom_to_beginTime_duration(14, 0, 1.2F, 0.15F);
    EXPECT_EQ(made.keyPath, KeyPath::transformTranslationY);
    EXPECT_EQ(made.from.number, 14);
    EXPECT_EQ(made.to.number, 0);
    EXPECT_FLOAT_EQ(static_cast<float>(made.timing.beginTime), 1.2F);
    EXPECT_FLOAT_EQ(static_cast<float>(made.timing.duration), 0.15F);
}

TEST_F(HintArrowTest, ItRisesEvenlyDropsBouncesAndRests) {
    EXPECT_EQ(rise(), 0) << "still until it is told to begin";
    arrow_.addDownArrowAnimation();
    EXPECT_TRUE(arrow_.layer().hasAnimation("group"));
    world_.advance(0.6);
    EXPECT_NEAR(rise(), 7, 1e-5);
    world_.advance(0.599);
    EXPECT_NEAR(rise(), 14, 0.02);
    world_.advance(0.1509);  // 1.3499: at the end of the drop
    EXPECT_NEAR(rise(), 0, 0.1);
    world_.advance(0.075);  // 1.4249: at the top of the bounce
    EXPECT_NEAR(rise(), 7, 0.2);
    world_.advance(0.075);  // 1.4999: down again
    EXPECT_NEAR(rise(), 0, 0.2);
    world_.advance(0.3);  // at rest
    EXPECT_EQ(rise(), 0);
}

TEST_F(HintArrowTest, TheDropIsSlowFirstAndTheBounceSlowInItsMiddle) {
    arrow_.addDownArrowAnimation();
    world_.advance(1.2 + 0.075);
    EXPECT_GT(rise(), 7) << "half the time of the drop, less than half of its way";
    world_.advance(0.075 + 0.0375);
    EXPECT_NEAR(rise(), 3.5, 0.01);
}

TEST_F(HintArrowTest, TwoSecondsLaterItBeginsAgainForEver) {
    arrow_.addDownArrowAnimation();
    world_.advance(2.6);
    EXPECT_NEAR(rise(), 7, 1e-5);
    world_.advance(2000);
    EXPECT_NEAR(rise(), 7, 1e-5);
    EXPECT_TRUE(arrow_.layer().isAnimating(world_.time.seconds()));
}

/// How often a widget was painted since it was last asked.
class Paints final : public QObject {
 public:
    explicit Paints(QWidget& widget) { widget.installEventFilter(this); }
    int taken() { return std::exchange(count_, 0); }

    bool eventFilter(QObject* /*watched*/, QEvent* event) override {
        count_ += event->type() == QEvent::Paint ? 1 : 0;
        return false;
    }

 private:
    int count_ = 0;
};

TEST_F(HintArrowTest, ItIsPaintedAsOftenAsItIsSeenToMoveAndNeverWhileItRests) {
    Paints paints(arrow_);
    arrow_.addDownArrowAnimation();
    arrow_.show();
    const auto let = [this](double seconds) {
        constexpr double kStep = 1.0 / 240;
        for (int i = 0; i < static_cast<int>(std::lround(seconds / kStep)); ++i) {
            world_.advance(kStep);
            QCoreApplication::processEvents();
        }
    };
    let(1.2);
    const int rising = paints.taken();
    const double pixels = 14 * arrow_.devicePixelRatioF();
    EXPECT_GE(rising, pixels) << "none of them is left out";
    EXPECT_LE(rising, 2 * pixels + 2) << "two for each";
    let(0.32);
    EXPECT_GE(paints.taken(), 14) << "the fall and the bounce are as smooth as the screen";
    let(0.4);
    EXPECT_EQ(paints.taken(), 0);
    let(0.6);
    EXPECT_GE(paints.taken(), 5) << "it begins again";
}

TEST_F(HintArrowTest, ItHasRoomForTheWholeWay) {
    const auto inked = [this] {
        QImage image(arrow_.size(), QImage::Format_ARGB32_Premultiplied);
        image.fill(Qt::transparent);
        arrow_.render(&image, {}, {}, {});
        int opaque = 0;
        for (int y = 0; y < image.height(); ++y) {
            for (int x = 0; x < image.width(); ++x)
                opaque += image.pixelColor(x, y).alpha();
        }
        return opaque;
    };
    const int atRest = inked();
    EXPECT_GT(atRest, 0);
    arrow_.addDownArrowAnimation();
    world_.advance(1.199);
    EXPECT_NEAR(inked(), atRest, atRest * 0.02) << "nothing of it is cut off at the top";
}

}  // namespace
}  // namespace trimora::editor
