#include "platform/TrayItem.h"

#include <gtest/gtest.h>

#include <QAction>

namespace trimora::platform {
namespace {

TEST(TrayItem, ItsMenuIsMadeAnewAtEveryRequest) {
    bool visible = true;
    int chosen = 0;
    TrayItem item(
        {},
        [&](QMenu& menu) {
            QAction* const show = menu.addAction("Show", [&] { ++chosen; });
            show->setCheckable(true);
            show->setChecked(visible);
        },
        [] {});
    ASSERT_EQ(item.menu().actions().size(), 1);
    EXPECT_TRUE(item.menu().actions().front()->isChecked());

    visible = false;
    emit item.menu().aboutToShow();
    ASSERT_EQ(item.menu().actions().size(), 1);
    EXPECT_FALSE(item.menu().actions().front()->isChecked());
    item.menu().actions().front()->trigger();
    EXPECT_EQ(chosen, 1);
}

TEST(TrayItem, ADesktopWithoutATrayIsNoFailure) {
    EXPECT_FALSE(TrayItem::isSeen());
    const TrayItem item(
        {}, [](QMenu&) {}, [] {});
}

}  // namespace
}  // namespace trimora::platform
