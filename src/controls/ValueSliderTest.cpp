#include "controls/ValueSlider.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>
#include <QWheelEvent>
#include <vector>

#include "controls/CustomSlider.h"
#include "controls/Palette.h"
#include "controls/SliderVertical.h"
#include "testing/CapturedLog.h"

namespace trimora::controls {
namespace {

using ::testing::DoubleNear;
using ::testing::ElementsAre;

/// Remembers what a slider sends.
class Target final : public util::RuntimeObject {
 public:
    Target() : RuntimeObject(makeClass()) {}
    static util::RuntimeClassPtr makeClass() {
        util::RuntimeClassPtr record = util::RuntimeClass::create("Target");
        record->on("change:", &Target::change).on("hideViewWithSizeCursor", &Target::hide);
        return record;
    }
    void change(const std::any& sender) {
        values.push_back(std::any_cast<util::ValueControl*>(sender)->doubleValue());
    }
    void hide() { ++hides; }

    std::vector<double> values;
    int hides = 0;
};

/// A slider from 0 to 100 whose knob is 17 points wide: its centre goes from
/// 12.75 to 212.25, 1.995 points a unit.
template <typename Slider>
class SliderInAWindow {
 public:
    SliderInAWindow() {
        const QSize lying(225, 25);
        const bool upright = slider.sizeHint().height() > slider.sizeHint().width();
        slider.setGeometry(QRect(QPoint(20, 20), upright ? lying.transposed() : lying));
        slider.setMaxValue(100);
        slider.setTarget(&target);
        slider.setAction("change:");
        window.resize(300, 300);
        window.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window));
    }
    void press(QPoint place) { QTest::mousePress(window.windowHandle(), Qt::LeftButton, {}, map(place)); }
    void move(QPoint place) { QTest::mouseMove(window.windowHandle(), map(place)); }
    void release(QPoint place) { QTest::mouseRelease(window.windowHandle(), Qt::LeftButton, {}, map(place)); }
    void turnWheel(QPoint delta) {
        const QPointF at(100, 12);
        QWheelEvent event(at, slider.mapToGlobal(at), {}, delta, Qt::NoButton, {}, Qt::NoScrollPhase, false);
        QCoreApplication::sendEvent(&slider, &event);
    }
    double afterKey(Qt::Key key) {
        QTest::keyClick(&slider, key);
        return slider.doubleValue();
    }
    [[nodiscard]] QPoint map(QPoint place) const { return slider.mapTo(&window, place); }

    Target target;
    QWidget window;
    Slider slider{&window};
};

class CustomSliderTest : public ::testing::Test, public SliderInAWindow<CustomSlider> {};
class SliderVerticalTest : public ::testing::Test, public SliderInAWindow<SliderVertical> {};

TEST_F(CustomSliderTest, APressBesideTheKnobBringsItThere) {
    press({113, 12});
    EXPECT_THAT(target.values, ElementsAre(DoubleNear((113 - 12.75) / 1.995, 1e-9)));
    EXPECT_TRUE(slider.isTracking());
    release({113, 12});
    EXPECT_FALSE(slider.isTracking());
}

TEST_F(CustomSliderTest, APressOnTheKnobTakesItWhereItIs) {
    slider.setFloatValue(50);
    press({117, 12});
    EXPECT_EQ(slider.doubleValue(), 50);
    move({137, 12});
    EXPECT_NEAR(slider.doubleValue(), 50 + 20 / 1.995, 1e-9);
    release({137, 12});
}

TEST_F(CustomSliderTest, TheActionIsSentWithEveryMoveOfADrag) {
    press({60, 12});
    move({61, 12});
    move({62, 12});
    release({62, 12});
    EXPECT_EQ(target.values.size(), 3U);  // the press and two moves
}

TEST_F(CustomSliderTest, ADragBeyondTheEndsStaysInTheRange) {
    press({60, 12});
    move({270, 200});
    EXPECT_EQ(slider.doubleValue(), 100);
    move({-15, 12});
    EXPECT_EQ(slider.doubleValue(), 0);
    release({-15, 12});
}

