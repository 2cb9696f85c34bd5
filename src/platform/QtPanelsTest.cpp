#include "platform/QtPanels.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <QMainWindow>
#include <QMessageBox>
#include <QTest>
#include <fstream>
#include <map>
#include <optional>
#include <vector>

#include "testing/TemporaryFolder.h"

namespace trimora::platform {
namespace {

using std::filesystem::path;

class QtPanelsTest : public ::testing::Test {
 protected:
    static QFileDialog* shownDialog() {
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* dialog = qobject_cast<QFileDialog*>(widget))
                return dialog;
        }
        return nullptr;
    }

    ports::Panels::Answer keepAnswer() {
        return [this](std::optional<path> answer) {
            ++answers_;
            answer_ = std::move(answer);
        };
    }

    ports::Panels::FilesAnswer keepFiles() {
        return [keep = keepAnswer()](std::vector<path> files) {
            keep(files.size() == 1 ? std::optional(files.front()) : std::nullopt);
        };
    }

    void TearDown() override { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    testing::TemporaryFolder folder_;
    QtPanels panels_;
    int answers_ = 0;
    std::optional<path> answer_;
};

TEST_F(QtPanelsTest, SaveProposesTheNameAndAnswersWithTheFileInTheFolder) {
    panels_.chooseFileToSave(folder_.path(), "Trimora - 15-11-2026 18:06:28.png", keepAnswer());
    QFileDialog* const dialog = shownDialog();
    ASSERT_NE(dialog, nullptr);
    EXPECT_EQ(answers_, 0);
    EXPECT_EQ(dialog->findChild<QLineEdit*>()->text(), "Trimora - 15-11-2026 18:06:28.png");

    static_cast<QDialog*>(dialog)->accept();
    EXPECT_EQ(answers_, 1);
    EXPECT_EQ(answer_, folder_.path() / "Trimora - 15-11-2026 18:06:28.png");
}

TEST_F(QtPanelsTest, SaveAddsTheSuffixToANameWithoutOneAndKeepsAnyOther) {
    for (const auto& [typed, expected] : {std::pair{"cut", "cut.png"}, std::pair{"cut.jpg", "cut.jpg"}}) {
        panels_.chooseFileToSave(folder_.path(), "proposed.png", keepAnswer());
        QFileDialog* const dialog = shownDialog();
        ASSERT_NE(dialog, nullptr);
        dialog->findChild<QLineEdit*>()->setText(typed);
        static_cast<QDialog*>(dialog)->accept();
        EXPECT_EQ(answer_, folder_.path() / expected);
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
}

TEST_F(QtPanelsTest, ACancelledPanelAnswersWithNothing) {
    panels_.chooseFileToOpen(folder_.path(), keepFiles());
    ASSERT_NE(shownDialog(), nullptr);
    shownDialog()->reject();
    EXPECT_EQ(answers_, 1);
    EXPECT_EQ(answer_, std::nullopt);
}

TEST_F(QtPanelsTest, OpenAnswersWithTheChosenFile) {
    const path picture = folder_.path() / "a picture.png";
    std::ofstream(picture) << "x";
    panels_.chooseFileToOpen(folder_.path(), keepFiles());
    QFileDialog* const dialog = shownDialog();
    ASSERT_NE(dialog, nullptr);
    dialog->selectFile(QString::fromStdString(picture.string()));
    static_cast<QDialog*>(dialog)->accept();
    EXPECT_EQ(answer_, picture);
}

class QtAlertTest : public ::testing::Test {
 protected:
    QMessageBox* ask() {
        panels_.runAlert({"Do you want to save result?", {"Save", "Cancel", "Don't save"}, 1001},
                         [this](int answer) { answers_.push_back(answer); });
        for (QWidget* widget : QApplication::topLevelWidgets()) {
            if (auto* box = qobject_cast<QMessageBox*>(widget))
                return box;
        }
        return nullptr;
    }
    void TearDown() override { QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete); }

    QtPanels panels_;
    std::vector<int> answers_;
};

TEST_F(QtAlertTest, EachButtonHasItsNumberInTheOrderGiven) {
    for (const int number : {0, 1, 2}) {
        QMessageBox* const box = ask();
        ASSERT_NE(box, nullptr);
        EXPECT_EQ(box->text(), "Do you want to save result?");
        const QStringList titles = {"Save", "Cancel", "Don't save"};
        for (QAbstractButton* button : box->buttons()) {
            if (button->text() == titles[number])
                button->click();
        }
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    }
    EXPECT_THAT(answers_, ::testing::ElementsAre(1000, 1001, 1002));
}

TEST_F(QtAlertTest, IsASheetWithNoFrameAndNoPicture) {
    QMessageBox* const box = ask();
    ASSERT_NE(box, nullptr);
    EXPECT_TRUE(box->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_TRUE(box->iconPixmap().isNull());
    EXPECT_EQ(box->windowModality(), Qt::WindowModal);
    box->reject();
}

TEST_F(QtAlertTest, BelongsToTheProgramsWindowAlsoWhileAnotherProgramHasTheKeyboard) {
    QMainWindow window;
    window.setAttribute(Qt::WA_ShowWithoutActivating);
    window.show();
    ASSERT_EQ(QApplication::activeWindow(), nullptr);
    QMessageBox* const box = ask();
    ASSERT_NE(box, nullptr);
    EXPECT_EQ(box->parentWidget(), &window);
    box->reject();
}

TEST_F(QtAlertTest, ButtonsAreShownInTheOrderGiven) {
    QMessageBox* const box = ask();
    ASSERT_NE(box, nullptr);
    std::map<int, QString> byPlace;
    for (const QAbstractButton* button : box->buttons())
        byPlace[button->x()] = button->text();
    QStringList shown;
    for (const auto& [place, text] : byPlace)
        shown.append(text);
    EXPECT_EQ(shown, QStringList({"Save", "Cancel", "Don't save"}));
    box->reject();
}

TEST_F(QtAlertTest, EscapeCancelsAndReturnTakesTheFirst) {
    QTest::keyClick(ask(), Qt::Key_Escape);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    QTest::keyClick(ask(), Qt::Key_Return);
    EXPECT_THAT(answers_, ::testing::ElementsAre(1001, 1000));
}

TEST_F(QtAlertTest, TheSameQuestionIsNotAskedTwiceAtATime) {
    QMessageBox* const box = ask();
    EXPECT_EQ(ask(), box);
    QCoreApplication::processEvents();
    EXPECT_THAT(answers_, ::testing::ElementsAre(1001));
    QTest::keyClick(box, Qt::Key_Return);
    EXPECT_THAT(answers_, ::testing::ElementsAre(1001, 1000));
}

}  // namespace
}  // namespace trimora::platform
