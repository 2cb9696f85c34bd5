#include "script/Reader.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include <string>

#include "script/Names.h"

namespace trimora::script {
namespace {

using ::testing::AllOf;
using ::testing::HasSubstr;
using ::testing::StartsWith;

/// What was expected of a line that is none.
std::string expectedOf(std::string_view line) {
    const auto read = readStep(line);
    return read ? "nothing: the line was read" : read.error().message;
}

template <typename Kind>
Kind read(std::string_view line) {
    const auto step = readStep(line);
    EXPECT_TRUE(step) << line << ": " << (step ? "" : step.error().message);
    return step ? std::get<Kind>(*step) : Kind{};
}

TEST(ScriptReader, PicturesComeByFileAndByDrop) {
    const auto open = read<OpenStep>(R"({"do":"open","files":["a.jpg","b.png"],"wait":true})");
    EXPECT_EQ(open, (OpenStep{{"a.jpg", "b.png"}, true}));
    EXPECT_FALSE(read<OpenStep>(R"({"do":"open","files":["a.jpg"]})").wait);
    EXPECT_EQ(read<DropStep>(R"({"do":"drop","files":["a.jpg"]})"), DropStep{{"a.jpg"}});
    EXPECT_EQ(read<ViewStep>(R"({"do":"view","size":[800,600.0]})"), (ViewStep{800, 600}));
}

TEST(ScriptReader, TheMouseHasPlaceWayAndButton) {
    const auto drag =
        read<MouseStep>(R"({"do":"mouse","type":"drag","at":[1.5,2],"delta":[3,-4],"button":"right"})");
    EXPECT_EQ(drag, (MouseStep{MouseStep::Type::drag, {1.5, 2}, Point{3, -4}, Button::right}));
    const auto down = read<MouseStep>(R"({"do":"mouse","type":"down","at":[1,2]})");
    EXPECT_EQ(down, (MouseStep{MouseStep::Type::down, {1, 2}, std::nullopt, Button::left}));
    EXPECT_EQ(read<MouseStep>(R"({"do":"mouse","type":"enter"})").type, MouseStep::Type::enter);
    EXPECT_EQ(read<StrokeStep>(R"({"do":"stroke","points":[[1,2],[3,4]]})"),
              (StrokeStep{{{1, 2}, {3, 4}}, Button::left}));
}

TEST(ScriptReader, ADragMayLeaveItsWayOutAndAWheelMayNot) {
    EXPECT_TRUE(readStep(R"({"do":"mouse","type":"drag","at":[1,2]})"));
    EXPECT_THAT(expectedOf(R"({"do":"mouse","type":"scroll","at":[1,2]})"), StartsWith("expected \"delta\""));
}

TEST(ScriptReader, KeysAndModifiers) {
    EXPECT_EQ(read<ModifiersStep>(R"({"do":"modifiers","held":["command","option"]})"),
              (ModifiersStep{true, true}));
    EXPECT_EQ(read<ModifiersStep>(R"({"do":"modifiers","held":[]})"), ModifiersStep{});
    EXPECT_EQ(read<KeyStep>(R"({"do":"key","code":34})"), KeyStep{34});
    EXPECT_THAT(expectedOf(R"({"do":"modifiers","held":["shift"]})"),
                HasSubstr("\"option\" and \"command\""));
    EXPECT_THAT(expectedOf(R"({"do":"key","code":"I"})"), HasSubstr("a whole number"));
}

TEST(ScriptReader, EveryPropertyTakesTheKindOfValueThatItHas) {
    for (const Property& property : properties()) {
        const auto with = [&](const char* value) {
            return readStep(R"({"do":"set","property":")" + std::string(property.name) + R"(","value":)" +
                            value + "}")
                .ok();
        };
        const bool isColour = property.kind == Property::Kind::colour;
        EXPECT_EQ(with("[0,0.5,1,1]"), isColour) << property.name;
        EXPECT_EQ(with("null"), isColour) << property.name;
        EXPECT_EQ(with("0.5"), property.kind == Property::Kind::number) << property.name;
        EXPECT_EQ(with("true"),
                  property.kind == Property::Kind::flag || property.kind == Property::Kind::dragMode)
            << property.name;
        EXPECT_FALSE(with("\"x\"")) << property.name;
    }
    EXPECT_EQ(std::get<double>(read<SetStep>(R"({"do":"set","property":"dragMode","value":true})").value), 1);
    EXPECT_THAT(expectedOf(R"({"do":"set","property":"brush","value":1})"),
                AllOf(StartsWith("expected \"property\""), HasSubstr("\"brushHardness\"")));
    EXPECT_FALSE(readStep(R"({"do":"set","property":"brushColor","value":[0,0,2,1]})"));
}

TEST(ScriptReader, SelectorsAreThoseOfTheirReceiver) {
    EXPECT_EQ(read<PerformStep>(R"({"do":"perform","on":"window","selector":"performClose:"})"),
              (PerformStep{Receiver::window, "performClose:"}));
    EXPECT_THAT(expectedOf(R"({"do":"perform","on":"editor","selector":"performClose:"})"),
                StartsWith("expected \"selector\""));
    EXPECT_THAT(expectedOf(R"({"do":"perform","on":"menu","selector":"performClose:"})"),
                StartsWith("expected \"on\""));
}

TEST(ScriptReader, PanelsAreAnsweredInTheirOwnKind) {
    const auto with = [](const char* panel, const char* answer) {
        return R"({"do":"answer","panel":")" + std::string(panel) + R"(","with":)" + answer + "}";
    };
    EXPECT_EQ(read<AnswerStep>(with("open", R"(["a.png"])")),
              (AnswerStep{AnswerStep::OpenPanel{std::vector<std::string>{"a.png"}}}));
    EXPECT_EQ(read<AnswerStep>(with("open", "null")), (AnswerStep{AnswerStep::OpenPanel{}}));
    EXPECT_EQ(read<AnswerStep>(with("save", R"("r.png")")), (AnswerStep{AnswerStep::SavePanel{"r.png"}}));
    EXPECT_EQ(read<AnswerStep>(with("save", "null")), (AnswerStep{AnswerStep::SavePanel{}}));
    EXPECT_EQ(read<AnswerStep>(with("alert", "1002")), (AnswerStep{AnswerStep::Alert{1002}}));
    EXPECT_EQ(read<AnswerStep>(with("warning", R"("yes")")), (AnswerStep{AnswerStep::Warning{true}}));
    EXPECT_FALSE(readStep(with("alert", "1003")));
    EXPECT_FALSE(readStep(with("warning", "true")));
    EXPECT_FALSE(readStep(with("save", R"(["r.png"])")));
    EXPECT_FALSE(readStep(with("print", "null")));
    EXPECT_FALSE(readStep(R"({"do":"answer","panel":"open"})"));
}

TEST(ScriptReader, SizeControlsTakeAValueOrATextAndNotBoth) {
    using Which = SliderStep::Which;
    EXPECT_EQ(read<SliderStep>(R"({"do":"slider","which":"invertSize","value":70})"),
              (SliderStep{Which::invertSize, 70.0}));
    EXPECT_EQ(read<SliderStep>(R"({"do":"slider","which":"eraserSize","typed":"70"})"),
              (SliderStep{Which::eraserSize, "70"}));
    EXPECT_FALSE(readStep(R"({"do":"slider","which":"eraserSize"})"));
    EXPECT_FALSE(readStep(R"({"do":"slider","which":"eraserSize","value":7,"typed":"7"})"));
    EXPECT_FALSE(readStep(R"({"do":"slider","which":"sldBrushDiameter2","typed":"7"})"));
}

TEST(ScriptReader, ColoursArePressedInStripAndFieldOrInOneOfThem) {
    EXPECT_EQ(read<ColorStep>(R"({"do":"color","hue":0.3,"shade":[0.8,0.9]})"),
              (ColorStep{0.3, Point{0.8, 0.9}}));
    EXPECT_EQ(read<ColorStep>(R"({"do":"color","shade":[0,1]})"), (ColorStep{std::nullopt, Point{0, 1}}));
    EXPECT_FALSE(readStep(R"({"do":"color"})"));
    EXPECT_FALSE(readStep(R"({"do":"color","hue":1.5})"));
    EXPECT_FALSE(readStep(R"({"do":"color","shade":[0,-1]})"));
}

TEST(ScriptReader, TimesAreOfTheCalendar) {
    EXPECT_EQ(read<ClockStep>(R"({"do":"clock","at":"2026-11-15T18:06:28"})"),
              (ClockStep{2026, 11, 15, 18, 6, 28}));
    EXPECT_TRUE(readStep(R"({"do":"clock","at":"2024-02-29T00:00:00"})"));
    for (const char* at :
         {"2026-02-29T00:00:00", "2026-13-01T00:00:00", "2026-11-15 18:06:28", "2026-11-15T24:00:00",
          "2026-11-15T18:06", "2026-11-15T18:06:2x", "1969-12-31T23:59:59"})
        EXPECT_FALSE(readStep(R"({"do":"clock","at":")" + std::string(at) + "\"}")) << at;
    EXPECT_EQ(read<AdvanceStep>(R"({"do":"advance","seconds":0.5})"), AdvanceStep{0.5});
    EXPECT_FALSE(readStep(R"({"do":"advance","seconds":-1})"));
}

TEST(ScriptReader, WhatIsLookedAtAndWritten) {
    EXPECT_EQ(read<SampleStep>(R"({"do":"sample","of":"result","at":[[1,2]]})"),
              (SampleStep{SampleStep::Of::result, {{1, 2}}}));
    EXPECT_EQ(read<WriteStep>(R"({"do":"write","what":"cursor","to":"c.png"})"),
              (WriteStep{WriteStep::What::cursor, "c.png"}));
    EXPECT_FALSE(readStep(R"({"do":"write","what":"cursor","to":""})"));
    for (const char* plain : {"settle", "state", "log", "events"})
        EXPECT_TRUE(readStep(R"({"do":")" + std::string(plain) + "\"}")) << plain;
    EXPECT_EQ(read<ConsentStep>(R"({"do":"consent","answer":true})"), ConsentStep{true});
}

