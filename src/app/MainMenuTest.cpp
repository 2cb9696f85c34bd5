#include "app/MainMenu.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QMenu>
#include <QMenuBar>
#include <QSet>

#include "app/ShellForTests.h"

namespace trimora::app {
namespace {

using std::filesystem::path;
using ::testing::ElementsAre;
using ::testing::IsEmpty;

class MainMenuTest : public ShellTest {
 protected:
    QMenu& menu(const char* title) {
        for (const QAction* found : window().menuBar()->actions()) {
            if (found->text().remove(u'&') == title)
                return *found->menu();
        }
        throw std::out_of_range(title);
    }
    /// Opens the menu as a press on it does, and closes it again.
    void look(const char* title) {
        menu(title).popup({0, 0});
        update();
        menu(title).close();
        update();
    }
    std::vector<std::string> checkedIn(const char* title) {
        look(title);
        std::vector<std::string> checked;
        for (const QAction* found : menu(title).actions()) {
            if (found->isChecked())
                checked.push_back(found->text().remove(u'&').toStdString());
        }
        return checked;
    }
};

TEST_F(MainMenuTest, TheMenusAreThoseOfTheTable) {
    std::vector<std::string> titles;
    int items = 0;
    for (const QAction* found : window().menuBar()->actions()) {
        titles.push_back(found->text().remove(u'&').toStdString());
        for (const QAction* entry : found->menu()->actions())
            items += entry->isSeparator() ? 0 : 1;
    }
    EXPECT_THAT(titles, ElementsAre("File", "Edit", "View", "Tools", "Background", "Help"));
    EXPECT_EQ(items, static_cast<int>(menuRows().size()));
}

TEST_F(MainMenuTest, NoTwoCommandsShareAKeyASelectorOrALetterInTheirMenu) {
    QSet<QString> keys;
    QSet<QString> selectors;
    QSet<QString> letters;
    for (const MenuRow& row : menuRows()) {
        for (const QKeySequence& key : keysOf(row)) {
            EXPECT_FALSE(keys.contains(key.toString())) << key.toString().toStdString();
            keys.insert(key.toString());
        }
        EXPECT_FALSE(selectors.contains(row.selector)) << row.selector;
        selectors.insert(row.selector);
        const QString text = textOf(row);
        const QString letter = row.menu + text.mid(text.indexOf(u'&') + 1, 1).toLower();
        EXPECT_FALSE(letters.contains(letter)) << letter.toStdString();
        letters.insert(letter);
    }
}

TEST_F(MainMenuTest, EveryKeyOfTheHouseHasItsCommand) {
    const std::pair<const char*, const char*> expected[] = {
        {"new_pressed:", "Ctrl+N"},
        {"openPicture:", "Ctrl+O"},
        {"save_pressed:", "Ctrl+S"},
        {"performClose:", "Ctrl+W"},
        {"terminate:", "Ctrl+Q"},
        {"undo_pressed:", "Ctrl+Z"},
        {"reset_pressed:", "Ctrl+Shift+R"},
        {"toggleFullScreen:", "F11"},
        {"hand_pressed_new:", "H"},
        {"brush_pressed_new:", "B"},
        {"invertBrush_pressed_new:", "R"},
        {"swapBrushes:", "X"},
        {"smallerBrush:", "["},
        {"largerBrush:", "]"},
        {"chooseEraserMode:", "1"},
        {"chooseColorMode:", "2"},
        {"chooseBlurMode:", "3"},
        {"zoomToFit:", "0"},
    };
    for (const auto& [selector, key] : expected)
        EXPECT_EQ(item(selector).shortcut().toString(), key) << selector;
    EXPECT_TRUE(item("redo_pressed:").shortcuts().contains(QKeySequence("Ctrl+Shift+Z")));
    EXPECT_TRUE(item("redo_pressed:").shortcuts().contains(QKeySequence("Ctrl+Y")));
}

TEST_F(MainMenuTest, EveryRowReachesSomebodyWhoResponds) {
    for (const MenuRow& row : menuRows()) {
        const bool responds =
            row.receiver == Receiver::recentFiles ||
            (row.receiver == Receiver::application && application().respondsToSelector(row.selector)) ||
            (row.receiver == Receiver::window && controller().respondsToSelector(row.selector)) ||
            (row.receiver == Receiver::editor && editor_->respondsToSelector(row.selector));
        EXPECT_TRUE(responds) << row.selector;
    }
}

TEST_F(MainMenuTest, KeysGiveCommands) {
    show();
    openPicture();
    for (const QKeyCombination key : {QKeyCombination(Qt::Key_H), QKeyCombination(Qt::Key_BracketLeft),
                                      Qt::CTRL | Qt::Key_N, QKeyCombination(Qt::Key_3)})
        press(key);
    EXPECT_THAT(editor_->told,
                ElementsAre("hand_pressed_new:", "smallerBrush:", "askForSave", "chooseBlurMode:"));
}

TEST_F(MainMenuTest, F10OpensTheFirstMenu) {
    show();
    press(Qt::Key_F10);
    update();
    EXPECT_TRUE(menu("File").isVisible());
    menu("File").close();
}

TEST_F(MainMenuTest, UndoRedoRestoreAndSaveAreEnabledAsTheToolbarIs) {
    show();
    openPicture();
    for (const char* selector : {"save_pressed:", "undo_pressed:", "redo_pressed:", "reset_pressed:"})
        EXPECT_FALSE(item(selector).isEnabled()) << selector;
    press(Qt::CTRL | Qt::Key_Z);
    EXPECT_THAT(editor_->told, IsEmpty());
    stroke();
    EXPECT_TRUE(item("save_pressed:").isEnabled());
    EXPECT_TRUE(item("undo_pressed:").isEnabled());
    EXPECT_FALSE(item("redo_pressed:").isEnabled());
    EXPECT_TRUE(item("reset_pressed:").isEnabled());
    press(Qt::CTRL | Qt::Key_Z);
    press(Qt::CTRL | Qt::SHIFT | Qt::Key_R);
    EXPECT_THAT(editor_->told, ElementsAre("back_pressed:", "reset_pressed:"));
    controller().disableButtons();
    EXPECT_FALSE(item("undo_pressed:").isEnabled());
    controller().enableButtons();
    EXPECT_TRUE(item("undo_pressed:").isEnabled());
}

TEST_F(MainMenuTest, ToolsAreCheckedAsTheCutViewHasThemWhenTheMenuOpens) {
    show();
    openPicture();
    cutengine::RKImageCutView& view = editor_->view();
    view.setBrushAlphaValue(0);
    EXPECT_THAT(checkedIn("Tools"), ElementsAre("Brush"));
    view.setBrushAlphaValue(1);
    EXPECT_THAT(checkedIn("Tools"), ElementsAre("Restore brush"));
    view.setDragMode(cutengine::DragMode::pan);
    EXPECT_THAT(checkedIn("Tools"), ElementsAre("Hand"));
}

TEST_F(MainMenuTest, ACommandThatTheEditorRefusesLeavesTheCheckMarks) {
    show();
    openPicture();
    item("hand_pressed_new:").trigger();
    EXPECT_FALSE(item("hand_pressed_new:").isChecked());
    EXPECT_TRUE(item("brush_pressed_new:").isChecked());
}

TEST_F(MainMenuTest, BackgroundsAreCheckedAsTheCutViewShowsThem) {
    show();
    openPicture();
    cutengine::RKImageCutView& view = editor_->view();
    EXPECT_THAT(checkedIn("Background"), ElementsAre("Transparent"));
    view.setBlurOn(true);
    EXPECT_THAT(checkedIn("Background"), ElementsAre("Blur"));
    view.setBrushColor(cutengine::Colour{1, 0, 0, 1});
    view.setBlurOn(false);
    EXPECT_THAT(checkedIn("Background"), ElementsAre("Colour"));
    view.setColorOn(true);
    EXPECT_THAT(checkedIn("Background"), ElementsAre("Transparent"));
}

TEST_F(MainMenuTest, AnOpenMenuIsGreyWhereAPictureIsMissingButKeysGoOn) {
    show();
    bool enabledWhileOpen = true;
    QObject::connect(&menu("View"), &QMenu::aboutToShow, &menu("View"),
                     [&] { enabledWhileOpen = item("zoomIn:").isEnabled(); });
    look("View");
    EXPECT_FALSE(enabledWhileOpen);
    EXPECT_TRUE(item("zoomIn:").isEnabled());
    openPicture();
    look("View");
    EXPECT_TRUE(enabledWhileOpen);
}

TEST_F(MainMenuTest, FullScreenIsCheckedWhileItIs) {
    show();
    press(Qt::Key_F11);
    EXPECT_THAT(checkedIn("View"), ElementsAre("Full screen", "Show window"));
    press(Qt::Key_F11);
    EXPECT_THAT(checkedIn("View"), ElementsAre("Show window"));
}

TEST_F(MainMenuTest, ChoosingShowWindowDoesNotChangeItsCheckMark) {
    show();
    ASSERT_TRUE(item("showWindowAction:").isChecked());
    item("showWindowAction:").trigger();
    EXPECT_TRUE(item("showWindowAction:").isChecked());
}

TEST_F(MainMenuTest, RecentFilesAreListedAnewEachTimeAndOpened) {
    show();
    std::vector<path> files;
    std::vector<path> opened;
    editor_->widget = new editor::CutViewWidget({queues, time, notifications, home.path() / "other"});
    shell_->setContent(*editor_, editor_->widget,
                       {.cutView = [this] { return &editor_->view(); },
                        .recentFiles = [&] { return files; },
                        .openRecent = [&](const path& file) { opened.push_back(file); },
                        .clearRecent = [&] { files.clear(); }});
    QMenu& recent = shell_->menu().recentMenu();
    look("File");
    EXPECT_FALSE(recent.isEnabled());
    files = {"/p/cat.png", "/p/cat & dog.png"};
    look("File");
    EXPECT_TRUE(recent.isEnabled());
    recent.popup({0, 0});
    ASSERT_EQ(recent.actions().size(), 4);
    EXPECT_EQ(recent.actions()[0]->text(), "&1 cat.png");
    EXPECT_EQ(recent.actions()[1]->text(), "&2 cat && dog.png");
    recent.actions()[1]->trigger();
    EXPECT_THAT(opened, ElementsAre("/p/cat & dog.png"));
    recent.actions()[3]->trigger();
    EXPECT_THAT(files, IsEmpty());
    recent.close();
}

TEST_F(MainMenuTest, AMenuOpensByItsLetter) {
    show();
    press(Qt::ALT | Qt::Key_T);
    EXPECT_TRUE(menu("Tools").isVisible());
    QTest::keyClick(&menu("Tools"), Qt::Key_Escape);
    EXPECT_FALSE(menu("Tools").isVisible());
}

TEST_F(MainMenuTest, TheProgramMayEndWithAMenuOpen) {
    show();
    menu("File").popup({0, 0});
    update();
    shell_.reset();
    update();
    EXPECT_THAT(editor_->told, IsEmpty());
}

TEST_F(MainMenuTest, AltAloneLeavesTheKeyboardWithThePicture) {
    show();
    QTest::keyClick(window().windowHandle(), Qt::Key_Alt);
    EXPECT_TRUE(editor_->widget->hasFocus());
}

}  // namespace
}  // namespace trimora::app
