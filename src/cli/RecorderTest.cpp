#include "cli/Recorder.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <fstream>
#include <optional>

#include "cli/RecordedPanels.h"
#include "cli/ScriptedProgramForTests.h"
#include "controls/ColorPickerView.h"
#include "controls/CustomSlider.h"
#include "controls/SliderVertical.h"
#include "editor/CutViewWidget.h"
#include "editor/EditorTools.h"
#include "script/Reader.h"

namespace trimora {
namespace {

using script::Receiver;
using script::Step;
using ::testing::ElementsAre;

/// The editor while it is recorded.
class RecorderTest : public ScriptedProgramFixture {
 protected:
    void SetUp() override {
        ScriptedProgramFixture::SetUp();
        auto created = Recording::create(file());
        ASSERT_TRUE(created);
        recording_.emplace(std::move(*created));
        recorder_.emplace(program_->wiring(), *recording_);
    }
    void TearDown() override {
        recorder_.reset();
        ScriptedProgramFixture::TearDown();
    }

    [[nodiscard]] std::filesystem::path file() const { return home_.path() / "session.jsonl"; }

    /// The steps written so far, without the time between them.
    std::vector<Step> steps() {
        std::vector<Step> found;
        std::ifstream stream(file());
        for (std::string line; std::getline(stream, line);) {
            const auto step = script::readStep(line);
            EXPECT_TRUE(step) << line;
            if (step && !std::holds_alternative<script::AdvanceStep>(*step))
                found.push_back(*step);
        }
        return found;
    }

    editor::CutViewWidget& widget() { return *program_->editor().outlets().viCut; }

