#include "app/Toolbar.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QStringList>

#include "app/ShellForTests.h"
#include "controls/Metrics.h"

namespace trimora::app {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

/// The window's own toolbar with a picture's buttons, at widths that the test gives it.
class ToolbarTest : public ShellTest {
 protected:
    void SetUp() override {
        ShellTest::SetUp();
        openPicture();
        window().setMinimumSize(0, 0);
        show();
    }
    void narrow(int width) {
        bar().setFixedWidth(width);
        update();
    }
    Toolbar& bar() { return window().toolbar(); }
    QWidget& titleView() { return *button("Quit").parentWidget(); }
    std::vector<std::string> overflowed() {
        std::vector<std::string> names;
        for (const auto* gone : bar().overflowed())
            names.push_back(gone->accessibleName().toStdString());
        return names;
    }
    QRect placeOf(const char* name) {
        return {button(name).mapTo(&bar(), QPoint(0, 0)), button(name).size()};
    }
};

TEST_F(ToolbarTest, IsAsHighAsItShouldBe) {
    EXPECT_EQ(bar().height(), controls::metrics::kToolbarHeight);
    EXPECT_EQ(button("Open").height(), controls::metrics::kBarButton);
}

TEST_F(ToolbarTest, KeepsTheTitleInTheMiddle) {
    narrow(1100);
    EXPECT_EQ(titleView().geometry().center().x(), bar().rect().center().x());
    EXPECT_EQ(titleView().width(), controls::metrics::kTitleMost);
}

TEST_F(ToolbarTest, EverythingFitsTheSmallestWindow) {
    narrow(controls::metrics::kSmallestWidth);
    EXPECT_THAT(overflowed(), IsEmpty());
    EXPECT_FALSE(bar().moreButton().isVisible());
    EXPECT_GE(titleView().width(), controls::metrics::kTitleLeast);
}

TEST_F(ToolbarTest, TheTitleGivesItsRoomUpFirst) {
    int titleBefore = 0;
    for (int width = 800; bar().overflowed().isEmpty(); width -= 8) {
        titleBefore = titleView().width();
        narrow(width);
    }
    EXPECT_LT(titleBefore, controls::metrics::kTitleLeast / 4);
}

TEST_F(ToolbarTest, ButtonsLeaveFromTheEndForTheMenuOfMore) {
    std::vector<std::string> left;
    for (int width = 800; width >= 0; width -= 8) {
        narrow(width);
        if (overflowed().size() > left.size())
            left.push_back(overflowed().front());
        EXPECT_EQ(overflowed().size(), left.size()) << "two at once at " << width;
        EXPECT_EQ(bar().moreButton().isVisible(), !left.empty());
        for (const auto& name : left)
            EXPECT_FALSE(button(name.c_str()).isVisible()) << name;
    }
    EXPECT_THAT(left, ElementsAre("Restore image", "Redo", "Undo", "Save", "Open"));
}

TEST_F(ToolbarTest, NothingOverlapsOrLeavesTheBarAtAnyWidth) {
    for (int width = 80; width <= 1000; width += 23) {
        narrow(width);
        QRegion taken;
        for (const char* name : {"Open", "Save", "Undo", "Redo", "Restore image", "More"}) {
            if (!button(name).isVisible())
                continue;
            const QRect place = placeOf(name);
            EXPECT_TRUE(bar().rect().contains(place)) << name << " at " << width;
            EXPECT_FALSE(taken.intersects(place)) << name << " at " << width;
            EXPECT_GE(place.width(), button(name).sizeHint().width()) << name << " at " << width;
            taken += place;
        }
        EXPECT_FALSE(taken.intersects(titleView().geometry())) << width;
    }
}

TEST_F(ToolbarTest, TheMenuOfMoreHasTheButtonsStatesAndPressesThem) {
    narrow(200);
    stroke();
    click(bar().moreButton());
    ASSERT_TRUE(bar().moreMenu().isVisible());
    for (QAction* entry : bar().moreMenu().actions()) {
        EXPECT_EQ(entry->isEnabled(), button(entry->text().toUtf8()).isEnabled())
            << entry->text().toStdString();
        if (entry->text() == "Restore image")
            entry->trigger();
    }
    bar().moreMenu().close();
    EXPECT_THAT(editor_->told, ElementsAre("reset_pressed:"));
}

TEST_F(ToolbarTest, WhatLeftComesBackWithTheRoom) {
    narrow(150);
    ASSERT_FALSE(bar().overflowed().isEmpty());
    narrow(1000);
    EXPECT_THAT(overflowed(), IsEmpty());
    EXPECT_TRUE(button("Restore image").isVisible());
    EXPECT_FALSE(bar().moreButton().isVisible());
}

TEST_F(ToolbarTest, IsMirroredWhereLanguagesAreWrittenSo) {
    narrow(1000);
    const int left = placeOf("Open").left();
    bar().setLayoutDirection(Qt::RightToLeft);
    update();
    EXPECT_EQ(bar().width() - 1 - placeOf("Open").right(), left);
}

TEST_F(ToolbarTest, TabGoesThroughItsButtonsAndSpacePressesThem) {
    stroke();
    button("Open").setFocus(Qt::TabFocusReason);
    QStringList reached;
    for (int i = 0; i < 4; ++i) {
        reached += window().focusWidget()->accessibleName();
        press(Qt::Key_Tab);
    }
    EXPECT_EQ(reached, QStringList({"Open", "Save", "Undo", "Restore image"}));
    button("Open").setFocus(Qt::TabFocusReason);
    press(Qt::Key_Space);
    EXPECT_THAT(editor_->told, ElementsAre("open_pressed:"));
}

TEST_F(ToolbarTest, EveryButtonHasANameAndAToolTip) {
    int count = 0;
    for (const auto* found : bar().findChildren<QAbstractButton*>()) {
        ++count;
        EXPECT_FALSE(found->accessibleName().isEmpty());
        EXPECT_FALSE(found->toolTip().isEmpty()) << found->accessibleName().toStdString();
        EXPECT_NE(found->focusPolicy() & Qt::TabFocus, 0) << found->accessibleName().toStdString();
    }
    EXPECT_EQ(count, 7);
    EXPECT_EQ(button("Open").toolTip(), "Open a picture (Ctrl+O)");
}

}  // namespace
}  // namespace trimora::app
