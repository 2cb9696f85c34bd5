#include "controls/ViewWithSliderTextField.h"

#include <gtest/gtest.h>

#include <QAccessible>
#include <QTest>
#include <vector>

#include "controls/CustomSlider.h"
#include "controls/CustomTextField.h"
#include "controls/IconView.h"
#include "foundation/ManualQueues.h"
#include "foundation/VirtualTime.h"
#include "testing/CapturedLog.h"

namespace trimora::controls {
namespace {

class Delegate final : public ViewWithSliderDelegate, public util::RuntimeObject {
 public:
    Delegate() : RuntimeObject(makeClass()) {}
    static util::RuntimeClassPtr makeClass() {
        util::RuntimeClassPtr record = util::RuntimeClass::create("Delegate");
        record->on("hideViewWithSizeCursor", &Delegate::hideViewWithSizeCursor);
        return record;
    }
    void CustomSliderDidChange_withValue(ViewWithSliderTextField& view, double value) override {
        tags.push_back(view.tagView());
        values.push_back(value);
    }
    void hideViewWithSizeCursor() { ++hides; }

    std::vector<std::int64_t> tags;
    std::vector<double> values;
    int hides = 0;
};

class ViewWithSliderTextFieldTest : public ::testing::Test {
 protected:
    ViewWithSliderTextFieldTest() {
        view_->setGeometry(10, 10, 280, 32);
        view_->setSliderDelegate(&delegate_);
        window_.resize(300, 60);
        window_.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
    }
    static ViewWithSliderTextField::Settings settings(std::int64_t tag) {
        QPixmap red(24, 24);
        red.fill(Qt::red);
        return {tag, 1, 100, 30, QIcon(red), "Brush size"};
    }
    void type(const char* keys) {
        field().setFocus();
        field().selectAll();
        QTest::keyClicks(&field(), keys);
    }
    void commit() { QTest::keyClick(&field(), Qt::Key_Return); }
    void advance(double seconds) {
        time_.advance(seconds, [this] { queues_.settle(); });
    }
    [[nodiscard]] CustomSlider& slider() const { return view_->sliderClass(); }
    [[nodiscard]] CustomTextField& field() const { return view_->textField(); }