    std::optional<Recording> recording_;
    std::optional<Recorder> recorder_;
};

TEST_F(RecorderTest, OfMessagesThatLeadToOthersTheFirstIsWritten) {
    program_->shell().appDelegate().performSelector("undo_pressed:");
    program_->shell().windowController().performSelector("forward_pressed:");
    program_->editor().performSelector("hand_pressed_new:");
    EXPECT_THAT(steps(), ElementsAre(script::PerformStep{Receiver::app, "undo_pressed:"},
                                     script::PerformStep{Receiver::window, "forward_pressed:"},
                                     script::PerformStep{Receiver::editor, "hand_pressed_new:"}));
}

TEST_F(RecorderTest, EventsOfTheCutViewAreWrittenInItsTerms) {
    using Type = script::MouseStep::Type;
    widget().take(editor::PointerInside{true});
    widget().take(editor::MousePressed{{cutengine::MouseButton::right, {10, 20}, 0, 0}});
    widget().take(editor::MouseDragged{{cutengine::MouseButton::right, {12, 25}, 2, -5}});
    widget().take(cutengine::Modifiers{.option = true, .command = false});
    widget().take(cutengine::KeyEvent{34, {}});
    widget().take(cutengine::ScrollEvent{{5, 6}, 7});
    widget().take(editor::DragModeHeld{cutengine::DragMode::pan});
    const auto found = steps();
    ASSERT_EQ(found.size(), 7U);
    EXPECT_EQ(std::get<script::MouseStep>(found[0]).type, Type::enter);
    EXPECT_EQ(found[2],
              Step(script::MouseStep{Type::drag, {12, 25}, script::Point{2, -5}, script::Button::right}));
    EXPECT_EQ(found[3], Step(script::ModifiersStep{true, false}));
    EXPECT_EQ(found[4], Step(script::KeyStep{34}));
    EXPECT_EQ(found[5],
              Step(script::MouseStep{Type::scroll, {5, 6}, script::Point{0, 7}, script::Button::left}));
    EXPECT_EQ(found[6], Step(script::SetStep{"dragMode", 1.0}));
}

TEST_F(RecorderTest, SizesAreWrittenWhereAHandSetsThemAndReachTheEditor) {
    program_->editor().outlets().invertSize->sliderClass().trackTo(64);
    program_->editor().outlets().invertSize->sliderClass().endTracking();
    EXPECT_EQ(program_->editor().tools().invertSizeValue(), 64);
    program_->editor().outlets().sldBrushDiameter2->trackTo(33);
    program_->editor().performSelector("smallerBrush:");
    using Which = script::SliderStep::Which;
    EXPECT_THAT(steps(), ElementsAre(script::SliderStep{Which::invertSize, 64.0},
                                     script::SliderStep{Which::sldBrushDiameter2, 33.0},
                                     script::PerformStep{Receiver::editor, "smallerBrush:"}));
}

TEST_F(RecorderTest, AColourIsWrittenAsItIs) {
    program_->editor().outlets().colorPickerView->chooseColor({1, 0.5, 0, 1});
    EXPECT_EQ(program_->cutView().brushColor(), (cutengine::Colour{1, 0.5, 0, 1}));
    EXPECT_THAT(steps(), ElementsAre(script::SetStep{"brushColor", std::optional(script::Rgba{1, 0.5, 0, 1})},
                                     script::SetStep{"blurOn", false}));
}

TEST_F(RecorderTest, FilesAndAnswersAreWritten) {
    program_->editor().openFiles({picture()});
    RecordedPanels panels(program_->panels(), *recording_);
    program_->panels().queue({script::AnswerStep::SavePanel{picture()}});
    panels.chooseFileToOpen({}, [](const auto&) {});
    panels.chooseFileToSave({}, "", [](const auto&) {});
    panels.runAlert({"?", {"Yes", "No"}, 1001}, [](int) {});
    program_->settle();
    EXPECT_THAT(steps(), ElementsAre(script::DropStep{{picture()}},
                                     script::AnswerStep{script::AnswerStep::OpenPanel{}},
                                     script::AnswerStep{script::AnswerStep::SavePanel{picture()}},
                                     script::AnswerStep{script::AnswerStep::Alert{1001}}));
}

TEST_F(RecorderTest, NoTimeIsWrittenWhileAPanelIsOpen) {
    RecordedPanels panels(program_->panels(), *recording_);
    panels.runAlert({"?", {"Yes", "No"}, 1001}, [](int) {});
    program_->editor().performSelector("hand_pressed_new:");
    program_->settle();
    std::ifstream stream(file());
    std::string first;
    std::getline(stream, first);
    EXPECT_EQ(*script::readStep(first), Step(script::PerformStep{Receiver::editor, "hand_pressed_new:"}));
}

TEST_F(RecorderTest, WhatIsWrittenDoesTheSameAgain) {
    ASSERT_TRUE(program_->resizeView(500, 400));
    program_->editor().openFiles({picture()});
    program_->settle();
    run(script::StrokeStep{{{100, 100}, {300, 120}, {250, 300}}, script::Button::left});
    program_->cutView().setImageFit(false);
    run(script::MouseStep{
        script::MouseStep::Type::scroll, {250, 200}, script::Point{0, 12}, script::Button::left});
    widget().take(editor::PictureMoved{{40, -25}});
    program_->editor().performSelector("invertBrush_pressed_new:");
    run(script::StrokeStep{{{200, 200}, {260, 210}}, script::Button::left});
    program_->settle();
    program_->editor().performSelector("back_pressed:");
    program_->settle();
    const auto transform = program_->cutView().transform();
    const auto mask = program_->cutView().copyMaskPlane();
    const auto recorded = steps();

    recorder_.reset();
    restart([] {});
    for (const Step& step : recorded) {
        run(step);
        program_->settle();
    }
    EXPECT_EQ(program_->cutView().transform(), transform);
    EXPECT_TRUE(foundation::samePixels(program_->cutView().copyMaskPlane().view(), mask.view()));
    EXPECT_LT(mask.pixel(60, 160).alpha, 255) << "nothing was cut";
}

TEST(Recording, AFileThatCannotBeWrittenIsTold) {
    EXPECT_FALSE(Recording::create("/no/such/folder/session.jsonl"));
}

}  // namespace
}  // namespace trimora
