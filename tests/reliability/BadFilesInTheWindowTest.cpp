#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <QAbstractButton>
#include <cstdio>
#include <string>
#include <tuple>

#include "PicturePool.h"
#include "WindowOrder.h"
#include "WindowProgram.h"
#include "editor/CutViewWidget.h"
#include "testing/TemporaryFolder.h"

// A file that cannot be opened costs one message, and nothing of the work in the window.
namespace trimora::reliability {
namespace {

using ::testing::IsEmpty;
using ::testing::SizeIs;

class BadFilesInTheWindow : public ::testing::Test {
 protected:
    BadFilesInTheWindow() { open(pool_.sound().front()); }

    void open(const std::filesystem::path& file) {
        program_.editor().draggingFilesComplete_needsWait({file}, false);
        program_.rest();
    }

    void stroke(foundation::Point from, foundation::Point to) {
        editor::CutViewWidget& widget = *program_.editor().outlets().viCut;
        using cutengine::MouseButton;
        widget.take(editor::MousePressed{{.button = MouseButton::left, .location = from}});
        widget.take(editor::MouseDragged{{MouseButton::left, to, to.x - from.x, from.y - to.y}});
        widget.take(editor::MouseReleased{{.button = MouseButton::left, .location = to}});
        program_.rest();
    }

    /// Two strokes, the second of which is taken back.
    void work() {
        stroke({200, 200}, {260, 240});
        stroke({300, 300}, {340, 260});
        program_.editor().performSelector("back_pressed:");
        program_.rest();
        ASSERT_EQ(view().historyLength(), 3);
        ASSERT_EQ(view().historyCurrentState(), 1);
    }

    [[nodiscard]] cutengine::RKImageCutView& view() { return program_.cutView(); }

    /// Everything that a person would miss.
    [[nodiscard]] auto situation() {
        const auto& bar = program_.wiring().shell().windowController().outlets();
        return std::tuple(view().image(), view().mask(), view().historyLength(), view().historyCurrentState(),
                          view().historyFileIndex(), bar.btnSave->isEnabled(), bar.btnBack->isEnabled(),
                          bar.btnForward->isEnabled(), program_.window().windowTitle().toStdString());
    }

    testing::TemporaryFolder folder_;
    const PicturePool pool_{folder_.path() / "pool"};
    OneFilePanels panels_{[] { return std::filesystem::path(); }, [] { return std::filesystem::path(); }};
    WindowProgram program_{
        Homes{folder_.path() / "data", folder_.path() / "config", folder_.path() / "cache"}, panels_};
};

TEST_F(BadFilesInTheWindow, CostOneMessageAndNothingElse) {
    work();
    (void)program_.takeTroubles();
    int refused = 0;
    int shown = 0;
    for (const auto& file : pool_.bad()) {
        SCOPED_TRACE(file.filename().string());
        const auto before = situation();
        open(file);
        EXPECT_THAT(disorderIn(program_), IsEmpty());
        if (view().image() != std::get<0>(before)) {
            ++shown;
            EXPECT_THAT(program_.takeTroubles(), IsEmpty());
            open(pool_.sound().front());
            work();
            continue;
        }
        ++refused;
        EXPECT_TRUE(situation() == before);
        EXPECT_THAT(program_.takeTroubles(), SizeIs(1));
    }
    std::printf("%d refused, %d shown as far as they go\n", refused, shown);
    EXPECT_GT(refused, 50);
    EXPECT_GT(shown, 10);
}

}  // namespace
}  // namespace trimora::reliability
