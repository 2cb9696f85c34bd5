#include "util/TextField.h"

#include <gtest/gtest.h>

#include <QTest>
#include <vector>

#include "util/ValueControl.h"

namespace trimora::util {
namespace {

/// Keeps the values that the control had when its action came.
class Listener final : public RuntimeObject {
 public:
    Listener() : RuntimeObject(makeClass()) {}
    static RuntimeClassPtr makeClass() {
        RuntimeClassPtr record = RuntimeClass::create("Listener");
        record->on("change:", &Listener::change);
        return record;
    }
    void change(const std::any& sender) {
        values.push_back(std::any_cast<ValueControl*>(sender)->floatValue());
    }
    std::vector<float> values;
};

class TextFieldTest : public ::testing::Test {
 protected:
    TextFieldTest() {
        control_.setMaxValue(10);
        control_.setTarget(&listener_);
        control_.setAction("change:");
        field_.boundWithControl(&control_);
        window_.show();
        EXPECT_TRUE(QTest::qWaitForWindowActive(&window_));
        field_.setFocus();
    }
    void type(const char* text) {
        field_.selectAll();
        QTest::keyClicks(&field_, text);
    }

    Listener listener_;
    QWidget window_;
    TextField field_{&window_};
    ValueControl control_{&window_};
};

TEST_F(TextFieldTest, BindingLinksFieldAndControlBothWays) {
    EXPECT_EQ(field_.control(), &control_);
    EXPECT_EQ(control_.boundedField(), &field_);
}

TEST_F(TextFieldTest, AValueSetOnTheControlIsCopiedIntoTheField) {
    control_.setFloatValue(2.345F);
    EXPECT_EQ(field_.text(), "2.35");
    EXPECT_TRUE(listener_.values.empty());
}

TEST_F(TextFieldTest, NumbersHaveTwoDigitsAtMostAndModeDecimalWholePercent) {
    field_.setFloatValue(0.5F);
    EXPECT_EQ(field_.text(), "0.5");
    field_.setFloatValue(0);
    EXPECT_EQ(field_.text(), "0");
    field_.setShowMode("decimal");
    EXPECT_EQ(field_.showMode(), "decimal");
    field_.setFloatValue(12.5F);
    EXPECT_EQ(field_.text(), "12%");
    EXPECT_EQ(field_.floatValue(), 12.0F);
}

TEST_F(TextFieldTest, ANumberMayBeShownInAnyFormat) {
    field_.setFloat(1.75F, "%.1f px");
    EXPECT_EQ(field_.text(), "1.8 px");
}

TEST_F(TextFieldTest, TypingRewritesTheNumberAndSetsNothing) {
    type("007");
    EXPECT_EQ(field_.text(), "7");
    EXPECT_EQ(control_.floatValue(), 0.0F);
    EXPECT_TRUE(listener_.values.empty());
}

TEST_F(TextFieldTest, ANumberThatEndsInASeparatorIsLeftAlone) {
    type("7,");
    EXPECT_EQ(field_.text(), "7,");
    QTest::keyClicks(&field_, "5");
    EXPECT_EQ(field_.text(), "7.5");
}

TEST_F(TextFieldTest, ReturnSetsTheValueSendsTheActionAndShowsTheClampedValue) {
    type("25");
    QTest::keyClick(&field_, Qt::Key_Return);
    EXPECT_EQ(control_.floatValue(), 10.0F);
    EXPECT_EQ(listener_.values, std::vector<float>{10});
    EXPECT_EQ(field_.text(), "10");
    EXPECT_TRUE(field_.hasFocus());
    EXPECT_EQ(field_.selectedText(), "10");
}

TEST_F(TextFieldTest, ATextThatEndsInASeparatorIsNotCommitted) {
    type("5.");
    QTest::keyClick(&field_, Qt::Key_Return);
    EXPECT_EQ(field_.text(), "5.");
    EXPECT_TRUE(listener_.values.empty());
}

TEST_F(TextFieldTest, AnEmptyTextLeavesTheValueAndShowsItAgain) {
    control_.setFloatValue(4);
    type("5");
    QTest::keyClick(&field_, Qt::Key_Backspace);
    EXPECT_EQ(field_.text(), "");
    QTest::keyClick(&field_, Qt::Key_Return);
    EXPECT_EQ(field_.text(), "4");
    EXPECT_TRUE(listener_.values.empty());
}

TEST_F(TextFieldTest, WithoutAControlTheTextStaysAsItIs) {
    TextField alone;
    QTest::keyClicks(&alone, "007,");
    QTest::keyClick(&alone, Qt::Key_Return);
    EXPECT_EQ(alone.text(), "007,");
}

TEST_F(TextFieldTest, LosingTheKeyboardCommitsAnEditAndNothingElse) {
    control_.setFocusPolicy(Qt::StrongFocus);
    control_.setFloatValue(4.567F);
    control_.setFocus();
    EXPECT_TRUE(listener_.values.empty());
    EXPECT_EQ(control_.floatValue(), 4.567F);

    field_.setFocus();
    type("6");
    control_.setFocus();
    EXPECT_EQ(listener_.values, std::vector<float>{6});
}

TEST_F(TextFieldTest, EscapeShowsTheValueAgain) {
    control_.setFloatValue(4);
    type("6");
    QTest::keyClick(&field_, Qt::Key_Escape);
    EXPECT_EQ(field_.text(), "4");
    EXPECT_TRUE(listener_.values.empty());
}

TEST_F(TextFieldTest, TheCaretKeepsItsPlaceInTheNumber) {
    field_.setText("105");
    field_.setCursorPosition(1);
    QTest::keyClicks(&field_, "2");
    EXPECT_EQ(field_.text(), "1205");
    EXPECT_EQ(field_.cursorPosition(), 2);
}

TEST_F(TextFieldTest, AFieldOutlivesItsControl) {
    TextField field;
    {
        ValueControl control;
        field.setControl(&control);
    }
    EXPECT_EQ(field.control(), nullptr);
    QTest::keyClicks(&field, "5");
    QTest::keyClick(&field, Qt::Key_Return);
    EXPECT_EQ(field.text(), "5");
}

TEST(TrimmedOfPercent, TakesTheSignFromBothEndsAlone) {
    EXPECT_EQ(trimmedOfPercent("%5%5%%"), "5%5");
    EXPECT_EQ(trimmedOfPercent("%%"), "");
    EXPECT_EQ(trimmedOfPercent(""), "");
}

TEST(ValueControl, TheRangeClampsAndTheMinimumWins) {
    ValueControl control;
    control.setMaxValue(100);
    control.setMinValue(1);
    EXPECT_EQ(control.floatValue(), 1.0F);
    control.setFloatValue(250);
    EXPECT_EQ(control.floatValue(), 100.0F);
    control.setMinValue(200);
    EXPECT_EQ(control.floatValue(), 200.0F);
    EXPECT_EQ(control.fraction(), 0.0);
}

TEST(ValueControl, TheFractionRunsFromZeroToOne) {
    ValueControl control;
    control.setMaxValue(100);
    control.setMinValue(20);
    EXPECT_EQ(control.fraction(), 0.0);
    control.setFloatValue(40);
    EXPECT_DOUBLE_EQ(control.fraction(), 0.25);
    control.setFloatValue(100);
    EXPECT_EQ(control.fraction(), 1.0);
}

}  // namespace
}  // namespace trimora::util
