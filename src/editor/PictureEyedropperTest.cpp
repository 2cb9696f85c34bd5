#include "editor/PictureEyedropper.h"

#include <gtest/gtest.h>

#include <QGuiApplication>

#include "controls/ColorPickerView.h"
#include "editor/EditorScreenForTests.h"

namespace trimora::editor {
namespace {

using cutengine::Colour;

/// The pictures of these tests are of one colour, as the decoder's double makes them.
const Colour kPicture{30 / 255.0, 60 / 255.0, 90 / 255.0, 1};

class PictureEyedropperTest : public EditorScreenTest {
 protected:
    void SetUp() override {
        EditorScreenTest::SetUp();
        open({"/p/wide.png"});
        send("chooseColorMode:");
        before_ = view().brushColor();
    }
    void start() { click(*outlets().colorPickerView->findChild<QWidget*>("eyedropper")); }
    static bool showsACross() {
        const QCursor* const cursor = QGuiApplication::overrideCursor();
        return cursor != nullptr && cursor->shape() == Qt::CrossCursor;
    }
    void press(QPoint place) {
        QTest::mouseClick(&cutWidget(), Qt::LeftButton, {}, place);
        rest();
    }

    std::optional<Colour> before_;
};

TEST_F(PictureEyedropperTest, APressOnThePictureTakesItsColourAndPaintsNothing) {
    start();
    EXPECT_TRUE(showsACross());
    press(cutWidget().rect().center());
    EXPECT_EQ(view().brushColor(), kPicture);
    EXPECT_EQ(outlets().colorPickerView->selectedColor(), kPicture);
    EXPECT_EQ(view().historyLength(), 1);
    EXPECT_FALSE(showsACross());
    press(cutWidget().rect().center());
    EXPECT_EQ(view().historyLength(), 2);
}

TEST_F(PictureEyedropperTest, EscapeGivesUp) {
    start();
    QTest::keyClick(&cutWidget(), Qt::Key_Escape);
    EXPECT_FALSE(showsACross());
    EXPECT_EQ(view().brushColor(), before_);
}

TEST_F(PictureEyedropperTest, APressBesideThePictureGivesUp) {
    start();
    press({cutWidget().width() / 2, 2});
    EXPECT_FALSE(showsACross());
    EXPECT_EQ(view().brushColor(), before_);
    EXPECT_EQ(view().historyLength(), 1);
}

TEST_F(PictureEyedropperTest, APressElsewhereIsWhatItWouldHaveBeen) {
    start();
    click(*outlets().btnBlurMode);
    EXPECT_FALSE(showsACross());
    EXPECT_TRUE(view().isBlurOn());
}

TEST_F(PictureEyedropperTest, TheEditorMayGoMeanwhile) {
    start();
    controller_.reset();
    EXPECT_FALSE(showsACross());
}

}  // namespace
}  // namespace trimora::editor
