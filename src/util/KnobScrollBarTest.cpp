#include "util/KnobScrollBar.h"

#include <gtest/gtest.h>

#include <QImage>
#include <QStyle>
#include <QStyleFactory>
#include <memory>

namespace trimora::util {
namespace {

TEST(KnobScrollBar, DrawsItsKnobAndNothingElse) {
    const std::unique_ptr<QStyle> style(QStyleFactory::create("fusion"));
    KnobScrollBar bar(Qt::Horizontal);
    bar.setStyle(style.get());
    bar.setRange(0, 100);
    bar.setPageStep(50);
    bar.resize(200, 16);
    QImage drawn(bar.size(), QImage::Format_ARGB32_Premultiplied);
    drawn.fill(Qt::transparent);
    bar.render(&drawn, {}, {}, QWidget::DrawChildren);
    EXPECT_GT(qAlpha(drawn.pixel(50, 8)), 0);   // the knob, at the low end
    EXPECT_EQ(qAlpha(drawn.pixel(195, 8)), 0);  // where the arrow would be
    EXPECT_EQ(qAlpha(drawn.pixel(160, 8)), 0);  // where the track would be
}

}  // namespace
}  // namespace trimora::util
