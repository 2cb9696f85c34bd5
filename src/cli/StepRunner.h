#pragma once

#include <functional>
#include <optional>

#include "cli/JsonValues.h"
#include "cli/LogRecord.h"
#include "cli/ScriptedProgram.h"
#include "foundation/Result.h"
#include "script/Steps.h"

namespace trimora {

/// Does the steps of a script to a program. Each step is one turn of a hand: what it starts goes on when
/// the script lets it, with `settle` or `advance`. Main thread only; program, log and printer outlive it.
class StepRunner {
 public:
    /// Takes the value that a step prints.
    using Print = std::function<void(const Json&)>;

    StepRunner(ScriptedProgram& program, LogRecord& log, Print print);

    /// Returns an error where the step could not be done. One that prints prints null then.
    [[nodiscard]] foundation::Result<void> run(const script::Step& step);

 private:
    using Done = foundation::Result<void>;

    [[nodiscard]] Done perform(const script::ViewStep& step);
    [[nodiscard]] Done perform(const script::OpenStep& step);
    [[nodiscard]] Done perform(const script::DropStep& step);
    [[nodiscard]] Done perform(const script::MouseStep& step);
    [[nodiscard]] Done perform(const script::StrokeStep& step);
    [[nodiscard]] Done perform(const script::ModifiersStep& step);
    [[nodiscard]] Done perform(const script::KeyStep& step);
    [[nodiscard]] Done perform(const script::SetStep& step);
    [[nodiscard]] Done perform(const script::PerformStep& step);
    [[nodiscard]] Done perform(const script::AnswerStep& step);
    [[nodiscard]] Done perform(const script::SliderStep& step);
    [[nodiscard]] Done perform(const script::ColorStep& step);
    [[nodiscard]] Done perform(const script::ConsentStep& step);
    [[nodiscard]] Done perform(const script::ClockStep& step);
    [[nodiscard]] Done perform(const script::SettleStep& step);
    [[nodiscard]] Done perform(const script::AdvanceStep& step);
    [[nodiscard]] Done perform(const script::StateStep& step);
    [[nodiscard]] Done perform(const script::SampleStep& step);
    [[nodiscard]] Done perform(const script::WriteStep& step);
    [[nodiscard]] Done perform(const script::LogStep& step);
    [[nodiscard]] Done perform(const script::EventsStep& step);

    /// The way from the place before, as the platform reports it, and the place as the new one before.
    [[nodiscard]] script::Point wayTo(script::Point place);
    [[nodiscard]] editor::CutViewWidget& widget();

    ScriptedProgram& program_;
    LogRecord& log_;
    const Print print_;
    script::Point place_;
    cutengine::Modifiers held_;
};

}  // namespace trimora
