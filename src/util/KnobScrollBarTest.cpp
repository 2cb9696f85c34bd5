#include "util/KnobScrollBar.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QStyle>
#include <QStyleFactory>
#include <memory>

namespace trimora::util {
namespace {

class KnobScrollBarTest : public ::testing::TestWithParam<Qt::Orientation> {
 protected:
    KnobScrollBarTest() {
        bar_.setStyle(style_.get());
        bar_.setRange(0, 100);
        bar_.setPageStep(50);
        bar_.resize(lies() ? QSize(200, 16) : QSize(16, 200));
    }
    [[nodiscard]] static bool lies() { return GetParam() == Qt::Horizontal; }

    /// How strongly something is drawn at a place along the bar, in its middle or so far from its side.
    int strengthAt(int along, int across = 8) {
        QImage drawn(bar_.size(), QImage::Format_ARGB32_Premultiplied);
        drawn.fill(Qt::transparent);
        bar_.render(&drawn, {}, {}, QWidget::DrawChildren);
        return qAlpha(lies() ? drawn.pixel(along, across) : drawn.pixel(across, along));
    }

    std::unique_ptr<QStyle> style_{QStyleFactory::create("fusion")};
    KnobScrollBar bar_{GetParam()};
};

TEST_P(KnobScrollBarTest, DrawsItsKnobAndNothingElse) {
    EXPECT_GT(strengthAt(50), 0);   // the knob, at the low end
    EXPECT_EQ(strengthAt(195), 0);  // where the arrow would be
    EXPECT_EQ(strengthAt(160), 0);  // where the track would be
    EXPECT_EQ(strengthAt(50, 1), 0);
    EXPECT_EQ(strengthAt(50, 14), 0);
}

TEST_P(KnobScrollBarTest, TheKnobFollowsTheValue) {
    bar_.setValue(100);
    EXPECT_EQ(strengthAt(50), 0);
    EXPECT_GT(strengthAt(150), 0);
}

TEST_P(KnobScrollBarTest, IsStrongerWhileHeldAndFaintWhileItCannotBeUsed) {
    const int atRest = strengthAt(50);
    bar_.setSliderDown(true);
    EXPECT_GT(strengthAt(50), atRest);
    bar_.setSliderDown(false);
    EXPECT_EQ(strengthAt(50), atRest);
    bar_.setEnabled(false);
    EXPECT_LT(strengthAt(50), atRest);
}

INSTANTIATE_TEST_SUITE_P(Ways, KnobScrollBarTest, ::testing::Values(Qt::Horizontal, Qt::Vertical));

}  // namespace
}  // namespace trimora::util