TEST(ScriptReader, FieldsThatNobodyAsksForAreLeftAlone) {
    EXPECT_TRUE(readStep(R"({"do":"settle","why":["because"]})"));
}

TEST(ScriptReader, LinesThatAreNoStepsSayWhatWasExpected) {
    for (const char* line : {"", "stroke", "{", "[]", "null", R"({"do":"settle"} x)", "{\"do\":\"settle\",}"})
        EXPECT_EQ(expectedOf(line), "expected a JSON object {\"do\":...}") << line;
    EXPECT_THAT(expectedOf("{}"), StartsWith("expected \"do\", one of \"view\""));
    EXPECT_THAT(expectedOf(R"({"do":"jump"})"), StartsWith("expected \"do\", one of \"view\""));
    EXPECT_THAT(expectedOf(R"({"do":3})"), StartsWith("expected \"do\""));
    EXPECT_THAT(expectedOf(R"({"do":"view","size":[0,600]})"),
                StartsWith("expected \"size\", two whole numbers"));
    EXPECT_THAT(expectedOf(R"({"do":"view","size":[1e300,600]})"), StartsWith("expected \"size\""));
    EXPECT_THAT(expectedOf(R"({"do":"stroke","points":[[1,2],[3]]})"), StartsWith("expected \"points\""));
    EXPECT_THAT(expectedOf(R"({"do":"stroke","points":[]})"), StartsWith("expected \"points\""));
    EXPECT_THAT(expectedOf(R"({"do":"open","files":"a.png"})"), StartsWith("expected \"files\""));
}

TEST(ScriptReader, BlankLinesAreTold) {
    EXPECT_TRUE(isBlank(""));
    EXPECT_TRUE(isBlank(" \t\r"));
    EXPECT_FALSE(isBlank(" {"));
}

}  // namespace
}  // namespace trimora::script
