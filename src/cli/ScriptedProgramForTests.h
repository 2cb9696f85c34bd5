#pragma once

#include <gtest/gtest.h>

#include <functional>
#include <memory>
#include <string>
#include <vector>

#include "cli/LogRecord.h"
#include "cli/PixelSamples.h"
#include "cli/ScriptedProgram.h"
#include "cli/StepRunner.h"
#include "testing/TemporaryFolder.h"

namespace trimora {

/// The whole editor in homes of its own, and a picture to work on.
class ScriptedProgramFixture : public ::testing::Test {
 protected:
    void SetUp() override {
        start();
        makePicture();
    }
    void TearDown() override { end(); }

    void start() {
        program_ = std::make_unique<ScriptedProgram>(
            ScriptedProgram::Options{},
            Homes{home_.path() / "data", home_.path() / "config", home_.path() / "cache"},
            [this](const std::string& line) { trouble_.push_back(line); });
        runner_ = std::make_unique<StepRunner>(*program_, log_,
                                               [this](const Json& value) { printed_.push_back(value); });
    }
    void end() {
        runner_.reset();
        program_.reset();
    }
    /// Ends this program after a last act, and begins another in the same homes.
    void restart(const std::function<void()>& last) {
        last();
        end();
        start();
    }

    /// Does a step that can be done.
    void run(const script::Step& step) {
        const auto done = runner_->run(step);
        EXPECT_TRUE(done) << done.error().message;
    }
    /// Opens the picture, of 300 x 200 pixels.
    void open() {
        run(script::OpenStep{{picture()}, false});
        program_->settle();
    }
    [[nodiscard]] std::string picture() const { return (home_.path() / "cat.png").string(); }

    testing::TemporaryFolder home_;
    LogRecord log_;
    std::vector<std::string> trouble_;
    std::vector<Json> printed_;
    std::unique_ptr<ScriptedProgram> program_;
    std::unique_ptr<StepRunner> runner_;

 private:
    /// What an empty view shows is picture enough.
    void makePicture() {
        ASSERT_TRUE(program_->resizeView(300, 200));
        run(script::WriteStep{script::WriteStep::What::view, picture()});
    }
};

}  // namespace trimora