TEST_F(CustomSliderTest, TheTargetIsAskedToHideAtOnceWhenADragEnds) {
    const testing::CapturedLog log;
    press({60, 12});
    EXPECT_EQ(target.hides, 0);
    release({60, 12});
    EXPECT_EQ(target.hides, 1);
    EXPECT_TRUE(log.contains(" stop"));
}

TEST_F(CustomSliderTest, ADragEndsWhereTheSliderIsHiddenOrDisabled) {
    press({60, 12});
    slider.setEnabled(false);
    EXPECT_EQ(target.hides, 1);
    slider.setEnabled(true);
    press({60, 12});
    slider.hide();
    EXPECT_EQ(target.hides, 2);
}

TEST_F(CustomSliderTest, OtherButtonsMoveNothing) {
    QTest::mouseClick(window.windowHandle(), Qt::RightButton, {}, map({113, 12}));
    EXPECT_TRUE(target.values.empty());
    EXPECT_EQ(target.hides, 0);
}

TEST_F(CustomSliderTest, KeysStepAndTheActionIsSentWhenTheValueChanged) {
    slider.setFloatValue(50);
    EXPECT_EQ(afterKey(Qt::Key_Right), 51);
    EXPECT_EQ(afterKey(Qt::Key_Up), 52);
    EXPECT_EQ(afterKey(Qt::Key_Left), 51);
    EXPECT_EQ(afterKey(Qt::Key_Down), 50);
    EXPECT_EQ(afterKey(Qt::Key_PageUp), 60);
    EXPECT_EQ(afterKey(Qt::Key_PageDown), 50);
    EXPECT_EQ(afterKey(Qt::Key_End), 100);
    EXPECT_EQ(target.values.size(), 7U);
    EXPECT_EQ(afterKey(Qt::Key_Right), 100);
    EXPECT_EQ(target.values.size(), 7U);
    EXPECT_EQ(afterKey(Qt::Key_Home), 0);
    EXPECT_EQ(target.hides, 0);
}

TEST_F(CustomSliderTest, OtherKeysAreLeftToTheWindow) {
    QKeyEvent event(QEvent::KeyPress, Qt::Key_B, {});
    QCoreApplication::sendEvent(&slider, &event);
    EXPECT_FALSE(event.isAccepted());
}

TEST_F(CustomSliderTest, TheWheelStepsByItsLinesAndByPartsOfThem) {
    slider.setFloatValue(50);
    const double lines = QApplication::wheelScrollLines();
    turnWheel({0, 120});
    EXPECT_EQ(slider.doubleValue(), 50 + lines);
    turnWheel({0, -240});
    EXPECT_EQ(slider.doubleValue(), 50 - lines);
    turnWheel({0, 30});
    EXPECT_EQ(slider.doubleValue(), 50 - lines * 0.75);
    EXPECT_EQ(target.values.size(), 3U);
}

TEST_F(CustomSliderTest, InARightToLeftLayoutTheMinimumIsOnTheRight) {
    slider.setLayoutDirection(Qt::RightToLeft);
    press({112, 12});
    EXPECT_THAT(target.values, ElementsAre(DoubleNear((225 - 112 - 12.75) / 1.995, 1e-9)));
    release({112, 12});
    slider.setFloatValue(50);
    EXPECT_EQ(afterKey(Qt::Key_Left), 51);
    EXPECT_EQ(afterKey(Qt::Key_Right), 50);
    EXPECT_EQ(afterKey(Qt::Key_Home), 0);
}

TEST_F(CustomSliderTest, AScreenReaderFindsRoleNameValueRangeAndStep) {
    slider.setAccessibleName("Brush size");
    slider.setFloatValue(45);
    QAccessibleInterface* const seen = QAccessible::queryAccessibleInterface(&slider);
    ASSERT_NE(seen, nullptr);
    EXPECT_EQ(seen->role(), QAccessible::Slider);
    EXPECT_EQ(seen->text(QAccessible::Name), "Brush size");
    EXPECT_EQ(seen->text(QAccessible::Value), "45");
    ASSERT_NE(seen->valueInterface(), nullptr);
    EXPECT_EQ(seen->valueInterface()->currentValue(), 45.0);
    EXPECT_EQ(seen->valueInterface()->minimumValue(), 0.0);
    EXPECT_EQ(seen->valueInterface()->maximumValue(), 100.0);
    EXPECT_EQ(seen->valueInterface()->minimumStepSize(), 1.0);
    seen->valueInterface()->setCurrentValue(60);
    EXPECT_EQ(target.values, std::vector<double>{60});
}

