#include "controls/LayerAnimation.h"

#include <gtest/gtest.h>

namespace trimora::controls {
namespace {

constexpr TimingCurve kSpring{{0.85, 2.5}, {0.3, -0.6}};

PropertyAnimation opacityFade(double begin, double duration) {
    return {.keyPath = KeyPath::opacity,
            .from = 1.0,
            .to = 0.0,
            .timing = {.beginTime = begin, .duration = duration},
            .curve = TimingCurve::linear()};
}

double opacityAt(const PropertyAnimation& animation, double time) {
    LayerPresentation shown;
    shown.opacity = 0.75;  // the layer's own
    animation.apply(time, shown);
    return shown.opacity;
}

TEST(TimingCurve, RunsFromNoneToAll) {
    for (const TimingCurve& curve :
         {TimingCurve::linear(), TimingCurve::standard(), TimingCurve::easeOut(), kSpring}) {
        EXPECT_EQ(curve.at(-1), 0);
        EXPECT_EQ(curve.at(0), 0);
        EXPECT_EQ(curve.at(1), 1);
        EXPECT_EQ(curve.at(2), 1);
    }
}

TEST(TimingCurve, ALinearOneGoesAsTimeGoes) {
    for (double t = 0; t <= 1; t += 0.125)
        EXPECT_NEAR(TimingCurve::linear().at(t), t, 1e-12);
}

TEST(TimingCurve, AnEvenEaseIsHalfWayAtHalfTime) {
    EXPECT_NEAR(TimingCurve::easeInEaseOut().at(0.5), 0.5, 1e-12);
    EXPECT_GT(TimingCurve::easeOut().at(0.5), 0.6);
}

TEST(TimingCurve, ASpringGoesPastItsEndAndComesBackBeforeItSettles) {
    // The curve's point at parameter 0.3 and at 0.7, by the definition of a cubic.
    EXPECT_NEAR(kSpring.at(0.4587), 1.0161, 1e-4);
    EXPECT_NEAR(kSpring.at(0.63595), 0.5509, 1e-4);
}

TEST(LayerAnimation, ShowsNothingBeforeItsBeginAndAfterItsEnd) {
    const PropertyAnimation fade = opacityFade(1, 2);
    EXPECT_EQ(opacityAt(fade, 0.999), 0.75);
    EXPECT_EQ(opacityAt(fade, 1), 1);
    EXPECT_DOUBLE_EQ(opacityAt(fade, 2), 0.5);
    EXPECT_EQ(opacityAt(fade, 3), 0.75);
}

TEST(LayerAnimation, FillingForwardsKeepsTheLastValue) {
    PropertyAnimation fade = opacityFade(1, 2);
    fade.timing.fillForwards = true;
    EXPECT_EQ(opacityAt(fade, 0.5), 0.75);
    EXPECT_EQ(opacityAt(fade, 3), 0);
    EXPECT_EQ(opacityAt(fade, 300), 0);
}

TEST(LayerAnimation, AnEndlessOneBeginsAnewEveryCycle) {
    PropertyAnimation fade = opacityFade(0, 2);
    fade.timing.repeatCount = kForever;
    EXPECT_DOUBLE_EQ(opacityAt(fade, 2.5), 0.75);
    EXPECT_DOUBLE_EQ(opacityAt(fade, 2001), 0.5);
    EXPECT_TRUE(fade.timing.runsAfter(1e9));
}

TEST(LayerAnimation, OneWithoutDurationIsAtItsEndAtOnce) {
    PropertyAnimation grow{.from = 1.0, .to = 1.5, .timing = {.duration = -0.2, .fillForwards = true}};
    LayerPresentation shown;
    grow.apply(0, shown);
    EXPECT_EQ(shown.scale, 1.5);
    EXPECT_FALSE(grow.timing.runsAfter(0));
}

TEST(LayerAnimation, ASpringOvershootsItsValue) {
    const PropertyAnimation grow{.from = 1.0, .to = 2.0, .timing = {.duration = 1}, .curve = kSpring};
    LayerPresentation shown;
    grow.apply(0.4587, shown);
    EXPECT_GT(shown.scale, 2.0);
}

TEST(LayerAnimation, ColoursMixComponentByComponentAndNeverLeaveTheirRange) {
    const std::vector<QColor> black{Qt::black, Qt::black};
    const std::vector<QColor> bright{QColor(255, 128, 0), Qt::white};
    const PropertyAnimation sweep{.keyPath = KeyPath::colors,
                                  .from = black,
                                  .to = bright,
                                  .timing = {.duration = 1},
                                  .curve = TimingCurve::linear()};
    LayerPresentation shown;
    sweep.apply(0.5, shown);
    ASSERT_EQ(shown.colors.size(), 2U);
    EXPECT_NEAR(shown.colors[0].redF(), 0.5, 1e-4);
    EXPECT_NEAR(shown.colors[0].greenF(), 0.25, 2e-3);
    EXPECT_EQ(shown.colors[0].blue(), 0);
    PropertyAnimation springy = sweep;
    springy.curve = kSpring;
    springy.apply(0.4587, shown);
    EXPECT_EQ(shown.colors[1], QColor(Qt::white));
}

/// A drop and a bounce, as of a ball: up slowly, down fast, then rest until the cycle begins again.
AnimationGroup bounce() {
    const auto step = [](double from, double to, double begin, double duration) {
        return PropertyAnimation{.keyPath = KeyPath::transformTranslationY,
                                 .from = from,
                                 .to = to,
                                 .timing = {.beginTime = begin, .duration = duration},
                                 .curve = TimingCurve::linear()};
    };
    return {.members = {step(0, 14, 0, 1.2), step(14, 0, 1.2, 0.15)},
            .timing = {.duration = 2, .repeatCount = kForever}};
}

TEST(LayerAnimation, AGroupRunsItsMembersOneAfterAnotherAndRestsUntilItRepeats) {
    const AnimationGroup group = bounce();
    const auto heightAt = [&](double time) {
        LayerPresentation shown;
        group.apply(time, shown);
        return shown.translationY;
    };
    EXPECT_NEAR(heightAt(0.6), 7, 1e-9);
    EXPECT_NEAR(heightAt(1.275), 7, 1e-9);
    EXPECT_EQ(heightAt(1.7), 0);
    EXPECT_NEAR(heightAt(2.6), 7, 1e-9);
    EXPECT_NEAR(heightAt(41.275), 7, 1e-9);
}

TEST(LayerAnimation, AGroupEndsItsMembersWhenItEnds) {
    AnimationGroup group = bounce();
    group.timing = {.duration = 1, .repeatCount = 1};
    LayerPresentation shown;
    group.apply(1.1, shown);
    EXPECT_EQ(shown.translationY, 0);
}

}  // namespace
}  // namespace trimora::controls
