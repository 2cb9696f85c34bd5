#include "app/WindowController.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QLabel>

#include "app/ShellForTests.h"
#include "app/Toolbar.h"
#include "controls/Metrics.h"

namespace trimora::app {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WindowControllerTest : public ShellTest {
 protected:
    struct Enabled {
        bool open, save, back, forward, restore;
        bool operator==(const Enabled&) const = default;
    };
    Enabled enabled() {
        return {button("Open").isEnabled(), button("Save").isEnabled(), button("Undo").isEnabled(),
                button("Redo").isEnabled(), button("Restore image").isEnabled()};
    }
    QWidget& groupOf(const char* name) { return *button(name).parentWidget(); }
    QLabel& title() { return *window().toolbar().findChild<QLabel*>(); }
    /// The argument of the editor's last message of this name.
    util::RuntimeObject* senderOf(const char* selector) {
        auto* const sender = std::any_cast<util::RuntimeObject*>(&editor_->arguments[selector]);
        return sender != nullptr ? *sender : nullptr;
    }
};

TEST_F(WindowControllerTest, AtTheStartOpenIsEnabledAndSaveIsNot) {
    button("Save").setEnabled(true);
    button("Open").setEnabled(false);
    ASSERT_TRUE(queues.manualMain().runOne());
    EXPECT_FALSE(button("Save").isEnabled());
    EXPECT_FALSE(button("Open").isEnabled());
    ASSERT_TRUE(queues.manualMain().runOne());
    EXPECT_TRUE(button("Open").isEnabled());
    EXPECT_EQ(enabled(),
              (Enabled{.open = true, .save = false, .back = false, .forward = false, .restore = false}));
}

TEST_F(WindowControllerTest, AControllerThatGoesBeforeItsTurnsOfTheQueueIsLeftAlone) {
    const int before = queues.manualMain().pending();
    {
        QAbstractButton& open = button("Open");
        WindowController gone({queues.mainQueue(), notifications, application()}, {.btnOpen = &open});
        gone.setWindow(&window());
        gone.windowDidLoad();
        ASSERT_GT(queues.manualMain().pending(), before);
    }
    EXPECT_EQ(window().windowController(), nullptr);
    settle();
}

TEST_F(WindowControllerTest, TheFirstScreenShowsOpenSaveAndTheTitleWithLittleRoom) {
    show();
    EXPECT_TRUE(button("Open").isVisible());
    EXPECT_TRUE(button("Save").isVisible());
    EXPECT_TRUE(title().isVisible());
    EXPECT_FALSE(button("Undo").isVisible());
    EXPECT_FALSE(button("Restore image").isVisible());
    const int collapsed = groupOf("Open").width();
    const int narrowTitle = title().width();
    openPicture();
    EXPECT_TRUE(button("Undo").isVisible());
    EXPECT_TRUE(button("Restore image").isVisible());
    EXPECT_EQ(groupOf("Open").width(), collapsed + controls::metrics::kBarGroupRoom);
    EXPECT_GT(title().width(), narrowTitle);
}

TEST_F(WindowControllerTest, TheFirstPictureShowsTheHistoryButtonsAndEnablesNone) {
    show();
    notifications.post("viewIsNotEmpty");
    EXPECT_EQ(enabled(),
              (Enabled{.open = true, .save = false, .back = false, .forward = false, .restore = false}));
}

TEST_F(WindowControllerTest, TheWindowIsDarkAndNamedInItsToolbar) {
    show();
    EXPECT_EQ(window().palette().color(QPalette::Window), QColor(Qt::black));
    EXPECT_EQ(title().text(), "Trimora");
    openPicture();
    window().setWindowTitle("cat.png – Trimora");
    EXPECT_EQ(title().text(), "cat.png – Trimora");
    for (const char* name : {"Open", "Save"})
        EXPECT_DOUBLE_EQ(button(name).font().pointSizeF(), 10.5) << name;
}

TEST_F(WindowControllerTest, TheApplicationGetsTheWindowAndClosingKeepsIt) {
    EXPECT_EQ(application().windowVideo(), &window());
    EXPECT_EQ(window().windowController(), &controller());
    EXPECT_FALSE(window().testAttribute(Qt::WA_DeleteOnClose));
}

TEST_F(WindowControllerTest, HistoryButtonsFollowThePositionInTheHistory) {
    show();
    openPicture();
    EXPECT_EQ(editor_->view().historyLength(), 1);
    EXPECT_EQ(enabled(),
              (Enabled{.open = true, .save = false, .back = false, .forward = false, .restore = false}));
    stroke();
    EXPECT_EQ(editor_->view().historyLength(), 2);
    EXPECT_EQ(enabled(),
              (Enabled{.open = true, .save = true, .back = true, .forward = false, .restore = true}));
    editor_->view().prevHistoryState();
    update();
    EXPECT_EQ(enabled(),
              (Enabled{.open = true, .save = true, .back = false, .forward = true, .restore = true}));
}

TEST_F(WindowControllerTest, AnEmptyHistoryHasNoWayForwardAndNothingToRestore) {
    show();
    ASSERT_EQ(editor_->view().historyLength(), 0);
    button("Redo").setEnabled(true);
    button("Restore image").setEnabled(true);
    controller().performSelector("updateHistoryButtons:", &editor_->view());
    EXPECT_FALSE(button("Redo").isEnabled());
    EXPECT_FALSE(button("Restore image").isEnabled());
}

TEST_F(WindowControllerTest, TwoDisablingsAndOneEnablingRestoreTheStatesOfBeforeTheFirst) {
    show();
    openPicture();
    stroke();
    const Enabled before = enabled();
    controller().performSelector("disableButtons");
    controller().performSelector("disableButtons");
    EXPECT_EQ(enabled(), (Enabled{}));
    controller().performSelector("enableButtons");
    EXPECT_EQ(enabled(), before);
}

TEST_F(WindowControllerTest, EnablingWithoutDisablingChangesNothing) {
    show();
    openPicture();
    stroke();
    button("Undo").setEnabled(false);
    const Enabled before = enabled();
    controller().enableButtons();
    EXPECT_EQ(enabled(), before);
    controller().disableButtons();
    controller().enableButtons();
    EXPECT_EQ(enabled(), before);
}

TEST_F(WindowControllerTest, AHistoryChangeWhileDisabledEnablesAtOnceAndLasts) {
    show();
    openPicture();
    stroke();
    controller().disableButtons();
    editor_->view().prevHistoryState();
    update();
    EXPECT_FALSE(button("Undo").isEnabled());
    EXPECT_TRUE(button("Redo").isEnabled());
    EXPECT_TRUE(button("Restore image").isEnabled());
    EXPECT_FALSE(button("Open").isEnabled());
    controller().enableButtons();
    EXPECT_EQ(enabled(),
              (Enabled{.open = true, .save = true, .back = false, .forward = true, .restore = true}));
}

TEST_F(WindowControllerTest, EachButtonReachesTheEditorWithTheControllerAsArgument) {
    show();
    openPicture();
    stroke();
    stroke();
    editor_->view().prevHistoryState();
    update();
    for (const char* name : {"Open", "Save", "Undo", "Redo", "Restore image"})
        click(button(name));
    EXPECT_THAT(
        editor_->told,
        ElementsAre("open_pressed:", "save_pressed:", "back_pressed:", "forward_pressed:", "reset_pressed:"));
    for (const char* selector :
         {"open_pressed:", "save_pressed:", "back_pressed:", "forward_pressed:", "reset_pressed:"})
        EXPECT_EQ(senderOf(selector), &controller()) << selector;
}

TEST_F(WindowControllerTest, OpenSaveAndRestoreAreLoggedBeforeTheyGoOn) {
    start();
    show();
    std::map<std::string, std::string> loggedWhenTold;
    for (const char* selector : {"open_pressed:", "save_pressed:", "reset_pressed:", "back_pressed:"})
        editor_->acts[selector] = [&, selector] {
            settle();
            loggedWhenTold[selector] = currentNames().back();
        };
    for (const char* selector : {"open_pressed:", "save_pressed:", "reset_pressed:", "back_pressed:"})
        controller().performSelector(selector);
    EXPECT_EQ(loggedWhenTold["open_pressed:"], "button open pressed.");
    EXPECT_EQ(loggedWhenTold["save_pressed:"], "button Save pressed: toolbar.");
    EXPECT_EQ(loggedWhenTold["reset_pressed:"], "button restoreImage pressed: toolbar.");
    EXPECT_EQ(loggedWhenTold["back_pressed:"], "button restoreImage pressed: toolbar.");
}

TEST_F(WindowControllerTest, TheTitlesCloseControlQuitsAndIsThereInFullScreenOnly) {
    show();
    EXPECT_FALSE(button("Quit").isVisible());
    controller().performSelector("toggleFullScreen:");
    update();
    ASSERT_TRUE(button("Quit").isVisible());
    click(button("Quit"));
    EXPECT_EQ(quits_, 1);
    controller().performSelector("toggleFullScreen:");
    update();
    EXPECT_FALSE(button("Quit").isVisible());
}

TEST_F(WindowControllerTest, ASheetHangsFromTheContentViewsTopEdge) {
    show();
    const foundation::Rect place = controller().window_willPositionSheet_usingRect({30, 700, 200, 5});
    EXPECT_EQ(place, (foundation::Rect{30, static_cast<double>(editor_->widget->height()), 200, 5}));
    WindowController bare({queues.mainQueue(), notifications, application()}, {});
    EXPECT_EQ(bare.window_willPositionSheet_usingRect({30, 700, 200, 5}), (foundation::Rect{30, 0, 200, 5}));
}

TEST_F(WindowControllerTest, WhatIsMissingDoesNothing) {
    AppDelegate nobody({queues.mainQueue(), workspace_, [] {}, [] {}, [] { return std::string(); }, [] {}});
    WindowController bare({queues.mainQueue(), notifications, nobody}, {});
    bare.setWindow(nullptr);
    bare.windowDidLoad();
    settle();
    for (const char* selector : {"showButton", "disableButtons", "enableButtons",
                                 "back_pressed:", "forward_pressed:", "performClose:", "toggleFullScreen:"})
        bare.performSelector(selector);
    bare.performSelector("updateHistoryButtons:", &editor_->view());
    EXPECT_FALSE(bare.hasUnsavedWork());
    EXPECT_EQ(bare.btnSave(), nullptr);
    EXPECT_THAT(editor_->told, IsEmpty());
}

}  // namespace
}  // namespace trimora::app
