#pragma once

#include <cstdint>
#include <thread>

#include "platform/Application.h"
#include "platform/FontsAhead.h"

namespace trimora {

/// The toolkit's application object, set up as this program needs it.
///
/// One in a process, made before anything of the screen. Nothing of the command line is left to the toolkit.
/// Main thread only.
class Toolkit {
 public:
    enum class Screen : std::uint8_t {
        desktop,    ///< the person's
        offscreen,  ///< none; what the platform cannot do without one it does not complain about
    };
    explicit Toolkit(Screen screen);

    /// Runs the event loop until the program is to end; returns the exit status.
    [[nodiscard]] static int exec() { return QApplication::exec(); }

 private:
    struct Settings {
        explicit Settings(Screen screen);
    };
    platform::FontsAhead fonts_;
    Settings settings_;  // before the application, which reads them
    int argumentCount_ = 1;
    char name_[8] = "trimora";
    char* arguments_[2] = {name_, nullptr};
    platform::Application application_;
    std::jthread ahead_;  // at what the first window needs; gone before the application
};

}  // namespace trimora
