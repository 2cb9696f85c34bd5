#include "batch/CutPlan.h"

#include <gtest/gtest.h>

namespace trimora::batch {
namespace {

using foundation::Result;

Result<std::vector<CutTask>> plan(std::vector<std::string> inputs, bool writeMask = false) {
    CutOrder order;
    order.inputs = std::move(inputs);
    order.outFolder = "out";
    order.writeMask = writeMask;
    return planOf(order);
}

TEST(CutPlan, ResultsBearTheNamesOfTheirPictures) {
    const auto tasks = plan({"a.jpg", "in/holiday.2024.TIF", "-", "noending"});
    ASSERT_TRUE(tasks);
    EXPECT_EQ(*tasks, (std::vector<CutTask>{{"a.jpg", "out/a.png", ""},
                                            {"in/holiday.2024.TIF", "out/holiday.2024.png", ""},
                                            {"-", "out/stdin.png", ""},
                                            {"noending", "out/noending.png", ""}}));
}

TEST(CutPlan, MasksStandBesideTheirResults) {
    EXPECT_EQ(plan({"in/a.jpg"}, true)->front().mask, "out/a.mask.png");
    CutOrder order;
    order.inputs = {"a.jpg"};
    order.output = "there/b";
    order.writeMask = true;
    EXPECT_EQ(*planOf(order), (std::vector<CutTask>{{"a.jpg", "there/b", "there/b.mask.png"}}));
}

TEST(CutPlan, TwoPicturesForOneFileAreToldByTheirNames) {
    EXPECT_EQ(plan({"a.jpg", "b.jpg", "other/a.png"}).error().message,
              "a.jpg and other/a.png would both be written to out/a.png");
    EXPECT_EQ(plan({"a.jpg", "a.jpg"}).error().message, "a.jpg and a.jpg would both be written to out/a.png");
}

TEST(CutPlan, MaskAndResultOfTwoPicturesMayNotMeetEither) {
    EXPECT_TRUE(plan({"a.jpg", "a.mask.jpg"}));
    EXPECT_EQ(plan({"a.jpg", "a.mask.jpg"}, true).error().message,
              "a.jpg and a.mask.jpg would both be written to out/a.mask.png");
}

}  // namespace
}  // namespace trimora::batch
