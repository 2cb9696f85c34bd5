#include "util/TitleBar.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QTest>

namespace trimora::util {
namespace {

class TitleBarTest : public ::testing::Test {
 protected:
    TitleBarTest() {
        window_.setWindowTitle("Trimora");
        window_.resize(400, 300);
        bar_->resize(400, 52);
    }
    QWidget window_;
    QWidget* bar_ = new QWidget(&window_);
};

TEST_F(TitleBarTest, IsFilledWithItsColour) {
    setTitlebarColor(*bar_, QColor(14, 14, 14));
    EXPECT_EQ(bar_->grab().toImage().pixelColor(5, 5), QColor(14, 14, 14));
}

TEST_F(TitleBarTest, ShowsTheTitleOfItsWindowInTheColour) {
    setTitleColor(*bar_, Qt::red);
    const auto* const label = bar_->findChild<QLabel*>();
    ASSERT_NE(label, nullptr);
    EXPECT_EQ(label->text(), "Trimora");
    EXPECT_EQ(label->palette().color(QPalette::WindowText), QColor(Qt::red));
    EXPECT_EQ(label->alignment(), Qt::AlignCenter);
    window_.setWindowTitle("Other");
    EXPECT_EQ(label->text(), "Other");
}

TEST_F(TitleBarTest, ATitleTooLongForTheStripIsShortenedInItsMiddle) {
    setTitleColor(*bar_, Qt::red);
    window_.setWindowTitle("a " + QString(200, u'x') + " z");
    const auto* const label = bar_->findChild<QLabel*>();
    EXPECT_TRUE(label->text().startsWith("a "));
    EXPECT_TRUE(label->text().endsWith(" z"));
    EXPECT_LE(label->fontMetrics().horizontalAdvance(label->text()), 400);
}

TEST_F(TitleBarTest, ASecondTitleReplacesTheFirst) {
    setTitleColor(*bar_, Qt::red);
    setTitleColor(*bar_, Qt::white);
    EXPECT_EQ(bar_->findChildren<QLabel*>().size(), 1);
}

TEST_F(TitleBarTest, TheTitleKeepsToTheMiddleWhenTheBarGrows) {
    setTitleColor(*bar_, Qt::red);
    window_.show();
    bar_->resize(600, 60);
    EXPECT_EQ(bar_->findChild<QLabel*>()->geometry(), QRect(0, 0, 600, 60));
}

}  // namespace
}  // namespace trimora::util
