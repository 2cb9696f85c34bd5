#include <gtest/gtest.h>

#include <QAccessible>

#include "controls/AnimatedGradientButton.h"
#include "controls/ButtonAppearance.h"
#include "controls/ButtonOpenAppereance.h"
#include "controls/ButtonSaveAppearance.h"
#include "controls/ControlNotifications.h"
#include "controls/ControlsForTests.h"
#include "controls/CustomViewWithButton.h"
#include "controls/GradientButton.h"
#include "controls/KrugButton.h"
#include "controls/Motion.h"
#include "controls/PolukrugButton.h"
#include "controls/ScaleButton.h"
#include "controls/TopBarButton.h"
#include "testing/CapturedLog.h"
#include "util/ButtonBlocker.h"

namespace trimora::controls {
namespace {

template <typename Button>
class EveryButton : public ::testing::Test {
 protected:
    EveryButton() {
        button.setText("Cut");
        button.setAccessibleName("Cut out");
        QObject::connect(&button, &QAbstractButton::clicked, [this] { ++clicks; });
        window.hold(button, button.sizeHint());
    }

    /// Inside the shape of every member, the half disc included.
    [[nodiscard]] QPoint inside() const { return {button.width() / 2, button.height() / 4}; }

    VirtualWorld world;
    NotificationCount leavings{world.notifications, notifications::kNeedsCursorUpdate};
    TestWindow window;
    Button button{world.context()};
    int clicks = 0;
};

using Buttons =
    ::testing::Types<KrugButton, PolukrugButton, ButtonSaveAppearance, ButtonOpenAppereance, ButtonAppearance,
                     ScaleButton, TopBarButton, GradientButton, AnimatedGradientButton>;
TYPED_TEST_SUITE(EveryButton, Buttons);

TYPED_TEST(EveryButton, ClicksInsideItsShape) {
    this->window.click(this->button, this->inside());
    EXPECT_EQ(this->clicks, 1);
}

TYPED_TEST(EveryButton, AsksForTheBrushCursorWhenThePointerLeaves) {
    this->window.moveTo(this->button, this->inside());
    EXPECT_TRUE(this->button.mouseIn());
    const int before = *this->leavings;
    this->window.moveOut();
    EXPECT_EQ(*this->leavings, before + 1);
    EXPECT_FALSE(this->button.mouseIn());
}

TYPED_TEST(EveryButton, LooksDifferentPressedDisabledAndFocused) {
    const QImage rest = this->button.grab().toImage();
    this->window.press(this->button, this->inside());
    EXPECT_NE(this->button.grab().toImage(), rest);
    this->window.release(this->button, this->inside());
    this->button.setEnabled(false);
    EXPECT_NE(this->button.grab().toImage(), rest);
    this->button.setEnabled(true);
    QTest::keyClick(&this->window, Qt::Key_Tab);
    EXPECT_TRUE(this->button.hasFocus());
    EXPECT_NE(this->button.grab().toImage(), rest);
}

TYPED_TEST(EveryButton, LooksDifferentUnderThePointer) {
    const QImage rest = this->button.grab().toImage();
    this->window.moveTo(this->button, this->inside());
    this->world.advance(1);
    EXPECT_NE(this->button.grab().toImage(), rest);
}

TYPED_TEST(EveryButton, IsAButtonWithItsNameToAScreenReader) {
    QAccessibleInterface* const access = QAccessible::queryAccessibleInterface(&this->button);
    ASSERT_NE(access, nullptr);
    EXPECT_EQ(access->role(), QAccessible::Button);
    EXPECT_EQ(access->text(QAccessible::Name), "Cut out");
    EXPECT_TRUE(access->state().focusable);
}

template <typename Button>
class EveryRoundOrHalfRoundButton : public EveryButton<Button> {};
using ShapedButtons = ::testing::Types<KrugButton, ButtonAppearance, PolukrugButton>;
TYPED_TEST_SUITE(EveryRoundOrHalfRoundButton, ShapedButtons);

TYPED_TEST(EveryRoundOrHalfRoundButton, AClickInsideTheFrameButOutsideTheShapeDoesNothing) {
    const QPoint corner(this->button.width() - 3, this->button.height() - 3);
    this->window.click(this->button, corner);
    EXPECT_EQ(this->clicks, 0);
    EXPECT_TRUE(this->button.isEnabled());
}

template <typename Button>
class EveryGrowingButton : public EveryButton<Button> {};
using GrowingButtons = ::testing::Types<KrugButton, ButtonAppearance, PolukrugButton, ScaleButton>;
TYPED_TEST_SUITE(EveryGrowingButton, GrowingButtons);

TYPED_TEST(EveryGrowingButton, GrowsAndShrinks) {
    this->window.moveTo(this->button, this->inside());
    this->world.advance(1);
    EXPECT_DOUBLE_EQ(this->button.displayedScale(), motion::kHoverScale);
    this->window.moveOut();
    this->world.advance(1);
    EXPECT_DOUBLE_EQ(this->button.displayedScale(), 1);
}

/// How many solid pixels of a button stand in its row a quarter of the way down.
int solidWidth(QWidget& button) {
    QImage image(button.size(), QImage::Format_ARGB32_Premultiplied);
    image.fill(Qt::transparent);
    button.render(&image, {}, {}, QWidget::DrawChildren);
    int width = 0;
    for (int x = 0; x < image.width(); ++x)
        width += image.pixelColor(x, image.height() / 4).alpha() > 160 ? 1 : 0;
    return width;
}

TYPED_TEST(EveryGrowingButton, GrownItIsNotCutOffAtItsFrame) {
    const int rest = solidWidth(this->button);
    ASSERT_GT(rest, 10);
    this->window.moveTo(this->button, this->inside());
    this->world.advance(1);
    EXPECT_GE(solidWidth(this->button), static_cast<int>(rest * motion::kHoverScale) - 1);
}

TEST(ButtonAppearance, HasNoMenuAndWaitsForNothing) {
    VirtualWorld world;
    TestWindow window;
    ButtonAppearance button(world.context());
    window.hold(button, button.sizeHint());
    window.moveTo(button, {20, 20});
    world.advance(0.5);
    EXPECT_EQ(world.time.scheduled(), 0);
}

TEST(LabelButton, AnotherTitleOrFontAsksForAnotherWidth) {
    VirtualWorld world;
    TopBarButton button(world.context());
    button.setText("Cut");
    const int shortTitle = button.sizeHint().width();
    button.setText("Cut out");
    const int longTitle = button.sizeHint().width();
    EXPECT_GT(longTitle, shortTitle);
    QFont large = button.font();
    large.setPointSizeF(large.pointSizeF() * 2);
    button.setFont(large);
    EXPECT_GT(button.sizeHint().width(), longTitle);
}

class CallToAction : public ::testing::Test {
 protected:
    VirtualWorld world;
    NotificationCount saves{world.notifications, notifications::kSavePicture};
    NotificationCount opens{world.notifications, notifications::kOpenPicture};
    TestWindow window;
    ButtonSaveAppearance save{world.context()};
    ButtonOpenAppereance open{world.context()};
};

TEST_F(CallToAction, PostsItsNotificationForAPressThatStartsAndEndsInside) {
    window.hold(save, save.sizeHint());
    window.click(save, {10, 10});
    EXPECT_EQ(*saves, 1);
    EXPECT_EQ(*opens, 0);
}

TEST_F(CallToAction, TheOpenButtonPostsItsOwn) {
    window.hold(open, open.sizeHint());
    window.click(open, {10, 10});
    EXPECT_EQ(*opens, 1);
    EXPECT_EQ(*saves, 0);
}

TEST_F(CallToAction, PostsNothingForAPressThatEndsOutside) {
    window.hold(save, save.sizeHint());
    window.press(save, {10, 10});
    window.moveTo(save, {-20, -20});
    window.release(save, {-20, -20});
    EXPECT_EQ(*saves, 0);
}

TEST_F(CallToAction, PostsNothingForAPressThatStartsOutside) {
    window.hold(save, save.sizeHint());
    window.press(save, {-20, -20});
    window.moveTo(save, {10, 10});
    window.release(save, {10, 10});
    EXPECT_EQ(*saves, 0);
}

TEST_F(CallToAction, TheTitleIsGreyWhileHeldAndWhiteAgainAfterwards) {
    window.hold(save, save.sizeHint());
    EXPECT_EQ(util::titleColor(save), QColor(Qt::white));
    window.press(save, {10, 10});
    const QColor held = util::titleColor(save);
    EXPECT_NE(held, QColor(Qt::white));
    EXPECT_EQ(held.red(), held.green());
    EXPECT_EQ(held.red(), held.blue());
    window.release(save, {10, 10});
    EXPECT_EQ(util::titleColor(save), QColor(Qt::white));
}

TEST_F(CallToAction, TheOpenButtonLogsEnterAndExit) {
    const testing::CapturedLog log;
    window.hold(open, open.sizeHint());
    window.moveTo(open, {10, 10});
    window.moveOut();
    EXPECT_EQ(log.texts(), (std::vector<std::string>{"enter", "exit"}));
}

class PolukrugButtonTest : public ::testing::Test {
 protected:
    PolukrugButtonTest() { window.hold(button, {120, 60}); }
    QColor shownAt(const QPoint& place) { return button.grab().toImage().pixelColor(place); }

