#include "app/Commands.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QMainWindow>
#include <QMenu>
#include <QMenuBar>
#include <QSet>
#include <vector>

namespace trimora::app {
namespace {

using ::testing::ElementsAre;

class CommandsTest : public ::testing::Test {
 protected:
    QMainWindow window_;
    std::vector<Command> given_;
    Commands commands_{window_, [this](Command command) { given_.push_back(command); }};
};

TEST_F(CommandsTest, TheMenusAreThoseOfTheTable) {
    commands_.fillMenus(*window_.menuBar());
    std::vector<std::string> titles;
    int items = 0;
    for (const QAction* menu : window_.menuBar()->actions()) {
        titles.push_back(menu->text().remove(u'&').toStdString());
        for (const QAction* item : menu->menu()->actions())
            items += item->isSeparator() ? 0 : 1;
    }
    EXPECT_THAT(titles, ElementsAre("File", "Edit", "View", "Tools", "Background", "Help"));
    EXPECT_EQ(items, static_cast<int>(Command::about) + 1);
}

TEST_F(CommandsTest, NoTwoCommandsShareAKeyOrALetterInTheirMenu) {
    commands_.fillMenus(*window_.menuBar());
    QSet<QString> keys;
    for (const QAction* menu : window_.menuBar()->actions()) {
        QSet<QString> letters;
        for (const QAction* item : menu->menu()->actions()) {
            for (const QKeySequence& key : item->shortcuts()) {
                EXPECT_FALSE(keys.contains(key.toString())) << key.toString().toStdString();
                keys.insert(key.toString());
            }
            const qsizetype mark = item->text().indexOf(u'&');
            if (mark < 0)
                continue;
            const QString letter = item->text().mid(mark + 1, 1).toLower();
            EXPECT_FALSE(letters.contains(letter)) << item->text().toStdString();
            letters.insert(letter);
        }
    }
    EXPECT_TRUE(keys.contains("Ctrl+Shift+Z"));
    EXPECT_TRUE(keys.contains("Ctrl+Y"));
    EXPECT_TRUE(keys.contains("["));
}

TEST_F(CommandsTest, GivingACommandRunsIt) {
    commands_.action(Command::undo).trigger();
    commands_.action(Command::handTool).trigger();
    EXPECT_THAT(given_, ElementsAre(Command::undo, Command::handTool));
    EXPECT_TRUE(commands_.isChecked(Command::handTool));
}

TEST_F(CommandsTest, OneToolAndOneBackgroundAreChecked) {
    commands_.check(Command::brushTool);
    commands_.check(Command::blurBackground);
    commands_.check(Command::handTool);
    EXPECT_FALSE(commands_.isChecked(Command::brushTool));
    EXPECT_TRUE(commands_.isChecked(Command::blurBackground));
}

TEST_F(CommandsTest, AToolTipNamesItsKey) {
    EXPECT_EQ(commands_.action(Command::brushTool).toolTip(), "Cut away what you paint over (B)");
    EXPECT_TRUE(Commands::shortcutTable().contains("Ctrl+Shift+Z, Ctrl+Y"));
}

}  // namespace
}  // namespace trimora::app
