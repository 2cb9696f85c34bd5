#include "editor/ViewController.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAction>
#include <QMenu>
#include <QPointer>
#include <QToolButton>
#include <QWidgetAction>

#include "controls/CustomViewWithButton.h"
#include "controls/GradientButton.h"
#include "editor/EditorScreenForTests.h"
#include "editor/HintArrow.h"
#include "editor/MiniMap.h"
#include "editor/WarningRestoreImageController.h"

namespace trimora::editor {
namespace {

using ::testing::ElementsAre;
using ::testing::IsEmpty;

class ViewControllerTest : public EditorScreenTest {
 protected:
    std::int64_t cursorUpdatesAfter(double seconds) {
        // The pointer is chosen anew where it would otherwise stay as the test leaves it.
        static_cast<QWidget&>(cutWidget()).setCursor(Qt::ForbiddenCursor);
        wait(seconds);
        return cutWidget().cursor().shape() == Qt::ForbiddenCursor ? 0 : 1;
    }
};

TEST_F(ViewControllerTest, NoCommandNeedsAPicture) {
    for (const char* selector : {"hand_pressed_new:", "brush_pressed_new:", "blur_pressed:", "back_pressed:",
                                 "forward_pressed:", "resetImage", "save_pressed:", "chooseColorMode:",
                                 "zoomIn:", "zoomOut:", "zoomToFit:", "actualSize:", "copy:", "askForSave"})
        send(selector);
    EXPECT_EQ(view().image(), nullptr);
    EXPECT_THAT(panels_.questions, IsEmpty());
}

TEST_F(ViewControllerTest, RestoringWithoutAPictureIsNoStepOfTheHistory) {
    view().setImage(nullptr);
    rest();
    send("resetImage");
    rest();
    EXPECT_EQ(view().historyCurrentState(), 0);
    EXPECT_EQ(view().historyLength(), 1);
}

TEST_F(ViewControllerTest, AStartMakesTheDropAreaAndACommandTheRest) {
    controller_.reset();
    controller_ = std::make_unique<ViewController>(services());
    screen().show();
    rest();
    EXPECT_NE(screen().findChild<QWidget*>("openPictureButton"), nullptr);
    EXPECT_EQ(screen().findChild<QWidget*>("toolStrip"), nullptr);
    send("hand_pressed_new:");
    EXPECT_NE(screen().findChild<QWidget*>("toolStrip"), nullptr);
    EXPECT_EQ(view().dragMode(), cutengine::DragMode::pan);
    EXPECT_FALSE(outlets().viLeftPanelVariant2->isVisible()) << "as after the first appearance";
}

TEST_F(ViewControllerTest, TabComesToTheDropAreaAfterThePanels) {
    const QWidget* next = outlets().btnSave->nextInFocusChain();
    while (!(next->focusPolicy() & Qt::TabFocus))
        next = next->nextInFocusChain();
    EXPECT_EQ(next->objectName(), "openPictureButton");
}

TEST_F(ViewControllerTest, TheSecondSetOfQuickControlsIsInUse) {
    EXPECT_EQ(outlets().btnBrush, outlets().btnBrush2);
    EXPECT_EQ(outlets().btnInvertBrush, outlets().btnInvertBrush2);
    EXPECT_EQ(outlets().btnBlur, outlets().btnBlur2);
    EXPECT_EQ(outlets().sldBrushDiameter, outlets().sldBrushDiameter2);
    EXPECT_TRUE(outlets().viLeftPanelVariant1->isHidden());
}

// ── Panels ─────────────────────────────────────────────────────────────────────────────────────

TEST_F(ViewControllerTest, TheQuickPanelsAreHiddenAtTheFirstAppearanceAlone) {
    EXPECT_EQ(constraints().constrLeftPanelLeading.constant(), -50);
    EXPECT_EQ(constraints().constrLeftPanelLeading2.constant(), -outlets().viLeftPanelVariant2->width());
    EXPECT_EQ(constraints().constrRightPanelTrailing2.constant(), -outlets().viRightPanelVariant2->width());
    EXPECT_LE(outlets().viLeftPanelVariant2->geometry().right(), 0);
    // Nor does the keyboard go there.
    EXPECT_FALSE(outlets().viLeftPanelVariant2->isVisible());
    EXPECT_FALSE(outlets().viRightPanelVariant2->isVisible());
    send("showInterface");
    wait(1);
    screen().hide();
    screen().show();
    EXPECT_EQ(constraints().constrLeftPanelLeading2.constant(), 0);
}

TEST_F(ViewControllerTest, TheArrowMovesFromTheFirstAppearanceOn) {
    EXPECT_TRUE(outlets().ivArrow->layer().hasAnimation("group"));
}

TEST_F(ViewControllerTest, LaterAppearancesStartNoArrow) {
    const_cast<controls::ImageLayer&>(outlets().ivArrow->layer()).removeAnimation("group");
    screen().hide();
    screen().show();
    rest();
    EXPECT_FALSE(outlets().ivArrow->layer().hasAnimation("group"));
}

TEST_F(ViewControllerTest, PanelsAreCalledUpAndHideByTheirWidthOfThatMoment) {
    open({"/p/cat.png"});
    send("showInterface");
    wait(0.5);
    EXPECT_EQ(constraints().constrLeftPanelLeading.constant(), 0);
    EXPECT_EQ(outlets().viLeftPanelVariant2->x(), 0);
    EXPECT_TRUE(outlets().viLeftPanelVariant2->isVisible());
    EXPECT_TRUE(outlets().viRightPanelVariant2->isVisible());
    EXPECT_EQ(outlets().viRightPanelVariant2->geometry().right(), cutWidget().width() - 1);
    outlets().viLeftPanelVariant2->resize(200, 100);
    send("hideInterface");
    EXPECT_GT(constraints().constrLeftPanelLeading2.constant(), -200);
    wait(0.5);
    EXPECT_EQ(constraints().constrLeftPanelLeading2.constant(), -200);
}

TEST_F(ViewControllerTest, AStrokeSlidesThePanelsAwayInAFifthOfASecond) {
    open({"/p/cat.png"});
    send("showInterface");
    wait(1);
    QTest::mousePress(&cutWidget(), Qt::LeftButton, {}, cutWidget().rect().center());
    EXPECT_TRUE(controller_->isDrawingStroke());
    wait(0.1);
    EXPECT_LT(constraints().constrRightPanelTrailing2.constant(), 0);
    EXPECT_GT(constraints().constrRightPanelTrailing2.constant(), -outlets().viRightPanelVariant2->width());
    wait(0.12);
    EXPECT_EQ(constraints().constrRightPanelTrailing2.constant(), -outlets().viRightPanelVariant2->width());
    QTest::mouseRelease(&cutWidget(), Qt::LeftButton, {}, cutWidget().rect().center());
    EXPECT_FALSE(controller_->isDrawingStroke());
}

TEST_F(ViewControllerTest, NothingThatSlidesMovesThePicture) {
    const QRect place = cutWidget().geometry();
    open({"/p/cat.png"});
    EXPECT_EQ(cutWidget().geometry(), place);
    send("showInterface");
    wait(1);
    EXPECT_EQ(cutWidget().geometry(), place);
}

// ── Strokes and history ────────────────────────────────────────────────────────────────────────

TEST_F(ViewControllerTest, AStrokeMakesThereBeSomethingToSave) {
    open({"/p/cat.png"});
    EXPECT_FALSE(toolbar_.save.isEnabled());
    EXPECT_EQ(controller_->saveEnabled(), 0);
    stroke();
    EXPECT_TRUE(toolbar_.save.isEnabled());
    EXPECT_TRUE(outlets().btnSave->isEnabled());
    EXPECT_EQ(controller_->saveEnabled(), 1);
}

TEST_F(ViewControllerTest, TheToolbarHearsOfEveryHistoryState) {
    open({"/p/cat.png"});
    stroke();
    ASSERT_FALSE(toolbar_.states.empty());
    EXPECT_EQ(toolbar_.states.back(), (std::pair<std::int64_t, std::int64_t>{1, 2}));
    send("back_pressed:");
    EXPECT_EQ(toolbar_.states.back(), (std::pair<std::int64_t, std::int64_t>{0, 2}));
    send("forward_pressed:");
    EXPECT_EQ(toolbar_.states.back(), (std::pair<std::int64_t, std::int64_t>{1, 2}));
    EXPECT_THAT(events(), ElementsAre("button History: back toolbar", "button History: forward toolbar"));
}

TEST_F(ViewControllerTest, ThePointerIsChosenAnewHalfASecondAfterTheLastStroke) {
    open({"/p/cat.png"});
    stroke();
    EXPECT_EQ(cursorUpdatesAfter(0.3), 0);
    stroke();
    EXPECT_EQ(cursorUpdatesAfter(0.3), 0);
    EXPECT_EQ(cursorUpdatesAfter(0.3), 1);
}

TEST_F(ViewControllerTest, AStrokeUnderWayKeepsTheEndOfTheBurstFromDoingAnything) {
    open({"/p/cat.png"});
    stroke();
    QTest::mousePress(&cutWidget(), Qt::LeftButton, {}, cutWidget().rect().center());
    EXPECT_EQ(cursorUpdatesAfter(1), 0);
    QTest::mouseRelease(&cutWidget(), Qt::LeftButton, {}, cutWidget().rect().center());
    EXPECT_EQ(cursorUpdatesAfter(1), 1);
}

// ── Restoring the whole picture ────────────────────────────────────────────────────────────────

TEST_F(ViewControllerTest, RestoringAsksAndYesBringsThePictureBack) {
    open({"/p/cat.png"});
    stroke();
    send("reset_pressed:");
    auto* const warning = screen().findChild<WarningRestoreImageController*>();
    ASSERT_NE(warning, nullptr);
    EXPECT_TRUE(warning->isVisible());
    click(warning->warningView().yesDeleteProgress());
    EXPECT_EQ(view().historyLength(), 3);
    EXPECT_THAT(events(), ElementsAre("button reset pressed"));
}

TEST_F(ViewControllerTest, RestoringAnsweredWithNoChangesNothing) {
    open({"/p/cat.png"});
    stroke();
    send("reset_pressed:");
    click(screen().findChild<WarningRestoreImageController*>()->warningView().noDeleteProgress());
    EXPECT_EQ(view().historyLength(), 2);
    EXPECT_THAT(events(), IsEmpty());
}

TEST_F(ViewControllerTest, RestoringIsAskedOnceAtATime) {
    open({"/p/cat.png"});
    stroke();
    send("reset_pressed:");
    send("reset_pressed:");
    const auto questions = screen().findChildren<WarningRestoreImageController*>();
    ASSERT_EQ(questions.size(), 1);
    click(questions.first()->warningView().noDeleteProgress());
    send("reset_pressed:");
    EXPECT_TRUE(screen().findChildren<WarningRestoreImageController*>().last()->isVisible());
}

// ── Brush menu ─────────────────────────────────────────────────────────────────────────────────

TEST_F(ViewControllerTest, TheBrushMenuHasTheHandAndBelowItTheBrush) {
    QPointer<QMenu> menu = controller_->showMenu_withEvent(outlets().btnBrush);
    ASSERT_NE(menu, nullptr);
    ASSERT_EQ(menu->actions().size(), 2);
    EXPECT_EQ(menu->actions()[0]->text(), "Hand");
    EXPECT_EQ(menu->actions()[1]->text(), "Brush");
    auto* const item = qobject_cast<QWidgetAction*>(menu->actions()[0]);
    EXPECT_EQ(item->defaultWidget()->size(), QSize(120, 33));
    auto* const button = item->defaultWidget()->findChild<QToolButton*>();
    EXPECT_EQ(button->geometry(), QRect(5, 0, 110, 33));
    EXPECT_THAT(events(), ElementsAre("Brush menu opened"));

    click(*button);
    EXPECT_EQ(view().dragMode(), cutengine::DragMode::pan);
    QCoreApplication::sendPostedEvents(nullptr, QEvent::DeferredDelete);
    EXPECT_EQ(menu, nullptr);
}

TEST_F(ViewControllerTest, TheBrushMenuOpensForItsButtonAlone) {
    EXPECT_EQ(controller_->showMenu_withEvent(outlets().btnHandNew), nullptr);
    EXPECT_EQ(controller_->showMenu_withEvent(nullptr), nullptr);
    EXPECT_THAT(events(), IsEmpty());
    send("anglrBrush_pressed:");
    EXPECT_THAT(events(), ElementsAre("Brush menu opened"));
}

// ── Zoom and mini-map ──────────────────────────────────────────────────────────────────────────

TEST_F(ViewControllerTest, ZoomCommandsUndoEachOtherAndFitBringsBack) {
    open({"/p/cat.png"});
    const double fitted = view().transform().a;
    send("zoomIn:");
    EXPECT_NEAR(view().transform().a, fitted * 1.25, 1e-4);
    send("zoomIn:");
    send("zoomOut:");
    EXPECT_NEAR(view().transform().a, fitted * 1.25, 1e-4);
    click(*outlets().btnZoomToFit);
    EXPECT_NEAR(view().transform().a, fitted, 1e-6);
    EXPECT_TRUE(view().imageFit());
}

TEST_F(ViewControllerTest, ActualSizeShowsAPixelOnAPixelButNeverLessThanTheFit) {
    open({"/p/wide.png"});
    send("actualSize:");
    EXPECT_NEAR(view().transform().a, 1 / cutWidget().scaleFactor(), 1e-6);
    open({"/p/cat.png"});
    const double fitted = view().transform().a;
    ASSERT_GT(fitted, 1);
    send("zoomIn:");
    send("actualSize:");
    EXPECT_NEAR(view().transform().a, fitted, 1e-6);
}

TEST_F(ViewControllerTest, TheMiniMapFollowsZoomFitAndANewSizeOfTheView) {
    open({"/p/wide.png"});
    const foundation::Rect fitted = outlets().miniMap->testboirder().frame();
    send("zoomIn:");
    const foundation::Rect zoomed = outlets().miniMap->testboirder().frame();
    EXPECT_NEAR(zoomed.width, fitted.width / 1.25, 0.01);
    send("zoomToFit:");
    EXPECT_NEAR(outlets().miniMap->testboirder().frame().width, fitted.width, 0.01);
    screen().resize(1000, 784);
    rest();
    EXPECT_NE(outlets().miniMap->testboirder().frame().height, fitted.height);
}

TEST_F(ViewControllerTest, AClickInTheMiniMapMovesTheView) {
    open({"/p/wide.png"});
    send("actualSize:");
    const double before = view().transform().tx;
    MiniMap& map = *outlets().miniMap;
    QTest::mouseClick(&map, Qt::LeftButton, {}, QPoint(map.width() - 16, map.height() / 2 - 14));
    rest();
    EXPECT_LT(view().transform().tx, before);
}

TEST_F(ViewControllerTest, AWholePictureInViewIsNotMovedByTheMiniMap) {
    open({"/p/wide.png"});
    const auto before = view().transform();
    QTest::mouseClick(outlets().miniMap, Qt::LeftButton, {}, QPoint(30, 60));
    EXPECT_EQ(view().transform().tx, before.tx);
    EXPECT_TRUE(view().imageFit());
}

// ── For those who cannot see or point ──────────────────────────────────────────────────────────

TEST_F(ViewControllerTest, EveryControlThatTakesTheKeyboardHasANameAndAToolTip) {
    open({"/p/cat.png"});
    send("chooseColorMode:");
    int controls = 0;
    for (const QWidget* widget : screen().findChildren<QWidget*>()) {
        if (!(widget->focusPolicy() & Qt::TabFocus) || !widget->isVisible())
            continue;
        ++controls;
        EXPECT_FALSE(widget->accessibleName().isEmpty()) << widget->objectName().toStdString();
    }
    EXPECT_GE(controls, 15);
    for (const QAbstractButton* button : screen().findChildren<QAbstractButton*>())
        EXPECT_FALSE(button->toolTip().isEmpty()) << button->objectName().toStdString();
}

TEST_F(ViewControllerTest, TheKeyboardReachesNothingBehindTheEmptyScreen) {
    std::vector<std::string> names;
    for (const QWidget* widget : screen().findChildren<QWidget*>()) {
        const bool reached =
            (widget->focusPolicy() & Qt::TabFocus) && widget->isVisible() && widget->isEnabled();
        if (reached)
            names.push_back(widget->objectName().toStdString());
    }
    // The cut view keeps the keyboard for the window's own keys.
    EXPECT_THAT(names, ElementsAre("viCut", "openPictureButton"));
}

}  // namespace
}  // namespace trimora::editor