    VirtualWorld world;
    TestWindow window;
    PolukrugButton button{world.context()};
};

TEST_F(PolukrugButtonTest, HangsFromItsUpperEdgeAndInvertedStandsOnTheLower) {
    // Radius 120 / 2.8 = 42.9 about the middle of the upper edge.
    EXPECT_TRUE(button.eventIsActive({60, 40}));
    EXPECT_FALSE(button.eventIsActive({60, 45}));
    EXPECT_TRUE(button.eventIsActive({19, 2}));
    EXPECT_FALSE(button.eventIsActive({15, 2}));
    button.invert();
    EXPECT_TRUE(button.inverted());
    EXPECT_FALSE(button.eventIsActive({60, 15}));
    EXPECT_TRUE(button.eventIsActive({60, 20}));
    EXPECT_TRUE(button.eventIsActive({19, 58}));
    button.invert();
    EXPECT_TRUE(button.eventIsActive({19, 2}));
}

TEST_F(PolukrugButtonTest, TurnsBrighterWhileHeldAndBackAfterwards) {
    EXPECT_EQ(shownAt({60, 10}), QColor(230, 27, 85));
    window.press(button, {60, 10});
    EXPECT_EQ(shownAt({60, 10}), QColor(255, 35, 100));
    window.release(button, {60, 10});
    EXPECT_EQ(shownAt({60, 10}), QColor(230, 27, 85));
    button.setMainColor(QColor(10, 20, 30));
    EXPECT_EQ(shownAt({60, 10}), QColor(10, 20, 30));
}

TEST_F(PolukrugButtonTest, ARippleRunsRoundItWithoutEnd) {
    const QImage first = button.grab().toImage();
    world.advance(1);
    const QImage half = button.grab().toImage();
    EXPECT_NE(half, first);
    world.advance(601);  // three hundred ripples on, half a one further
    world.advance(motion::kPulse - 1);
    EXPECT_GT(world.time.scheduled(), 0);
}

TEST(GradientButton, ShowsItsActiveColoursAtRestAndItsPressedOnesWhileHeld) {
    VirtualWorld world;
    TestWindow window;
    GradientButton button(world.context());
    window.hold(button, {80, 32});
    button.setActiveGradient({});
    button.setPressedGradient({});
    button.setActiveColor(QColor(10, 90, 10));
    button.setPressedColor(QColor(90, 10, 10));
    button.setBorderColor(QColor(1, 2, 3));
    const auto shownAt = [&](int x, int y) { return button.grab().toImage().pixelColor(x, y); };
    EXPECT_EQ(shownAt(40, 16), QColor(10, 90, 10));
    EXPECT_EQ(shownAt(40, 0), QColor(1, 2, 3));
    window.press(button, {40, 16});
    EXPECT_EQ(shownAt(40, 16), QColor(90, 10, 10));
    window.release(button, {40, 16});
    window.moveOut();
    EXPECT_EQ(shownAt(40, 16), QColor(10, 90, 10));
    button.setActiveGradient({Qt::black, Qt::white});
    EXPECT_GT(shownAt(40, 3).red(), shownAt(40, 28).red() + 150);
}

TEST(AnimatedGradientButton, MovesWhileStartedAndRestsAsDrawnOnceStopped) {
    VirtualWorld world;
    TestWindow window;
    AnimatedGradientButton button(world.context());
    button.setText("Try it");
    window.hold(button, button.sizeHint());
    const QImage rest = button.grab().toImage();
    button.startAnimation();
    EXPECT_TRUE(button.isAnimating());
    EXPECT_EQ(button.grab().toImage(), rest);
    world.advance(motion::kBreath / 2);
    EXPECT_DOUBLE_EQ(button.displayedScale(), motion::kBreathScale);
    EXPECT_NE(button.grab().toImage(), rest);
    world.advance(motion::kBreath * 100);
    EXPECT_NEAR(button.displayedScale(), motion::kBreathScale, 1e-9);
    button.stopAnimation();
    EXPECT_EQ(button.grab().toImage(), rest);
    world.settle();
    world.advance(1);
    EXPECT_EQ(world.time.scheduled(), 0);
}

}  // namespace
}  // namespace trimora::controls
