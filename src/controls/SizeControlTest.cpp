#include "controls/SizeControl.h"

#include <gtest/gtest.h>

#include <QLineEdit>
#include <QSlider>
#include <QSpinBox>
#include <QTest>
#include <vector>

namespace trimora::controls {
namespace {

class SizeControlTest : public ::testing::Test {
 protected:
    SizeControlTest() {
        control_.onChange([this](int value) { reported_.push_back(value); });
        control_.show();
    }

    SizeControl control_{"Brush size", 10, 200};
    QSlider* slider_ = control_.findChild<QSlider*>();
    QSpinBox* number_ = control_.findChild<QSpinBox*>();
    std::vector<int> reported_;
};

TEST_F(SizeControlTest, TheNumberFollowsTheSliderAndOneChangeIsReported) {
    slider_->setValue(70);
    EXPECT_EQ(number_->value(), 70);
    EXPECT_EQ(reported_, std::vector<int>{70});
}

TEST_F(SizeControlTest, ATypedNumberCountsWhenItIsCommitted) {
    number_->selectAll();
    QTest::keyClicks(number_, "120");
    EXPECT_TRUE(reported_.empty());
    QTest::keyClick(number_, Qt::Key_Return);
    EXPECT_EQ(slider_->value(), 120);
    EXPECT_EQ(reported_, std::vector<int>{120});
    EXPECT_FALSE(number_->hasFocus());
}

TEST_F(SizeControlTest, AShownValueIsClampedAndReportsNothing) {
    control_.showValue(500);
    EXPECT_EQ(control_.value(), 200);
    EXPECT_EQ(number_->value(), 200);
    EXPECT_TRUE(reported_.empty());
}

}  // namespace
}  // namespace trimora::controls
