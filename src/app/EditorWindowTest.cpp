#include "app/EditorWindow.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <QAbstractSpinBox>
#include <QColorDialog>
#include <QDropEvent>
#include <QMimeData>
#include <QSlider>
#include <QTest>
#include <QUrl>
#include <QWheelEvent>

#include "app/StatusLine.h"
#include "controls/AppStyle.h"
#include "controls/SizeControl.h"
#include "editor/EditorDoubles.h"
#include "foundation/ManualQueues.h"
#include "foundation/VirtualTime.h"
#include "testing/TemporaryFolder.h"

namespace trimora::app {
namespace {

using cutengine::DragMode;
using cutengine::PicturePtr;

class EditorWindowTest : public ::testing::Test {
 protected:
    EditorWindowTest() {
        controls::applyAppStyle(*qApp);
        decoder_.files["/p/cat.png"] = {400, 300, ""};
        decoder_.files["/p/dog.png"] = {300, 300, ""};
        window_.show();
        window_.activateWindow();
        QCoreApplication::processEvents();
    }

    void open(const char* file) {
        window_.open({file});
        settle();
    }
    void settle() {
        queues_.settle();
        time_.advance(1);
        QCoreApplication::processEvents();
    }
    void stroke() {
        QTest::mousePress(&cutView(), Qt::LeftButton, {}, cutView().rect().center());
        QTest::mouseRelease(&cutView(), Qt::LeftButton, {}, cutView().rect().center());
        settle();
    }
    void press(QKeyCombination key) {
        QTest::keyClick(window_.windowHandle(), key.key(), key.keyboardModifiers());
        settle();
    }

    editor::CutViewWidget& cutView() { return window_.cutView(); }
    cutengine::RKImageCutView& view() { return cutView().view(); }
    bool enabled(Command command) { return window_.commands().action(command).isEnabled(); }
    bool checked(Command command) { return window_.commands().isChecked(command); }

