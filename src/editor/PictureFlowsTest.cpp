#include "editor/PictureFlows.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QClipboard>
#include <QDropEvent>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QUrl>
#include <fstream>
#include <functional>
#include <iterator>
#include <vector>

#include "controls/ButtonOpenAppereance.h"
#include "controls/ColorPickerView.h"
#include "controls/CustomViewWithButton.h"
#include "editor/DragView.h"
#include "editor/EditorScreenForTests.h"
#include "editor/MiniMap.h"

namespace trimora::editor {
namespace {

using std::filesystem::path;
using ::testing::Contains;
using ::testing::ElementsAre;
using ::testing::HasSubstr;
using ::testing::IsEmpty;
using ::testing::Not;
using ::testing::SizeIs;

class PictureFlowsTest : public EditorScreenTest {
 protected:
    void SetUp() override {
        EditorScreenTest::SetUp();
        for (const char* name : {"viewIsNotEmpty", "addViewWithButton"})
            observations_.push_back(
                notifications.observe(name, [this, name](const auto&) { posted_.emplace_back(name); }));
    }

    /// Asks for the open panel and answers it.
    void openByPanel(const std::optional<path>& answer) {
        send("openPicture:");
        ASSERT_FALSE(panels_.questions.empty());
        panels_.questions.back().answer(answer);
    }
    void answerAlert(int answer) {
        ASSERT_FALSE(panels_.alerts.empty());
        panels_.alerts.back().answer(answer);
        rest();
    }
    void drop(QWidget& target, const QList<QUrl>& urls) {
        QMimeData data;
        data.setUrls(urls);
        QDragEnterEvent enter({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &enter);
        QDropEvent event({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
        QCoreApplication::sendEvent(&target, &event);
        rest();
    }
    static std::string contentsOf(const path& file) {
        std::ifstream in(file, std::ios::binary);
        return {std::istreambuf_iterator<char>(in), {}};
    }
    double shownWidth() { return view().image() == nullptr ? 0 : view().image()->size().width; }

    std::vector<std::string> posted_;
    std::vector<foundation::NotificationCenter::Observation> observations_;
};

// ── Open ───────────────────────────────────────────────────────────────────────────────────────

TEST_F(PictureFlowsTest, TheOpenPanelComesWhenThePresentEventIsOver) {
    controller_->performSelector("openPicture:");
    EXPECT_THAT(panels_.questions, IsEmpty());
    rest();
    EXPECT_THAT(panels_.questions, SizeIs(1));
}

TEST_F(PictureFlowsTest, EveryWayToOpenAsksTheSamePanel) {
    const std::vector<std::function<void()>> ways = {
        [&] { send("open_pressed:"); },
        [&] { send("openPictureNew:"); },
        [&] { notifications.post("openPictureWithHelpNotification"); },
        [&] { click(*outlets().openPictureButton); },
        [&] { QTest::mouseClick(outlets().viDrug, Qt::LeftButton, {}, QPoint(40, 300)); },
    };
    for (std::size_t i = 0; i < ways.size(); ++i) {
        ways[i]();
        rest();
        ASSERT_THAT(panels_.questions, SizeIs(i + 1)) << "way " << i;
        panels_.questions[i].answer(std::nullopt);
        rest();
    }
}

TEST_F(PictureFlowsTest, ACancelledPanelChangesNothing) {
    open({"/p/cat.png"});
    stroke();
    openByPanel(std::nullopt);
    rest();
    EXPECT_TRUE(toolbar_.save.isEnabled());
    EXPECT_EQ(constraints().constrBtnSaveBottom.target(), 0);
    EXPECT_EQ(shownWidth(), 600);
}

TEST_F(PictureFlowsTest, AChosenFileSwitchesSaveOffAndSlidesItOutBeforeItIsRead) {
    open({"/p/cat.png"});
    stroke();
    openByPanel("/p/dog.png");
    EXPECT_FALSE(toolbar_.save.isEnabled());
    EXPECT_EQ(controller_->saveEnabled(), 0);
    EXPECT_EQ(constraints().constrBtnSaveBottom.target(), -outlets().btnSave->height());
    EXPECT_EQ(shownWidth(), 600);
    rest();
    wait(1);
    EXPECT_EQ(shownWidth(), 400);
    EXPECT_GE(outlets().btnSave->y(), outlets().savePictureFromRightPanel->height());
    stroke();
    wait(1);
    EXPECT_EQ(outlets().btnSave->y(), 0);
}

TEST_F(PictureFlowsTest, AFirstPictureBringsTheScreenToLife) {
    EXPECT_FALSE(outlets().viDrug->isHidden());
    EXPECT_EQ(constraints().constrRightPanelWithMode.constant(), -outlets().rightPanelWithMode->width());
    const double before = constraints().widthMainViewConstraint.constant();
    EXPECT_LT(before, 800);
    open({"/p/cat.png"});
    EXPECT_THAT(posted_, ElementsAre("viewIsNotEmpty", "addViewWithButton"));
    EXPECT_TRUE(outlets().viDrug->isHidden());
    EXPECT_TRUE(outlets().toolStrip->isVisible());
    EXPECT_EQ(constraints().constrRightPanelWithMode.constant(), 0);
    EXPECT_EQ(constraints().widthMainViewConstraint.constant(), 800);
    EXPECT_TRUE(outlets().colorPickerView->isHidden());
    EXPECT_FALSE(outlets().eraserViewSettings->isHidden());
    EXPECT_TRUE(outlets().invertViewSettings->isHidden());
    EXPECT_FALSE(outlets().viewWithButton->isHidden());
    EXPECT_FALSE(toolbar_.save.isEnabled());
    EXPECT_NE(outlets().miniMap->picture(), nullptr);
}

TEST_F(PictureFlowsTest, TheToolbarIsToldOnceAndThePanelAfterEachEmptyScreen) {
    open({"/p/cat.png"});
    open({"/p/dog.png"});
    EXPECT_THAT(posted_, SizeIs(2));
    send("resetState");
    open({"/p/cat.png"});
    EXPECT_THAT(posted_, ElementsAre("viewIsNotEmpty", "addViewWithButton", "addViewWithButton"));
    EXPECT_EQ(constraints().widthMainViewConstraint.constant(), 800);
}

TEST_F(PictureFlowsTest, TheThirdOfThreeDroppedFilesIsLoadedWhereItAloneIsAPicture) {
    drop(*outlets().viDrug, {QUrl("file:///p/a.txt"), QUrl("file:///p/b.txt"), QUrl("file:///p/dog.png")});
    EXPECT_EQ(shownWidth(), 400);
}

TEST_F(PictureFlowsTest, ADropAsThePanelLeavesSaveOffUntilTheFirstStroke) {
    open({"/p/cat.png"});
    stroke();
    open({"/p/dog.png"});
    EXPECT_FALSE(toolbar_.save.isEnabled());
    EXPECT_FALSE(outlets().btnSave->isEnabled());
    EXPECT_EQ(controller_->saveEnabled(), 0);
}

TEST_F(PictureFlowsTest, AnUnreadableFileLeavesEverythingAsItIsAndIsNamed) {
    open({"/p/cat.png"});
    stroke();
    openByPanel("/p/notes.txt");
    rest();
    wait(1);
    EXPECT_EQ(shownWidth(), 600);
    EXPECT_EQ(view().historyLength(), 2);
    EXPECT_TRUE(toolbar_.save.isEnabled());
    EXPECT_EQ(constraints().constrBtnSaveBottom.constant(), 0);
    EXPECT_EQ(messages_.lines.back(), "trouble: notes.txt could not be opened: it is not a picture");
}

TEST_F(PictureFlowsTest, AFileInTheMakingIsWaitedFor) {
    int tries = 0;
    controller_->draggingFilesComplete_needsWait({"/p/late.png"}, true);
    queues.settle();
    for (const path& asked : decoder_.asked)
        tries += asked == "/p/late.png" ? 1 : 0;
    EXPECT_EQ(tries, 11);
    EXPECT_THAT(controller_->recentFiles().files(), IsEmpty());
}

TEST_F(PictureFlowsTest, TheMiniMapFitsAWideAndATallPicture) {
    open({"/p/wide.png"});
    const double side = outlets().miniMap->miniMapImage().frame().width;
    EXPECT_FLOAT_EQ(outlets().miniMap->sizeWidthMiniMap(), static_cast<float>(side));
    EXPECT_NEAR(outlets().miniMap->sizeHeightMiniMap(), side / 3, 1e-3);
    decoder_.files["/p/tall.png"] = {1000, 3000, ""};
    open({"/p/tall.png"});
    EXPECT_NEAR(outlets().miniMap->sizeWidthMiniMap(), side / 3, 1e-3);
}

TEST_F(PictureFlowsTest, OpenedFilesAreRecentAndTheirFolderIsRemembered) {
    open({"/p/cat.png"});
    EXPECT_THAT(controller_->recentFiles().files(), ElementsAre("/p/cat.png"));
    EXPECT_EQ(settings_.texts["openFolder"], "/p");
    controller_->recentFiles().add("/p/gone.png");
    open({"/p/gone.png"});
    EXPECT_THAT(controller_->recentFiles().files(), ElementsAre("/p/cat.png"));
}

// ── Drops onto a picture ───────────────────────────────────────────────────────────────────────

TEST_F(PictureFlowsTest, ADropOntoAPictureWithoutWorkReplacesIt) {
    open({"/p/cat.png"});
    drop(cutWidget(), {QUrl("file:///p/dog.png")});
    EXPECT_THAT(panels_.alerts, IsEmpty());
    EXPECT_EQ(shownWidth(), 400);
}

TEST_F(PictureFlowsTest, ADropOntoUnsavedWorkAsksFirst) {
    open({"/p/cat.png"});
    stroke();
    drop(cutWidget(), {QUrl("file:///p/dog.png")});
    ASSERT_THAT(panels_.alerts, SizeIs(1));
    answerAlert(1001);
    EXPECT_EQ(shownWidth(), 600);
    drop(cutWidget(), {QUrl("file:///p/dog.png")});
    answerAlert(1002);
    EXPECT_EQ(shownWidth(), 400);
}

TEST_F(PictureFlowsTest, WorkThatADropReplacedIsStillWhatTheSavePanelSaves) {
    open({"/p/cat.png"});
    stroke();
    drop(cutWidget(), {QUrl("file:///p/dog.png")});
    answerAlert(1000);
    EXPECT_EQ(shownWidth(), 400);
    const path target = home.path() / "kept.png";
    panels_.questions.back().answer(target);
    rest();
    EXPECT_EQ(contentsOf(target), FakeEncoder::bytesFor(600, 400));
}

// ── Save ───────────────────────────────────────────────────────────────────────────────────────

TEST_F(PictureFlowsTest, SavingWritesAPngWhateverTheEndingAndThenSaysSo) {
    open({"/p/cat.png"});
    stroke();
    send("save_pressed:");
    const path target = home.path() / "c\u00fct out.jpg";
    panels_.questions.back().answer(target);
    EXPECT_THAT(events(), ElementsAre("User saved picture: blur = 0"));
    EXPECT_EQ(contentsOf(target), FakeEncoder::bytesFor(600, 400));
    ASSERT_THAT(userNotifications_.posted, SizeIs(1));
    const ports::UserNotification& told = userNotifications_.posted[0];
    EXPECT_EQ(told.title, "Trimora");
    EXPECT_EQ(told.subtitle, "Save complete");
    EXPECT_EQ(told.actionTitle, "Open");
    EXPECT_THAT(told.informativeText, HasSubstr("/c%C3%BCt%20out.jpg"));
    EXPECT_TRUE(told.informativeText.starts_with("file:///"));
}

TEST_F(PictureFlowsTest, TheNotificationsButtonShowsTheFileAndAPressElsewhereDoesNot) {
    open({"/p/cat.png"});
    send("save_pressed:");
    const path target = home.path() / "c\u00fct out.png";
    panels_.questions.back().answer(target);
    rest();
    ASSERT_TRUE(userNotifications_.activated);
    userNotifications_.activated(userNotifications_.posted[0],
                                 ports::NotificationActivation::contentsClicked);
    EXPECT_THAT(workspace_.revealed, IsEmpty());
    userNotifications_.activated(userNotifications_.posted[0], ports::NotificationActivation::actionButton);
    EXPECT_THAT(workspace_.revealed, ElementsAre(target));
}

TEST_F(PictureFlowsTest, SavingWhileTheBlurIsOnTellsSo) {
    open({"/p/cat.png"});
    send("chooseBlurMode:");
    send("save_pressed:");
    panels_.questions.back().answer(home.path() / "a.png");
    EXPECT_THAT(events(), ElementsAre("User saved picture: blur = 1"));
}

TEST_F(PictureFlowsTest, ACancelledSaveTellsNobodyAnything) {
    open({"/p/cat.png"});
    send("save_pressed:");
    EXPECT_THAT(*controller_->flows().saveFlow().proposedName(), HasSubstr("Trimora - "));
    panels_.questions.back().answer(std::nullopt);
    rest();
    EXPECT_THAT(events(), IsEmpty());
    EXPECT_THAT(userNotifications_.posted, IsEmpty());
}

TEST_F(PictureFlowsTest, AFailedSaveSaysWhyAndPostsNoNotification) {
    open({"/p/cat.png"});
    const path target = home.path() / "a.png";
    std::ofstream(target) << "the old one";
    encoder_.failure = foundation::Error{"the disk is full"};
    send("save_pressed:");
    panels_.questions.back().answer(target);
    rest();
    EXPECT_THAT(userNotifications_.posted, IsEmpty());
    EXPECT_EQ(messages_.lines.back(), "trouble: a.png could not be saved: the disk is full");
    EXPECT_EQ(contentsOf(target), "the old one");
}

TEST_F(PictureFlowsTest, WithoutAPictureThereIsNothingToSave) {
    send("save_pressed:");
    send("savePictureNew");
    notifications.post("savePictureWithHelpNotification");
    rest();
    EXPECT_THAT(panels_.questions, IsEmpty());
    open({"/p/cat.png"});
    stroke();
    click(*outlets().btnSave);
    EXPECT_THAT(panels_.questions, SizeIs(1));
}

TEST_F(PictureFlowsTest, TheNextSavePanelBeginsWhereTheLastFileWent) {
    open({"/p/cat.png"});
    send("save_pressed:");
    EXPECT_EQ(panels_.questions.back().folder, "/p");
    panels_.questions.back().answer(home.path() / "a.png");
    rest();
    EXPECT_EQ(settings_.texts["saveFolder"], home.path().string());
    send("save_pressed:");
    EXPECT_EQ(panels_.questions.back().folder, home.path());
}

// ── New ────────────────────────────────────────────────────────────────────────────────────────

TEST_F(PictureFlowsTest, NewWithNothingDrawnClearsAtOnce) {
    open({"/p/cat.png"});
    send("askForSave");
    EXPECT_THAT(panels_.alerts, IsEmpty());
    EXPECT_EQ(view().image(), nullptr);
    EXPECT_FALSE(outlets().viDrug->isHidden());
    EXPECT_EQ(outlets().miniMap->picture(), nullptr);
}

TEST_F(PictureFlowsTest, NewWithWorkAsks) {
    open({"/p/cat.png"});
    stroke();
    send("askForSave");
    ASSERT_THAT(panels_.alerts, SizeIs(1));
    EXPECT_EQ(panels_.alerts[0].alert.message, "Do you want to save result?");
    EXPECT_THAT(panels_.alerts[0].alert.buttons, ElementsAre("Save", "Cancel", "Don't save"));
    EXPECT_EQ(panels_.alerts[0].alert.cancelAnswer, 1001);
    answerAlert(1001);
    EXPECT_EQ(shownWidth(), 600);
    EXPECT_TRUE(toolbar_.save.isEnabled());
    EXPECT_THAT(panels_.questions, IsEmpty());
}

TEST_F(PictureFlowsTest, NewAnsweredWithDontSaveClears) {
    open({"/p/cat.png"});
    stroke();
    send("showInterface");
    wait(1);
    send("askForSave");
    answerAlert(1002);
    EXPECT_EQ(view().image(), nullptr);
    EXPECT_FALSE(toolbar_.save.isEnabled());
    EXPECT_EQ(controller_->saveEnabled(), 0);
    EXPECT_LT(constraints().constrLeftPanelLeading2.constant(), 0);
    EXPECT_THAT(panels_.questions, IsEmpty());
}

TEST_F(PictureFlowsTest, NewAnsweredWithSaveClearsAtOnceAndStillSavesTheWork) {
    open({"/p/cat.png"});
    stroke();
    send("askForSave");
    answerAlert(1000);
    ASSERT_THAT(panels_.questions, SizeIs(1));
    EXPECT_TRUE(panels_.questions[0].saves);
    EXPECT_EQ(view().image(), nullptr) << "the screen does not wait for the save panel";
    const path target = home.path() / "kept.png";
    panels_.questions[0].answer(target);
    rest();
    EXPECT_EQ(contentsOf(target), FakeEncoder::bytesFor(600, 400));
    EXPECT_THAT(userNotifications_.posted, SizeIs(1));
}

// ── Clipboard ──────────────────────────────────────────────────────────────────────────────────

TEST_F(PictureFlowsTest, CopyingPutsTheResultOnTheClipboardTwice) {
    open({"/p/cat.png"});
    send("copy:");
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    EXPECT_EQ(data->data("image/png").toStdString(), FakeEncoder::bytesFor(600, 400));
    const auto image = qvariant_cast<QImage>(data->imageData());
    EXPECT_EQ(image.size(), QSize(600, 400));
    EXPECT_EQ(image.pixelColor(5, 5), QColor(30, 60, 90));
}

TEST_F(PictureFlowsTest, PastingOpensAPictureOfTheClipboard) {
    QImage image(30, 20, QImage::Format_RGBA8888);
    image.fill(QColor(200, 100, 50, 128));
    QGuiApplication::clipboard()->setImage(image);
    send("paste:");
    ASSERT_EQ(shownWidth(), 30);
    EXPECT_EQ(view().image()->bestRepresentation()->pixel(3, 3), (foundation::Pixel{25, 50, 100, 128}));
    EXPECT_THAT(controller_->recentFiles().files(), IsEmpty());
}

TEST_F(PictureFlowsTest, PastingFilesOpensThemAndAsksAboutWork) {
    open({"/p/cat.png"});
    stroke();
    auto* const data = new QMimeData;
    data->setUrls({QUrl("file:///p/dog.png")});
    QGuiApplication::clipboard()->setMimeData(data);
    send("paste:");
    answerAlert(1002);
    EXPECT_EQ(shownWidth(), 400);
}

TEST_F(PictureFlowsTest, AClipboardWithoutAPictureSaysSo) {
    QGuiApplication::clipboard()->setText("words");
    send("paste:");
    EXPECT_EQ(view().image(), nullptr);
    EXPECT_EQ(messages_.lines.back(), "note: There is no picture on the clipboard");
}

}  // namespace
}  // namespace trimora::editor
