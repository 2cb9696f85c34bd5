#include "script/Writer.h"

#include <gtest/gtest.h>

#include "script/Names.h"
#include "script/Reader.h"

namespace trimora::script {
namespace {

/// At least one of each kind, every choice of a field among them.
std::vector<Step> allKinds() {
    using Mouse = MouseStep::Type;
    using Which = SliderStep::Which;
    return {ViewStep{800, 600},
            OpenStep{{"a.jpg", "täst.png"}, true},
            DropStep{{"a \"b\".jpg"}},
            MouseStep{Mouse::drag, {0.1, 2.0 / 3}, Point{1e-7, -4}, Button::right},
            MouseStep{Mouse::down, {1, 2}, std::nullopt, Button::left},
            StrokeStep{{{1, 2}, {3.25, 1e15}}, Button::right},
            ModifiersStep{true, false},
            ModifiersStep{false, true},
            KeyStep{34},
            SetStep{"blurOn", true},
            SetStep{"brushHardness", 0.1},
            SetStep{"brushColor", std::optional(Rgba{0, 0.5, 1, 1})},
            SetStep{"brushColor", std::optional<Rgba>()},
            PerformStep{Receiver::cutView, "resetMask"},
            AnswerStep{AnswerStep::OpenPanel{std::vector<std::string>{"a.png"}}},
            AnswerStep{AnswerStep::OpenPanel{}},
            AnswerStep{AnswerStep::SavePanel{"r.png"}},
            AnswerStep{AnswerStep::SavePanel{}},
            AnswerStep{AnswerStep::Alert{1002}},
            AnswerStep{AnswerStep::Warning{true}},
            AnswerStep{AnswerStep::Warning{false}},
            SliderStep{Which::sldBrushDiameter2, 70.5},
            SliderStep{Which::invertSize, "70"},
            ColorStep{0.3, Point{0.8, 0.9}},
            ColorStep{std::nullopt, Point{0, 1}},
            ConsentStep{true},
            ClockStep{2026, 11, 15, 18, 6, 28},
            SettleStep{},
            AdvanceStep{0.016666666666666666},
            StateStep{},
            SampleStep{SampleStep::Of::view, {{0, 0}, {5, 7}}},
            WriteStep{WriteStep::What::window, "w.png"},
            LogStep{},
            EventsStep{}};
}

TEST(ScriptWriter, WhatIsWrittenIsReadAsTheSameStep) {
    std::vector<bool> seen(stepNames().size());
    for (const Step& step : allKinds()) {
        const auto read = readStep(writeStep(step));
        ASSERT_TRUE(read) << writeStep(step) << ": " << read.error().message;
        EXPECT_EQ(*read, step) << writeStep(step);
        seen.at(step.index()) = true;
    }
    for (std::size_t i = 0; i < seen.size(); ++i)
        EXPECT_TRUE(seen[i]) << stepNames()[i];
}

TEST(ScriptWriter, ALineNamesItsStepFirstAndWritesWholeNumbersPlainly) {
    EXPECT_EQ(writeStep(StrokeStep{{{1, 2.5}}, Button::left}),
              R"({"do":"stroke","points":[[1,2.5]],"button":"left"})");
    EXPECT_EQ(writeStep(SettleStep{}), R"({"do":"settle"})");
    EXPECT_EQ(writeStep(ClockStep{2026, 1, 2, 3, 4, 5}), R"({"do":"clock","at":"2026-01-02T03:04:05"})");
}

TEST(ScriptWriter, TextThatIsNotUtf8IsMended) {
    EXPECT_TRUE(readStep(writeStep(DropStep{{"a\xff.png"}})));
}

}  // namespace
}  // namespace trimora::script