    testing::TemporaryFolder folder_;
    foundation::ManualQueueFactory queues_;
    foundation::VirtualTime time_;
    foundation::NotificationCenter notifications_;
    editor::FakeDecoder decoder_;
    editor::FakeEncoder encoder_;
    editor::FakePanels panels_;
    EditorWindow window_{
        {{queues_, time_, notifications_, folder_.path() / "history"}, decoder_, encoder_, panels_}};
};

TEST_F(EditorWindowTest, TheEmptyWindowOffersToOpenAndNothingElse) {
    EXPECT_TRUE(enabled(Command::openPicture));
    for (const Command command : {Command::savePicture, Command::undo, Command::redo, Command::restoreImage,
                                  Command::zoomIn, Command::zoomToFit})
        EXPECT_FALSE(enabled(command)) << static_cast<int>(command);
    QTest::mouseClick(&cutView(), Qt::LeftButton);
    EXPECT_EQ(panels_.questions.size(), 1U);
}

TEST_F(EditorWindowTest, AnOpenedPictureIsShownAndNamed) {
    open("/p/cat.png");
    ASSERT_NE(view().image(), nullptr);
    EXPECT_TRUE(window_.windowTitle().startsWith("cat.png"));
    EXPECT_EQ(window_.statusLine().text(), "Opened cat.png");
    EXPECT_FALSE(enabled(Command::savePicture));
}

TEST_F(EditorWindowTest, AnUnreadablePictureLeavesEverythingAsItIs) {
    open("/p/cat.png");
    stroke();
    const PicturePtr before = view().image();
    open("/p/notes.txt");
    EXPECT_EQ(view().image(), before);
    EXPECT_EQ(view().historyLength(), 2);
    EXPECT_TRUE(window_.windowTitle().startsWith("cat.png"));
    EXPECT_TRUE(enabled(Command::savePicture));
    EXPECT_EQ(window_.statusLine().text(), "notes.txt could not be opened: it is not a picture");
}

TEST_F(EditorWindowTest, CommandsFollowTheHistory) {
    open("/p/cat.png");
    EXPECT_FALSE(enabled(Command::undo));
    stroke();
    EXPECT_TRUE(enabled(Command::savePicture));
    EXPECT_TRUE(enabled(Command::undo));
    EXPECT_FALSE(enabled(Command::redo));
    EXPECT_TRUE(enabled(Command::restoreImage));

    press(Qt::CTRL | Qt::Key_Z);
    EXPECT_EQ(view().historyCurrentState(), 0);
    EXPECT_FALSE(enabled(Command::undo));
    EXPECT_TRUE(enabled(Command::redo));
    press(Qt::CTRL | Qt::Key_Y);
    EXPECT_EQ(view().historyCurrentState(), 1);
    press(Qt::CTRL | Qt::SHIFT | Qt::Key_R);
    EXPECT_EQ(view().historyLength(), 3);
}

TEST_F(EditorWindowTest, ANewPictureStartsAFreshHistoryAndNothingToSave) {
    open("/p/cat.png");
    stroke();
    open("/p/dog.png");
    EXPECT_FALSE(enabled(Command::savePicture));
    EXPECT_FALSE(enabled(Command::undo));
    EXPECT_FALSE(enabled(Command::redo));
    EXPECT_FALSE(enabled(Command::restoreImage));
}

TEST_F(EditorWindowTest, KeysChooseTheTool) {
    open("/p/cat.png");
    press(Qt::Key_H);
    EXPECT_TRUE(checked(Command::handTool));
    EXPECT_EQ(view().dragMode(), DragMode::pan);
    press(Qt::Key_R);
    EXPECT_EQ(view().dragMode(), DragMode::paint);
    EXPECT_EQ(view().brushAlphaValue(), 1);
    press(Qt::Key_X);
    EXPECT_TRUE(checked(Command::brushTool));
    EXPECT_EQ(view().brushAlphaValue(), 0);
}

TEST_F(EditorWindowTest, TheSwapKeyOfTheViewMovesTheToolToo) {
    open("/p/cat.png");
    press(Qt::CTRL | Qt::Key_I);
    EXPECT_TRUE(checked(Command::restoreTool));
    press(Qt::CTRL | Qt::Key_I);
    EXPECT_TRUE(checked(Command::brushTool));
}

TEST_F(EditorWindowTest, SliderKeysAndWheelAgreeOnTheBrushSize) {
    open("/p/cat.png");
    EXPECT_EQ(window_.brushSize().value(), 20);
    window_.brushSize().findChild<QSlider*>()->setValue(70);
    EXPECT_EQ(view().brushDiameter(), 70);
    press(Qt::Key_BracketRight);
    EXPECT_EQ(view().brushDiameter(), 75);
    EXPECT_EQ(window_.brushSize().value(), 75);
    press(Qt::Key_BracketLeft);
    EXPECT_EQ(window_.brushSize().value(), 70);
    QWheelEvent wheel({10, 10}, {10, 10}, {}, {120, 0}, Qt::NoButton, Qt::AltModifier, Qt::NoScrollPhase,
                      false);
    QCoreApplication::sendEvent(&cutView(), &wheel);
    EXPECT_EQ(window_.brushSize().value(), 80);
}

TEST_F(EditorWindowTest, BackgroundsSetTheViewAndStayForTheNextPicture) {
    open("/p/cat.png");
    EXPECT_TRUE(view().bluredLayer()->isHidden());
    press(Qt::Key_3);
    EXPECT_TRUE(view().isBlurOn());
    EXPECT_FALSE(view().bluredLayer()->isHidden());
    open("/p/dog.png");
    EXPECT_TRUE(checked(Command::blurBackground));
    EXPECT_FALSE(view().bluredLayer()->isHidden());
    press(Qt::Key_2);
    EXPECT_FALSE(view().isBlurOn());
    EXPECT_FALSE(view().bluredLayer()->isHidden());
    press(Qt::Key_1);
    EXPECT_TRUE(view().bluredLayer()->isHidden());
}

TEST_F(EditorWindowTest, AChosenColourIsShownAtOnceAndACancelledOneGoes) {
    open("/p/cat.png");
    window_.run(Command::chooseColour);
    auto* const dialog = window_.findChild<QColorDialog*>();
    ASSERT_NE(dialog, nullptr);
    EXPECT_TRUE(checked(Command::colourBackground));
    dialog->setCurrentColor(QColor(255, 0, 0));
    EXPECT_EQ(view().brushColor(), (cutengine::Colour{1, 0, 0, 1}));
    dialog->reject();
    EXPECT_EQ(view().brushColor(), (cutengine::Colour{1, 1, 1, 1}));
}

TEST_F(EditorWindowTest, ZoomCommandsUndoEachOtherAndFitBringsBack) {
    open("/p/cat.png");
    const double fitted = view().transform().a;
    press(Qt::CTRL | Qt::Key_Plus);
    EXPECT_NEAR(view().transform().a, fitted * 1.25, 1e-4);
    press(Qt::CTRL | Qt::Key_Plus);
    press(Qt::CTRL | Qt::Key_Minus);
    EXPECT_NEAR(view().transform().a, fitted * 1.25, 1e-4);
    press(Qt::Key_0);
    EXPECT_NEAR(view().transform().a, fitted, 1e-4);
    EXPECT_TRUE(view().imageFit());
}

TEST_F(EditorWindowTest, DroppedFilesAreOpened) {
    QMimeData data;
    data.setUrls({QUrl::fromLocalFile("/p/notes.txt"), QUrl::fromLocalFile("/p/dog.png")});
    QDropEvent drop({10, 10}, Qt::CopyAction, &data, Qt::LeftButton, Qt::NoModifier);
    QCoreApplication::sendEvent(&window_, &drop);
    settle();
    EXPECT_TRUE(window_.windowTitle().startsWith("dog.png"));
}

TEST_F(EditorWindowTest, EveryControlHasANameAndAToolTip) {
    int controls = 0;
    for (const QWidget* widget : window_.centralWidget()->findChildren<QWidget*>()) {
        const bool control = qobject_cast<const QAbstractButton*>(widget) != nullptr ||
                             qobject_cast<const QAbstractSpinBox*>(widget) != nullptr ||
                             qobject_cast<const QSlider*>(widget) != nullptr;
        if (!control)
            continue;
        ++controls;
        EXPECT_FALSE(widget->accessibleName().isEmpty());
        EXPECT_FALSE(widget->toolTip().isEmpty()) << widget->accessibleName().toStdString();
        EXPECT_NE(widget->focusPolicy() & Qt::TabFocus, 0) << widget->accessibleName().toStdString();
    }
    EXPECT_GE(controls, 14);
}

TEST_F(EditorWindowTest, AltAloneLeavesTheKeyboardWithThePicture) {
    open("/p/cat.png");
    cutView().setFocus();
    QTest::keyClick(window_.windowHandle(), Qt::Key_Alt);
    EXPECT_TRUE(cutView().hasFocus());
}

}  // namespace
}  // namespace trimora::app
