#pragma once

#include <cstdint>
#include <memory>
#include <string>
#include <vector>

#include "cli/EventLog.h"
#include "cli/RunDesktop.h"
#include "cli/RunTime.h"
#include "cli/ScriptPanels.h"
#include "main/Wiring.h"

namespace trimora {

/// The whole editor as a script drives it: the program's own wiring, on time and queues that the script
/// moves and panels that it answers.
///
/// Begins with its window on the screen, in the size that the program has by itself; ends as by Quit, without
/// a question. One at a time; the next begins afresh. Main thread only.
class ScriptedProgram {
 public:
    struct Options {
        RunTime::Pace pace = RunTime::Pace::virtually;
        bool isShown = false;  ///< there is a person before the screen
    };
    /// Hears the lines in which the program says that something could not be done.
    using Trouble = std::function<void(const std::string&)>;

    ScriptedProgram(const Options& options, Homes homes, Trouble trouble);
    ~ScriptedProgram();
    ScriptedProgram(const ScriptedProgram&) = delete;
    ScriptedProgram& operator=(const ScriptedProgram&) = delete;

    [[nodiscard]] Wiring& wiring() { return *wiring_; }
    [[nodiscard]] RunTime& time() { return desktop_.time(); }
    [[nodiscard]] ScriptPanels& panels() { return panels_; }
    [[nodiscard]] editor::ViewController& editor() { return wiring_->editor(); }
    [[nodiscard]] app::MainInterface& shell() { return wiring_->shell(); }
    [[nodiscard]] cutengine::RKImageCutView& cutView() { return editor().cutView(); }

    /// Every text that the person was shown, in order.
    [[nodiscard]] const std::vector<std::string>& messages() const { return messages_; }
    [[nodiscard]] const std::vector<ports::UserNotification>& notifications() const {
        return desktop_.notifications().posted();
    }

    /// The record of use since the program began.
    [[nodiscard]] EventLog& events() { return events_; }

    /// Lets everything that is queued finish, and all that moves come to rest; the clock goes on as far as
    /// that takes, and no further: what merely waits for its time goes on waiting. Posts to the analytics
    /// service that are under way are waited for.
    void settle();

    /// Moves the clock.
    void advance(double seconds) { time().advance(seconds); }

    /// Gives the cut view a size by giving the window another one; false where the screen does not let it.
    [[nodiscard]] bool resizeView(int width, int height);

    /// Whether the program was told to end.
    [[nodiscard]] bool hasQuit() const { return desktop_.hasQuit(); }

 private:
    [[nodiscard]] bool isMoving();
    void showWindow();

    const Options options_;
    std::vector<std::string> messages_;
    RunDesktop desktop_;
    ScriptPanels panels_;
    std::unique_ptr<Wiring> wiring_;
    EventLog events_;
};

}  // namespace trimora
