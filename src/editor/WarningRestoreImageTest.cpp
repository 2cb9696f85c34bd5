#include "editor/WarningRestoreImage.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QApplication>
#include <QLabel>
#include <QPointer>
#include <QTest>

#include "controls/ControlsForTests.h"
#include "controls/GradientButton.h"
#include "editor/EditorNotifications.h"
#include "editor/WarningRestoreImageController.h"

namespace trimora::editor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class WarningRestoreImageTest : public ::testing::Test {
 protected:
    WarningRestoreImageTest()
        : reset_(world_.notifications.observe("resetImageNotif",
                                              [this](const auto&) { order_.emplace_back("reset"); })) {}

    controls::VirtualWorld world_;
    std::vector<std::string> order_;
    foundation::NotificationCenter::Observation reset_;
};

TEST_F(WarningRestoreImageTest, YesRunsTheHandlerAndThenPosts) {
    WarningRestoreImage warning(world_.context());
    warning.setCancelActionHandler([this] { order_.emplace_back("dismissed"); });
    warning.yesDeleteProgress().click();
    EXPECT_THAT(order_, ElementsAre("dismissed", "reset"));
}

TEST_F(WarningRestoreImageTest, NoRunsTheHandlerAlone) {
    WarningRestoreImage warning(world_.context());
    warning.setCancelActionHandler([this] { order_.emplace_back("dismissed"); });
    warning.noDeleteProgress().click();
    EXPECT_THAT(order_, ElementsAre("dismissed"));
}

TEST_F(WarningRestoreImageTest, YesWithoutAHandlerRestoresNothing) {
    WarningRestoreImage warning(world_.context());
    warning.clickYes();
    warning.clickNo();
    EXPECT_THAT(order_, IsEmpty());
}

TEST(SheetOutline, AHangingSheetIsRoundBelowAndAFloatingOneAllRound) {
    const QRectF rect(0, 0, 306, 113);
    const QPainterPath hanging = controls::sheetOutline(rect, 5, controls::SheetCorners::lower);
    EXPECT_TRUE(hanging.contains(QPointF(0.5, 0.5)));
    EXPECT_TRUE(hanging.contains(QPointF(305.5, 0.5)));
    EXPECT_FALSE(hanging.contains(QPointF(0.5, 112.5)));
    EXPECT_FALSE(hanging.contains(QPointF(305.5, 112.5)));
    const QPainterPath floating = controls::sheetOutline(rect, 5, controls::SheetCorners::all);
    EXPECT_FALSE(floating.contains(QPointF(0.5, 0.5)));
    EXPECT_FALSE(floating.contains(QPointF(305.5, 112.5)));
    EXPECT_TRUE(floating.contains(rect.center()));
}

class WarningSheetTest : public WarningRestoreImageTest {
 protected:
    void SetUp() override {
        window_.resize(800, 600);
        screen_.setGeometry(0, 52, 800, 548);
        window_.show();
        sheet_ = new WarningRestoreImageController(world_.context(), screen_);
        sheet_->presentAsSheet();
        world_.settle();
    }
    void TearDown() override {
        QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
        EXPECT_EQ(sheet_ == nullptr, answered_) << "an answered sheet is gone, and only that";
    }
    /// The sheet is there no more; what was posted stands in order_.
    void expectDismissed() {
        answered_ = true;
        EXPECT_FALSE(sheet_ != nullptr && sheet_->isVisible());
    }

    QWidget window_;
    QWidget screen_{&window_};
    QPointer<WarningRestoreImageController> sheet_;
    bool answered_ = false;
};

TEST_F(WarningSheetTest, ItHangsFromTheScreensUpperEdgeAndHoldsItsWindow) {
    EXPECT_EQ(sheet_->size(), QSize(306, 113));
    EXPECT_EQ(sheet_->pos(), screen_.mapToGlobal(QPoint((800 - 306) / 2, 0)));
    EXPECT_EQ(sheet_->windowModality(), Qt::WindowModal);
    EXPECT_TRUE(sheet_->windowFlags().testFlag(Qt::FramelessWindowHint));
    EXPECT_EQ(sheet_->warningView().corners(), controls::SheetCorners::lower);
    EXPECT_EQ(sheet_->warningView().geometry(), QRect(0, 0, 306, 113));
}

TEST_F(WarningSheetTest, TheKeyboardBeginsOnNo) {
    sheet_->activateWindow();
    world_.settle();
    EXPECT_EQ(sheet_->focusWidget(), &sheet_->warningView().noDeleteProgress());
    QTest::keyClick(sheet_->focusWidget(), Qt::Key_Return);
    expectDismissed();
    EXPECT_THAT(order_, IsEmpty());
}

TEST_F(WarningSheetTest, ARingShowsWhatReturnAnswers) {
    sheet_->activateWindow();
    world_.settle();
    auto& no = sheet_->warningView().noDeleteProgress();
    const QImage withRing = no.grab().toImage();
    sheet_->warningView().yesDeleteProgress().setFocus();
    EXPECT_NE(no.grab().toImage(), withRing);
}

TEST_F(WarningSheetTest, EscapeIsNo) {
    QTest::keyClick(sheet_.data(), Qt::Key_Escape);
    expectDismissed();
    EXPECT_THAT(order_, IsEmpty());
}

TEST_F(WarningSheetTest, ClosingIsNo) {
    sheet_->close();
    expectDismissed();
    EXPECT_THAT(order_, IsEmpty());
}

TEST_F(WarningSheetTest, YesDismissesBeforeTheReset) {
    bool shownAtReset = true;
    const auto watch = world_.notifications.observe(notifications::kResetImage,
                                                    [&](const auto&) { shownAtReset = sheet_->isVisible(); });
    sheet_->warningView().yesDeleteProgress().click();
    expectDismissed();
    EXPECT_THAT(order_, ElementsAre("reset"));
    EXPECT_FALSE(shownAtReset);
}

TEST_F(WarningSheetTest, EverythingOnItIsNamedForScreenReaders) {
    EXPECT_EQ(sheet_->windowTitle(), sheet_->warningView().infoLabel().text());
    EXPECT_FALSE(sheet_->windowTitle().isEmpty());
}

}  // namespace
}  // namespace trimora::editor
