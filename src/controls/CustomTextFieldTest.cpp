#include "controls/CustomTextField.h"

#include <gtest/gtest.h>

#include <QClipboard>
#include <QGuiApplication>
#include <QTest>
#include <optional>

#include "testing/CapturedLog.h"
#include "util/ValueControl.h"

namespace trimora::controls {
namespace {

class CustomTextFieldTest : public ::testing::Test {
 protected:
    CustomTextFieldTest() {
        field_.setShowMode("decimal");
        field_.setMin(1);
        field_.setMax(100);
        field_.setValueDidChange([this](std::int64_t value) { committed_ = value; });
        field_.show();
        field_.selectAll();
    }
    void type(const char* keys) {
        field_.selectAll();
        QTest::keyClicks(&field_, keys);
    }
    /// Puts the whole text in at once, as pasting does.
    void paste(const char* text) {
        QGuiApplication::clipboard()->setText(text);
        field_.selectAll();
        QTest::keyClick(&field_, Qt::Key_V, Qt::ControlModifier);
    }
    void commit() { QTest::keyClick(&field_, Qt::Key_Return); }

    CustomTextField field_;
    std::optional<std::int64_t> committed_;
};

TEST_F(CustomTextFieldTest, EveryKeystrokeIsShownAsAWholePercentage) {
    type("4");
    EXPECT_EQ(field_.text(), "4%");
    QTest::keyClicks(&field_, "5");
    EXPECT_EQ(field_.text(), "45%");
    EXPECT_FALSE(committed_);
}

TEST_F(CustomTextFieldTest, NothingIsClampedWhileTyping) {
    type("250");
    EXPECT_EQ(field_.text(), "250%");
    EXPECT_FALSE(committed_);
}

TEST_F(CustomTextFieldTest, ANumberAboveTheRangeIsCommittedAsTheMaximum) {
    type("250");
    commit();
    EXPECT_EQ(field_.text(), "100%");
    EXPECT_EQ(committed_, 100);
}

TEST_F(CustomTextFieldTest, ZeroIsCommittedAsTheMinimum) {
    type("0");
    commit();
    EXPECT_EQ(field_.text(), "1%");
    EXPECT_EQ(committed_, 1);
}

TEST_F(CustomTextFieldTest, TheMinimumWinsWhereItExceedsTheMaximum) {
    field_.setMin(50);
    field_.setMax(20);
    type("30");
    commit();
    EXPECT_EQ(field_.text(), "50%");
    EXPECT_EQ(committed_, 50);
}

TEST_F(CustomTextFieldTest, AFractionWithACommaIsRewrittenAsAWholeNumberWhichIsCommitted) {
    paste("12,7");
    EXPECT_EQ(field_.text(), "13%");
    commit();
    EXPECT_EQ(committed_, 13);
    EXPECT_EQ(field_.text(), "13%");
}

TEST_F(CustomTextFieldTest, TheSameTypedKeyByKeyIsReadTheSame) {
    type("12,");
    EXPECT_EQ(field_.text(), "12,");
    QTest::keyClicks(&field_, "7");
    EXPECT_EQ(field_.text(), "13%");
}

TEST_F(CustomTextFieldTest, ATextThatEndsInASeparatorIsNeitherRewrittenNorCommitted) {
    for (const char* text : {"12,", "12."}) {
        type(text);
        commit();
        EXPECT_EQ(field_.text(), text);
    }
    EXPECT_FALSE(committed_);
}

TEST_F(CustomTextFieldTest, ACommittedFractionIsToldCutAndShownRounded) {
    field_.setText("45.9");
    field_.textDidEndEditing();
    EXPECT_EQ(committed_, 45);
    EXPECT_EQ(field_.text(), "46%");
}

TEST_F(CustomTextFieldTest, AHalfFromElsewhereIsShownAsTheEvenNumber) {
    field_.setFloatValue(12.5F);
    EXPECT_EQ(field_.text(), "12%");
    field_.setFloatValue(13.5F);
    EXPECT_EQ(field_.text(), "14%");
}

TEST_F(CustomTextFieldTest, AFifthCharacterIsRefused) {
    type("100");
    EXPECT_EQ(field_.text(), "100%");
    QTest::keyClicks(&field_, "5");
    EXPECT_EQ(field_.text(), "100%");
    paste("12345");
    EXPECT_EQ(field_.text(), "100%");
}

TEST_F(CustomTextFieldTest, WhatIsNoNumberIsZeroAndCommittedAsTheMinimum) {
    type("a");
    EXPECT_EQ(field_.text(), "0%");
    commit();
    EXPECT_EQ(committed_, 1);
}

TEST_F(CustomTextFieldTest, AnEmptyFieldLeavesTheValueUnchanged) {
    util::ValueControl control;
    control.setMaxValue(100);
    field_.boundWithControl(&control);
    control.setFloatValue(45);
    field_.selectAll();
    QTest::keyClick(&field_, Qt::Key_Backspace);
    EXPECT_EQ(field_.text(), "");
    commit();
    EXPECT_FALSE(committed_);
    EXPECT_EQ(field_.text(), "45%");
}

TEST_F(CustomTextFieldTest, TakingTheLastDigitAwayEmptiesIt) {
    type("7");
    QTest::keyClick(&field_, Qt::Key_Backspace);
    EXPECT_EQ(field_.text(), "");
    QTest::keyClicks(&field_, "8");
    EXPECT_EQ(field_.text(), "8%");
}

TEST_F(CustomTextFieldTest, ANumberOfAnySizeCanBeCommitted) {
    type("9E9");
    QTest::keyClicks(&field_, "9");
    commit();
    EXPECT_EQ(committed_, 100);
    EXPECT_EQ(field_.text(), "100%");
}

TEST_F(CustomTextFieldTest, ItsLengthIsLogged) {
    const testing::CapturedLog log;
    type("45");
    EXPECT_TRUE(log.contains("decimal"));
    EXPECT_TRUE(log.contains("length 3"));
}

TEST(CustomTextFieldFormatter, SmallLettersBecomeCapitals) {
    const CustomTextFieldFormatter formatter;
    QString text = "ab1";
    int position = 3;
    EXPECT_EQ(formatter.validate(text, position), QValidator::Acceptable);
    EXPECT_EQ(text, "AB1");
}

TEST(CustomTextFieldFormatter, ALongerTextIsRefusedAndLeftAsItIs) {
    CustomTextFieldFormatter formatter;
    EXPECT_EQ(formatter.maximumLength(), 2147483647);
    formatter.setMaximumLength(4);
    QString text = "abcd";
    int position = 4;
    EXPECT_EQ(formatter.validate(text, position), QValidator::Acceptable);
    text = "abcde";
    EXPECT_EQ(formatter.validate(text, position), QValidator::Invalid);
    EXPECT_EQ(text, "abcde");
}

}  // namespace
}  // namespace trimora::controls
