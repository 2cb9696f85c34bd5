#include "app/MainWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QDialog>
#include <QWindow>

#include "app/ShellForTests.h"
#include "app/Toolbar.h"
#include "controls/Metrics.h"

namespace trimora::app {
namespace {

class MainWindowTest : public ShellTest {};

TEST_F(MainWindowTest, IsNoSmallerThanItsPanelsNeed) {
    show();
    window().resize(100, 100);
    EXPECT_EQ(window().size(), QSize(800, 560));
}

TEST_F(MainWindowTest, GivesTheContentAllBelowTheToolbarAndTheKeyboard) {
    show();
    const QRect content(editor_->widget->mapTo(&window(), QPoint(0, 0)), editor_->widget->size());
    EXPECT_EQ(content.top(), window().toolbar().mapTo(&window(), QPoint(0, 52)).y());
    EXPECT_EQ(content.bottom(), window().rect().bottom());
    EXPECT_EQ(content.width(), window().width());
    EXPECT_TRUE(editor_->widget->hasFocus());
    EXPECT_EQ(window().contentViewController(), editor_.get());
}

TEST_F(MainWindowTest, RemembersItsSizeAndPlace) {
    show();
    window().setGeometry(QRect(0, 40, 811, 577));
    update();
    window().close();
    ASSERT_FALSE(place_.empty());
    load();
    show();
    EXPECT_EQ(window().size(), QSize(811, 577));
    EXPECT_EQ(window().geometry().top(), 40);
}

TEST_F(MainWindowTest, AProgramThatEndsWithTheWindowOpenRemembersItsPlaceToo) {
    show();
    window().resize(820, 580);
    shell_.reset();
    load();
    EXPECT_EQ(window().size(), QSize(820, 580));
}

TEST_F(MainWindowTest, APlaceThatIsNotUnderstoodGivesANewWindow) {
    const QSize fresh = window().size();
    for (const char* place : {"", "nonsense", "AAAA"}) {
        place_ = place;
        load();
        EXPECT_EQ(window().size(), fresh) << place;
    }
}

TEST_F(MainWindowTest, FillsTheScreenAndComesBackByKey) {
    show();
    press(Qt::Key_F11);
    EXPECT_TRUE(window().isFullScreen());
    press(Qt::Key_F11);
    EXPECT_FALSE(window().isFullScreen());
}

TEST_F(MainWindowTest, ClosesByKeyAndKeepsThePicture) {
    show();
    openPicture();
    press(Qt::CTRL | Qt::Key_W);
    EXPECT_FALSE(window().isVisible());
    EXPECT_NE(editor_->view().image(), nullptr);
    EXPECT_EQ(quits_, 0);
}

TEST_F(MainWindowTest, ADialogOfTheWindowOpensUnderTheToolbarInTheMiddle) {
    show();
    const int bar = window().windowHandle()->frameMargins().top();
    for (const Qt::WindowType frame : {Qt::Dialog, Qt::FramelessWindowHint}) {
        QDialog sheet(&window(), Qt::Dialog | frame);
        sheet.resize(301, 120);
        sheet.open();
        update();
        const QPoint corner = window().mapFromGlobal(sheet.geometry().topLeft());
        EXPECT_EQ(corner.y(), window().toolbar().mapTo(&window(), QPoint(0, 52)).y() +
                                  (frame == Qt::FramelessWindowHint ? 0 : bar));
        EXPECT_NEAR(corner.x() + sheet.width() / 2.0, window().width() / 2.0, 1);
    }
}

TEST_F(MainWindowTest, ANewContentReplacesTheOneBefore) {
    show();
    auto* const other = new QWidget;
    window().setContentViewController(editor_.get(), other);
    update();
    EXPECT_EQ(window().contentView(), other);
    EXPECT_TRUE(other->isVisible());
}

}  // namespace
}  // namespace trimora::app
