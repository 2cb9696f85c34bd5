#include "util/ButtonBlocker.h"

#include <gtest/gtest.h>

#include <QPushButton>

namespace trimora::util {
namespace {

TEST(ButtonBlocker, AButtonBlockedByTwoKeysIsEnabledAgainAfterBoth) {
    QPushButton button;
    blockWith(button, "load");
    blockWith(button, "save");
    EXPECT_FALSE(button.isEnabled());
    unblockWith(button, "load");
    EXPECT_FALSE(button.isEnabled());
    unblockWith(button, "save");
    EXPECT_TRUE(button.isEnabled());
}

TEST(ButtonBlocker, AButtonThatWasDisabledStaysDisabled) {
    QPushButton button;
    button.setEnabled(false);
    blockWith(button, "load");
    unblockWith(button, "load");
    EXPECT_FALSE(button.isEnabled());
}

TEST(ButtonBlocker, OneKeyTwiceNeedsOneUnblock) {
    QPushButton button;
    blockWith(button, "load");
    blockWith(button, "load");
    unblockWith(button, "load");
    EXPECT_TRUE(button.isEnabled());
}

TEST(ButtonBlocker, AKeyThatBlockedNothingChangesNothing) {
    QPushButton button;
    button.setEnabled(false);
    unblockWith(button, "load");
    EXPECT_FALSE(button.isEnabled());
}

TEST(ButtonBlocker, EachBlockRemembersAfresh) {
    QPushButton button;
    blockWith(button, "load");
    unblockWith(button, "load");
    button.setEnabled(false);
    blockWith(button, "load");
    unblockWith(button, "load");
    EXPECT_FALSE(button.isEnabled());
}

TEST(ButtonBlocker, AButtonInADisabledPanelComesBackWithThePanel) {
    QWidget panel;
    auto* const button = new QPushButton(&panel);
    panel.setEnabled(false);
    blockWith(*button, "load");
    unblockWith(*button, "load");
    EXPECT_FALSE(button->isEnabled());
    panel.setEnabled(true);
    EXPECT_TRUE(button->isEnabled());
}

TEST(ButtonTitle, HasTheColourOfAllButtonsUntilOneIsSet) {
    QPushButton button("Open");
    EXPECT_EQ(titleColor(button), QPalette().color(QPalette::ButtonText));
    setTitleColor(button, QColor(1, 2, 3));
    EXPECT_EQ(titleColor(button), QColor(1, 2, 3));
}

TEST(ButtonTitle, HasTheColourInEveryState) {
    QPushButton button("Open");
    setTitleColor(button, Qt::red);
    for (const auto group : {QPalette::Active, QPalette::Inactive, QPalette::Disabled})
        EXPECT_EQ(button.palette().color(group, QPalette::ButtonText), QColor(Qt::red));
}

}  // namespace
}  // namespace trimora::util
