#include "cli/ScriptedProgram.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

#include "batch/CutViewMessages.h"
#include "cli/LogRecord.h"
#include "cli/ScriptedProgramForTests.h"
#include "cli/StepRunner.h"
#include "script/Names.h"

namespace trimora {
namespace {

using script::Receiver;
using ::testing::Contains;
using ::testing::IsEmpty;

class ScriptedProgramTest : public ScriptedProgramFixture {};

TEST_F(ScriptedProgramTest, EverySelectorOfTheTableIsAnsweredByItsReceiver) {
    for (const std::string_view selector : script::selectorsOf(Receiver::editor))
        EXPECT_TRUE(program_->editor().respondsToSelector(selector)) << selector;
    for (const std::string_view selector : script::selectorsOf(Receiver::window))
        EXPECT_TRUE(program_->shell().windowController().respondsToSelector(selector)) << selector;
    for (const std::string_view selector : script::selectorsOf(Receiver::app))
        EXPECT_TRUE(program_->shell().appDelegate().respondsToSelector(selector)) << selector;
    for (const std::string_view selector : script::selectorsOf(Receiver::cutView))
        EXPECT_TRUE(batch::performOperation(program_->cutView(), selector)) << selector;
}

TEST_F(ScriptedProgramTest, EveryPropertyOfTheTableHasASetter) {
    using Kind = script::Property::Kind;
    for (const script::Property& property : script::properties()) {
        script::SetStep::Value value = 1.0;
        if (property.kind == Kind::flag)
            value = true;
        else if (property.kind == Kind::colour)
            value = std::optional(script::Rgba{});
        EXPECT_TRUE(batch::setProperty(program_->cutView(), {std::string(property.name), value}))
            << property.name;
    }
}

TEST_F(ScriptedProgramTest, TheViewTakesSizesThatTheWindowOfAPersonDoesNot) {
    for (const auto& [width, height] : {std::pair{150, 100}, std::pair{2000, 1500}, std::pair{800, 600}}) {
        EXPECT_TRUE(program_->resizeView(width, height));
        EXPECT_EQ(program_->cutView().viewSize(), (foundation::Size{double(width), double(height)}));
    }
}

TEST_F(ScriptedProgramTest, SettlingEndsMotionsAndLeavesWhatWaitsForItsTime) {
    open();
    EXPECT_NE(program_->cutView().image(), nullptr);
    const double before = program_->time().clock().seconds();
    bool ran = false;
    const auto later =
        program_->time().clock().after(5, program_->time().queues().mainQueue(), [&] { ran = true; });
    run(script::PerformStep{Receiver::editor, "showInterface"});
    program_->settle();
    EXPECT_EQ(program_->editor().constraints().constrLeftPanelLeading.constant(), 0);
    EXPECT_FALSE(ran);
    EXPECT_LT(program_->time().clock().seconds() - before, 1);
}

TEST_F(ScriptedProgramTest, WhatCouldNotBeDoneIsToldAndShown) {
    run(script::OpenStep{{(home_.path() / "missing.png").string()}, false});
    program_->settle();
    ASSERT_EQ(trouble_.size(), 1U);
    EXPECT_THAT(program_->messages(), Contains(trouble_.front()));
}

TEST_F(ScriptedProgramTest, QuittingIsKnownAndEndsNothingElse) {
    run(script::PerformStep{Receiver::app, "terminate:"});
    EXPECT_TRUE(program_->hasQuit());
    EXPECT_THAT(trouble_, IsEmpty());
}

TEST_F(ScriptedProgramTest, APostIsNotSentBeforeTheScriptGivesConsent) {
    restart([this] { program_->wiring().telemetrix().consent().give(app::GdprConsent::Answer::yes); });
    EXPECT_EQ(program_->wiring().telemetrix().consent().answer(), app::GdprConsent::Answer::yes);
    EXPECT_FALSE(program_->wiring().telemetrix().maySend());
    run(script::ConsentStep{true});
    EXPECT_TRUE(program_->wiring().telemetrix().maySend());
}

}  // namespace
}  // namespace trimora
