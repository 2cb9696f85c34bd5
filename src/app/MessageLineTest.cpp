#include "app/MessageLine.h"

#include <gtest/gtest.h>

#include <QLabel>
#include <QPushButton>

#include "app/ShellForTests.h"
#include "util/SpinningProgress.h"

namespace trimora::app {
namespace {

class MessageLineTest : public ShellTest {
 protected:
    void SetUp() override {
        ShellTest::SetUp();
        show();
    }
    MessageLine& line() { return shell_->messages(); }
    bool isWorking() { return line().findChild<util::SpinningProgress*>()->isVisible(); }
};

TEST_F(MessageLineTest, IsNotThereUntilThereIsSomethingToSay) {
    EXPECT_FALSE(line().isVisible());
    line().note("Opened cat.png");
    EXPECT_TRUE(line().isVisible());
    EXPECT_EQ(line().text(), "Opened cat.png");
}

TEST_F(MessageLineTest, ANoteGoesByItself) {
    line().note("Opened cat.png");
    update();
    const auto* const label = line().findChild<QLabel*>();
    EXPECT_GE(label->width(), label->sizeHint().width());
    advance(7);
    EXPECT_TRUE(line().isVisible());
    advance(2);
    EXPECT_FALSE(line().isVisible());
    EXPECT_EQ(line().text(), "");
}

TEST_F(MessageLineTest, ProgressStaysUntilTheNextLineAndTurnsAWheel) {
    line().progress("Opening cat.png");
    EXPECT_TRUE(isWorking());
    advance(100);
    EXPECT_EQ(line().text(), "Opening cat.png");
    line().note("Opened cat.png");
    EXPECT_FALSE(isWorking());
}

TEST_F(MessageLineTest, TroubleStaysUntilItIsPressedAway) {
    line().note("Opened cat.png");
    line().trouble("notes.txt could not be opened");
    advance(100);
    EXPECT_EQ(line().text(), "notes.txt could not be opened");
    click(line());
    EXPECT_FALSE(line().isVisible());
}

TEST_F(MessageLineTest, PressesGoThroughANoteToThePicture) {
    openPicture();
    line().note("Opened cat.png");
    click(line());
    EXPECT_EQ(editor_->view().historyLength(), 2);
    EXPECT_TRUE(line().isVisible());
}

TEST_F(MessageLineTest, TheButtonOfAnOfferDoesItAndSendsTheLineAway) {
    int done = 0;
    line().offer("Save complete: cat.png", "Open", [&] { ++done; });
    update();
    auto* const button = line().findChild<QPushButton*>();
    EXPECT_EQ(button->text(), "Open");
    click(*button);
    EXPECT_EQ(done, 1);
    EXPECT_FALSE(line().isVisible());
    line().note("Opened cat.png");
    EXPECT_FALSE(button->isVisible());
}

TEST_F(MessageLineTest, AnOfferThatNobodyTakesGoesByItself) {
    line().offer("Save complete: cat.png", "Open", [] { ADD_FAILURE(); });
    advance(9);
    EXPECT_FALSE(line().isVisible());
}

TEST_F(MessageLineTest, TakesNoRoomAndNoKeyboard) {
    const QRect before = editor_->widget->geometry();
    line().trouble("notes.txt could not be opened");
    update();
    EXPECT_EQ(editor_->widget->geometry(), before);
    EXPECT_TRUE(editor_->widget->hasFocus());
}

TEST_F(MessageLineTest, AScreenReaderHearsAllOfIt) {
    const std::string all = std::string(500, 'x') + ".png";
    line().note(all);
    EXPECT_EQ(line().findChild<QLabel*>()->accessibleName().toStdString(), all);
}

TEST_F(MessageLineTest, KeepsToTheLowerEdgeAndWithinTheWindow) {
    line().note(std::string(500, 'x') + ".png");
    const auto* const label = line().findChild<QLabel*>();
    EXPECT_TRUE(label->text().contains(u'…'));
    EXPECT_GE(label->width(), label->sizeHint().width());
    for (const QSize size : {QSize(800, 560), QSize(1000, 700)}) {
        window().resize(size);
        update();
        EXPECT_TRUE(line().parentWidget()->rect().contains(line().geometry()));
        EXPECT_GT(line().geometry().bottom(), line().parentWidget()->height() - 30);
    }
}

}  // namespace
}  // namespace trimora::app
