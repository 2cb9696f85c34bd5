#include "app/AppDelegate.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>
#include <QMessageBox>

#include "app/ShellForTests.h"

namespace trimora::app {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class AppDelegateTest : public ShellTest {
 protected:
    static bool isChecked(const QMenu& menu) { return menu.actions().front()->isChecked(); }
};

TEST_F(AppDelegateTest, LaunchingSeesToConsentAndNothingElse) {
    application().applicationDidFinishLaunching();
    EXPECT_EQ(consents_, 1);
    EXPECT_FALSE(window().isVisible());
    EXPECT_THAT(editor_->told, IsEmpty());
}

TEST_F(AppDelegateTest, NewWithTheWindowOpenAsksAndLeavesShowingToTheEditor) {
    show();
    application().performSelector("new_pressed:");
    EXPECT_THAT(editor_->told, ElementsAre("askForSave"));
}

TEST_F(AppDelegateTest, NewWithTheWindowClosedClearsUnaskedAndShowsIt) {
    show();
    window().close();
    bool shownWhenCleared = true;
    editor_->acts["resetState"] = [&] { shownWhenCleared = window().isShown(); };
    application().performSelector("new_pressed:");
    EXPECT_THAT(editor_->told, ElementsAre("resetState"));
    EXPECT_FALSE(shownWhenCleared);
    EXPECT_TRUE(window().isShown());
}

TEST_F(AppDelegateTest, OpenShowsAHiddenWindowBeforeItAsks) {
    bool shownWhenTold = false;
    editor_->acts["openPicture:"] = [&] { shownWhenTold = window().isShown(); };
    application().performSelector("openPicture:");
    EXPECT_THAT(editor_->told, ElementsAre("openPicture:"));
    EXPECT_TRUE(shownWhenTold);
}

TEST_F(AppDelegateTest, CommandsReachTheEditorWithTheWindowClosedAndActOnItsHiddenState) {
    show();
    openPicture();
    stroke();
    editor_->acts["back_pressed:"] = [&] { editor_->view().prevHistoryState(); };
    editor_->acts["forward_pressed:"] = [&] { editor_->view().nextHistoryState(); };
    window().close();
    application().performSelector("undo_pressed:");
    update();
    EXPECT_EQ(editor_->view().historyCurrentState(), 0);
    application().performSelector("redo_pressed:");
    update();
    EXPECT_EQ(editor_->view().historyCurrentState(), 1);
    application().performSelector("save_pressed:");
    EXPECT_THAT(editor_->told, ElementsAre("back_pressed:", "forward_pressed:", "save_pressed:"));
    EXPECT_FALSE(editor_->arguments["save_pressed:"].has_value());
    EXPECT_FALSE(window().isVisible());
}

TEST_F(AppDelegateTest, ClosingDoesNotQuitAndLaunchingAgainShowsTheSameWindow) {
    show();
    openPicture();
    stroke();
    const auto picture = editor_->view().image();
    window().close();
    EXPECT_FALSE(application().applicationShouldTerminateAfterLastWindowClosed());
    EXPECT_EQ(quits_, 0);
    EXPECT_TRUE(application().applicationShouldHandleReopen_hasVisibleWindows(false));
    EXPECT_TRUE(window().isShown());
    EXPECT_EQ(editor_->view().image(), picture);
    EXPECT_EQ(editor_->view().historyLength(), 2);
    EXPECT_TRUE(application().applicationShouldHandleReopen_hasVisibleWindows(true));
    EXPECT_TRUE(window().isShown());
}

TEST_F(AppDelegateTest, AMinimisedWindowComesBack) {
    show();
    window().showMinimized();
    EXPECT_FALSE(window().isShown());
    application().applicationShouldHandleReopen_hasVisibleWindows(true);
    EXPECT_TRUE(window().isShown());
}

TEST_F(AppDelegateTest, TheTraysShowIsCheckedExactlyWhileTheWindowIsShown) {
    EXPECT_FALSE(isChecked(*application().applicationDockMenu()));
    show();
    const auto menu = application().applicationDockMenu();
    ASSERT_EQ(menu->actions().size(), 1);
    EXPECT_EQ(menu->actions().front()->text(), "Show");
    EXPECT_TRUE(menu->actions().front()->shortcut().isEmpty());
    EXPECT_TRUE(isChecked(*menu));
    window().showMinimized();
    EXPECT_FALSE(isChecked(*application().applicationDockMenu()));
}

TEST_F(AppDelegateTest, TheTraysShowBringsTheWindowForward) {
    const auto menu = application().applicationDockMenu();
    menu->actions().front()->trigger();
    EXPECT_TRUE(window().isShown());
}

TEST_F(AppDelegateTest, EachTrayMenuIsNewAndTheItemBelongsToTheLatest) {
    const auto first = application().applicationDockMenu();
    const auto second = application().applicationDockMenu();
    EXPECT_THAT(first->actions(), IsEmpty());
    EXPECT_EQ(second->actions().size(), 1);
}

TEST_F(AppDelegateTest, TheShowWindowItemIsReadAtOcclusionChangesOnly) {
    window().onOcclusionChange([] {});  // the test says when
    QAction& showWindow = item("showWindowAction:");
    show();
    EXPECT_FALSE(showWindow.isChecked());
    application().applicationDidChangeOcclusionState();
    EXPECT_TRUE(showWindow.isChecked());
    window().close();
    EXPECT_TRUE(showWindow.isChecked());
    application().applicationDidChangeOcclusionState();
    EXPECT_FALSE(showWindow.isChecked());
}

TEST_F(AppDelegateTest, ClosingAndMinimisingAreOcclusionChanges) {
    QAction& showWindow = item("showWindowAction:");
    show();
    EXPECT_TRUE(showWindow.isChecked());
    window().showMinimized();
    EXPECT_FALSE(showWindow.isChecked());
    show();
    EXPECT_TRUE(showWindow.isChecked());
    window().close();
    EXPECT_FALSE(showWindow.isChecked());
}

TEST_F(AppDelegateTest, ThePrivacyPolicyOpensInTheBrowserATurnLater) {
    application().performSelector("privacyPolicyAction:");
    EXPECT_THAT(workspace_.opened, IsEmpty());
    settle();
    EXPECT_THAT(workspace_.opened, ElementsAre("https://policy.invalid/"));
}

TEST_F(AppDelegateTest, BeforeThereIsAWindowCommandsComeToNothing) {
    AppDelegate bare(
        {queues.mainQueue(), workspace_, [this] { ++quits_; }, [] {}, [] { return std::string(); }, [] {}});
    for (const char* selector :
         {"new_pressed:", "openPicture:", "save_pressed:", "undo_pressed:", "redo_pressed:",
          "showWindowAction:", "aboutAction:", "keyboardShortcutsAction:"})
        bare.performSelector(selector);
    bare.applicationDidChangeOcclusionState();
    EXPECT_FALSE(isChecked(*bare.applicationDockMenu()));
    EXPECT_THAT(editor_->told, IsEmpty());
    bare.performSelector("terminate:");
    EXPECT_EQ(quits_, 1);
}

TEST_F(AppDelegateTest, QuitWithNothingToLoseEndsAtOnce) {
    show();
    openPicture();
    application().performSelector("terminate:");
    EXPECT_EQ(quits_, 1);
    EXPECT_THAT(editor_->told, IsEmpty());
}

TEST_F(AppDelegateTest, QuitWithUnsavedWorkAsksAndEndsOnlyWhenTheEditorIsDone) {
    show();
    openPicture();
    stroke();
    window().close();
    application().performSelector("terminate:");
    EXPECT_EQ(quits_, 0);
    EXPECT_TRUE(window().isShown());
    EXPECT_THAT(editor_->told, ElementsAre("askForSaveThen:"));
    std::any_cast<foundation::Task>(editor_->arguments["askForSaveThen:"])();
    EXPECT_EQ(quits_, 1);
}

TEST_F(AppDelegateTest, UnsavedWorkUnderACoveredWindowIsAskedForToo) {
    show();
    openPicture();
    stroke();
    controller().disableButtons();
    application().performSelector("terminate:");
    EXPECT_EQ(quits_, 0);
}

TEST_F(AppDelegateTest, HelpHasItsPages) {
    show();
    application().performSelector("usageDataAction:");
    EXPECT_EQ(usageDialogs_, 1);
    application().performSelector("keyboardShortcutsAction:");
    auto* page = window().findChild<QMessageBox*>();
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(page->text().contains("Ctrl+Shift+Z, Ctrl+Y"));
    EXPECT_TRUE(page->text().contains("Swap cut and restore"));
    EXPECT_TRUE(page->text().contains("Alt+Wheel"));
    delete page;
    application().performSelector("aboutAction:");
    page = window().findChild<QMessageBox*>();
    ASSERT_NE(page, nullptr);
    EXPECT_TRUE(page->text().contains("Trimora"));
}

}  // namespace
}  // namespace trimora::app