    foundation::VirtualTime time_;
    foundation::ManualQueueFactory queues_;
    foundation::NotificationCenter notifications_;
    ControlContext context_{time_, time_, queues_.mainQueue(), notifications_};
    Delegate delegate_;
    QWidget window_;
    ViewWithSliderTextField* view_ = new ViewWithSliderTextField(settings(7), context_, &window_);
};

TEST_F(ViewWithSliderTextFieldTest, StartsWithItsRangeItsValueAndItsIcon) {
    EXPECT_EQ(slider().minValue(), 1);
    EXPECT_EQ(slider().maxValue(), 100);
    EXPECT_EQ(slider().floatValue(), 30.0F);
    EXPECT_EQ(field().text(), "30%");
    EXPECT_EQ(field().min(), 1);
    EXPECT_EQ(field().max(), 100);
    EXPECT_FALSE(view_->imageSlider().image().isNull());
    EXPECT_TRUE(delegate_.values.empty());
}

TEST_F(ViewWithSliderTextFieldTest, SettingTheSliderFromCodeWritesTheFieldAndReportsNothing) {
    slider().setFloatValue(12.5F);
    EXPECT_EQ(field().text(), "12%");
    EXPECT_TRUE(delegate_.values.empty());
}

TEST_F(ViewWithSliderTextFieldTest, DraggingTheSliderReportsItsValueAndWritesTheField) {
    QWindow* const window = window_.windowHandle();
    const QPoint middle = slider().mapTo(&window_, slider().rect().center());
    QTest::mousePress(window, Qt::LeftButton, {}, middle);
    QTest::mouseMove(window, middle + QPoint(20, 0));
    ASSERT_GE(delegate_.values.size(), 2U);
    EXPECT_EQ(delegate_.tags.back(), 7);
    EXPECT_EQ(delegate_.values.back(), static_cast<double>(slider().floatValue()));
    EXPECT_EQ(field().text(), QString("%1%").arg(std::lrint(slider().floatValue())));
    EXPECT_EQ(delegate_.hides, 0);

    QTest::mouseRelease(window, Qt::LeftButton, {}, middle + QPoint(20, 0));
    EXPECT_EQ(delegate_.hides, 1);  // at once, and not again later
    advance(5);
    EXPECT_EQ(delegate_.hides, 1);
}

TEST_F(ViewWithSliderTextFieldTest, ATypedNumberMovesTheSliderWhenItIsCommitted) {
    type("70");
    EXPECT_EQ(slider().floatValue(), 30.0F);
    commit();
    EXPECT_EQ(slider().floatValue(), 70.0F);
    EXPECT_EQ(delegate_.values, std::vector<double>{70});
    EXPECT_TRUE(slider().hasFocus());
}

TEST_F(ViewWithSliderTextFieldTest, ANumberStillBeingTypedKeepsTheKeyboardAndEscapeTakesItBack) {
    type("12,");
    commit();
    EXPECT_TRUE(field().hasFocus());
    EXPECT_EQ(field().text(), "12,");
    QTest::keyClick(&field(), Qt::Key_Escape);
    EXPECT_EQ(field().text(), "30%");
    EXPECT_TRUE(delegate_.values.empty());
}

TEST_F(ViewWithSliderTextFieldTest, ATypedNumberIsClampedToTheRange) {
    type("250");
    commit();
    EXPECT_EQ(field().text(), "100%");
    EXPECT_EQ(slider().floatValue(), 100.0F);
    type("0");
    commit();
    EXPECT_EQ(field().text(), "1%");
    EXPECT_EQ(delegate_.values, (std::vector<double>{100, 1}));
}

TEST_F(ViewWithSliderTextFieldTest, AfterATypedNumberThePreviewIsHidden1200MillisecondsLater) {
    type("70");
    commit();
    advance(1.19);
    EXPECT_EQ(delegate_.hides, 0);
    advance(0.02);
    EXPECT_EQ(delegate_.hides, 1);
}

TEST_F(ViewWithSliderTextFieldTest, QuickCommitsHaveAWaitEach) {
    for (const char* number : {"10", "20", "30"}) {
        type(number);
        commit();
        advance(0.5);
    }
    EXPECT_EQ(delegate_.hides, 1);
    advance(5);
    EXPECT_EQ(delegate_.hides, 3);
    EXPECT_EQ(time_.scheduled(), 0);
}

TEST_F(ViewWithSliderTextFieldTest, KeysReportAndThePreviewIsHiddenOnceTheyRest) {
    slider().setFocus();
    for (int press = 0; press < 3; ++press) {
        QTest::keyClick(&slider(), Qt::Key_Right);
        advance(1);
    }
    EXPECT_EQ(delegate_.values, (std::vector<double>{31, 32, 33}));
    EXPECT_EQ(field().text(), "33%");
    EXPECT_EQ(delegate_.hides, 0);
    advance(0.3);
    EXPECT_EQ(delegate_.hides, 1);
}

TEST_F(ViewWithSliderTextFieldTest, LeavingTheFieldUntouchedReportsNothing) {
    slider().setFloatValue(12.5F);
    field().setFocus();
    slider().setFocus();
    EXPECT_EQ(slider().floatValue(), 12.5F);
    EXPECT_TRUE(delegate_.values.empty());
}

TEST_F(ViewWithSliderTextFieldTest, AMovedSliderReplacesWhatWasBeingTyped) {
    type("70");
    slider().setFocus();  // commits
    type("8");
    slider().trackTo(40);
    EXPECT_EQ(field().text(), "40%");
    slider().endTracking();
    slider().setFocus();
    EXPECT_EQ(delegate_.values, (std::vector<double>{70, 40}));
}

TEST_F(ViewWithSliderTextFieldTest, ItTakesItsMessagesBySelector) {
    EXPECT_TRUE(view_->respondsToSelector("change:"));
    view_->performSelector("change:");
    EXPECT_EQ(delegate_.values, std::vector<double>{30});
    view_->performSelector("hideViewWithSizeCursor");
    EXPECT_EQ(delegate_.hides, 1);
}

TEST_F(ViewWithSliderTextFieldTest, WithoutADelegateNothingIsTold) {
    view_->setSliderDelegate(nullptr);
    type("70");
    commit();
    advance(2);
    EXPECT_TRUE(delegate_.values.empty());
    EXPECT_EQ(delegate_.hides, 0);
}

TEST_F(ViewWithSliderTextFieldTest, GoneBeforeItsTimeItHidesNothing) {
    type("70");
    commit();
    delete view_;
    advance(5);
    EXPECT_EQ(delegate_.hides, 0);
}

TEST_F(ViewWithSliderTextFieldTest, GoneInTheMiddleOfADragOrAnEditItTellsNobody) {
    type("70");
    slider().trackTo(40);
    delegate_.values.clear();
    delete view_;
    EXPECT_TRUE(delegate_.values.empty());
    EXPECT_EQ(delegate_.hides, 0);
}

TEST_F(ViewWithSliderTextFieldTest, TheSecondParameterLeavesItsMarkInTheLog) {
    const testing::CapturedLog log;
    ViewWithSliderTextField second(settings(2), context_);
    second.performSelector("change:");
    EXPECT_TRUE(log.contains("123234"));
}

TEST_F(ViewWithSliderTextFieldTest, SliderAndFieldHaveNamesAndTheSliderSpeaksPercent) {
    const auto name = [](QWidget& part) {
        return QAccessible::queryAccessibleInterface(&part)->text(QAccessible::Name);
    };
    EXPECT_EQ(name(slider()), "Brush size");
    EXPECT_EQ(name(field()), "Brush size in percent");
    EXPECT_EQ(QAccessible::queryAccessibleInterface(&slider())->text(QAccessible::Value), "30%");
}

TEST_F(ViewWithSliderTextFieldTest, TabGoesFromTheSliderToTheField) {
    view_->setFocus();
    EXPECT_TRUE(slider().hasFocus());
    QTest::keyClick(&window_, Qt::Key_Tab);
    EXPECT_TRUE(field().hasFocus());
}

TEST_F(ViewWithSliderTextFieldTest, InARightToLeftLayoutTheFieldIsOnTheLeft) {
    EXPECT_LT(slider().x(), field().x());
    view_->setLayoutDirection(Qt::RightToLeft);
    QCoreApplication::processEvents();
    EXPECT_GT(slider().x(), field().x());
}

}  // namespace
}  // namespace trimora::controls