TEST_F(CustomSliderTest, TabReachesItAndAPressLeavesTheKeyboardWhereItIs) {
    QWidget other(&window);
    other.setFocusPolicy(Qt::StrongFocus);
    other.show();
    other.setFocus();
    press({60, 12});
    release({60, 12});
    EXPECT_TRUE(other.hasFocus());
    QTest::keyClick(&window, Qt::Key_Tab);
    EXPECT_TRUE(slider.hasFocus());
}

TEST_F(CustomSliderTest, ItIsDrawnInTheAccentUpToTheKnobAndBlackBeyond) {
    slider.setFloatValue(50);
    const QImage drawn = slider.grab().toImage();
    EXPECT_EQ(drawn.pixelColor(180, 12), palette::kTrack);
    const QColor filled = drawn.pixelColor(60, 12);
    EXPECT_NEAR(filled.red(), 250, 2);
    EXPECT_NEAR(filled.green(), 45, 4);
    EXPECT_NE(drawn.pixelColor(60, 9), filled);
    EXPECT_EQ(drawn.pixelColor(112, 12), palette::kAccent);  // the dot in the knob's middle
}

TEST_F(CustomSliderTest, RightToLeftIsTheMirrorImage) {
    slider.setFloatValue(0);
    const QImage leftToRight = slider.grab().toImage();
    slider.setLayoutDirection(Qt::RightToLeft);
    const QImage rightToLeft = slider.grab().toImage();
    EXPECT_EQ(rightToLeft.pixelColor(225 - 13, 12), leftToRight.pixelColor(12, 12));
    EXPECT_EQ(rightToLeft.pixelColor(60, 12), palette::kTrack);
}

TEST_F(CustomSliderTest, TheKeyboardsPlaceAndBeingUnusableAreSeen) {
    slider.clearFocus();
    const QImage plain = slider.grab().toImage();
    slider.setFocus();
    EXPECT_NE(slider.grab().toImage(), plain);
    slider.clearFocus();
    EXPECT_EQ(slider.grab().toImage(), plain);
    slider.setEnabled(false);
    EXPECT_NE(slider.grab().toImage(), plain);
}

TEST_F(CustomSliderTest, KeptValuesAreKeptAndNotDrawn) {
    const QImage plain = slider.grab().toImage();
    QImage image(3, 3, QImage::Format_RGB32);
    image.fill(Qt::green);
    slider.setKnobImage(image);
    slider.setCurrentKnobRect({1, 2, 3, 4});
    slider.setCurValue(7);
    EXPECT_EQ(slider.knobImage(), image);
    EXPECT_EQ(slider.currentKnobRect(), QRectF(1, 2, 3, 4));
    EXPECT_EQ(slider.curValue(), 7.0F);
    EXPECT_EQ(slider.grab().toImage(), plain);
}

TEST_F(SliderVerticalTest, ItsMinimumIsAtTheBottom) {
    press({12, 225 - 113});
    EXPECT_THAT(target.values, ElementsAre(DoubleNear((113 - 12.75) / 1.995, 1e-9)));
    release({12, 225 - 113});
    EXPECT_EQ(target.hides, 0);
    slider.setFloatValue(50);
    EXPECT_EQ(afterKey(Qt::Key_Up), 51);
    EXPECT_EQ(afterKey(Qt::Key_Right), 52);
}

TEST_F(SliderVerticalTest, ItIsDrawnInFlatColoursFromTheBottom) {
    slider.setFloatValue(50);
    const QImage drawn = slider.grab().toImage();
    EXPECT_EQ(drawn.pixelColor(12, 180), palette::kAccent);
    EXPECT_EQ(drawn.pixelColor(12, 40), palette::kVerticalTrack);
}

}  // namespace
}  // namespace trimora::controls
