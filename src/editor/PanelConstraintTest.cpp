#include "editor/PanelConstraint.h"

#include <gtest/gtest.h>

#include "controls/ControlsForTests.h"

namespace trimora::editor {
namespace {

class PanelConstraintTest : public ::testing::Test {
 protected:
    controls::VirtualWorld world_;
    int changes_ = 0;
    PanelConstraint constraint_{-50, world_.context(), [this] { ++changes_; }};
};

TEST_F(PanelConstraintTest, ASetConstantCountsAtOnce) {
    constraint_.setConstant(0);
    EXPECT_EQ(constraint_.constant(), 0);
    EXPECT_EQ(changes_, 1);
    constraint_.setConstant(0);
    EXPECT_EQ(changes_, 1);
}

TEST_F(PanelConstraintTest, AnAnimatedOneGoesThereInItsTimeAlongItsCurve) {
    constraint_.animateTo(50, {0.2, controls::TimingCurve::linear()});
    EXPECT_EQ(constraint_.constant(), -50);
    EXPECT_EQ(constraint_.target(), 50);
    world_.advance(0.1);
    EXPECT_NEAR(constraint_.constant(), 0, 10);
    world_.advance(0.12);
    EXPECT_EQ(constraint_.constant(), 50);
    EXPECT_EQ(world_.time.scheduled(), 0);
}

TEST_F(PanelConstraintTest, ANewTargetIsReachedFromWhereItIs) {
    constraint_.animateTo(50, {0.2, controls::TimingCurve::linear()});
    world_.advance(0.1);
    const double halfway = constraint_.constant();
    constraint_.animateTo(-50, {0.2, controls::TimingCurve::easeOut()});
    EXPECT_EQ(constraint_.constant(), halfway);
    world_.advance(0.3);
    EXPECT_EQ(constraint_.constant(), -50);
}

TEST_F(PanelConstraintTest, SettingItEndsAnAnimation) {
    constraint_.animateTo(50, {0.2, controls::TimingCurve::linear()});
    world_.advance(0.1);
    constraint_.setConstant(7);
    world_.advance(1);
    EXPECT_EQ(constraint_.constant(), 7);
    EXPECT_EQ(constraint_.target(), 7);
}

TEST_F(PanelConstraintTest, WithoutADurationItIsThereAtOnce) {
    constraint_.animateTo(50, {0, controls::TimingCurve::linear()});
    EXPECT_EQ(constraint_.constant(), 50);
    EXPECT_EQ(world_.time.scheduled(), 0);
}

}  // namespace
}  // namespace trimora::editor
