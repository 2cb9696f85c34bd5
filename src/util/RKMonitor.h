#pragma once

/// Which modifier keys are held, for code that runs far from any event.
///
/// One shared monitor begins to listen when the program's QCoreApplication is made and goes with it;
/// it takes the modifiers that come with each key, mouse and wheel event and passes the event on
/// unchanged. A program that loses the keyboard to another one holds no keys. Main thread only.
///
/// The Command key is Ctrl and Option is Alt where keys bear those names; the Control key beside a
/// Command key is the Windows key here.
namespace trimora::util {

class RKMonitor {
 public:
    [[nodiscard]] static bool altPressed();
    [[nodiscard]] static bool cmndPressed();
    [[nodiscard]] static bool ctrlPressed();
    [[nodiscard]] static bool shiftPressed();
};

}  // namespace trimora::util
