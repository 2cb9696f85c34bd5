#include "platform/QtPanels.h"

#include <gtest/gtest.h>

#include <QApplication>
#include <QFileDialog>
#include <QLineEdit>
#include <fstream>
#include <optional>

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
    panels_.chooseFileToOpen(folder_.path(), keepAnswer());
    ASSERT_NE(shownDialog(), nullptr);
    shownDialog()->reject();
    EXPECT_EQ(answers_, 1);
    EXPECT_EQ(answer_, std::nullopt);
}

TEST_F(QtPanelsTest, OpenAnswersWithTheChosenFile) {
    const path picture = folder_.path() / "a picture.png";
    std::ofstream(picture) << "x";
    panels_.chooseFileToOpen(folder_.path(), keepAnswer());
    QFileDialog* const dialog = shownDialog();
    ASSERT_NE(dialog, nullptr);
    dialog->selectFile(QString::fromStdString(picture.string()));
    static_cast<QDialog*>(dialog)->accept();
    EXPECT_EQ(answer_, picture);
}

}  // namespace
}  // namespace trimora::platform
