#pragma once

#include <chrono>
#include <functional>

class QObject;
class QWidget;

namespace trimora::app {

/// How long after it was painted the first frame has reached the screen on any machine in use. What begins
/// sooner takes the processor from those who bring it there.
inline constexpr std::chrono::milliseconds kUntilShown{50};

/// Calls `then` once, from the event loop, after the widget was painted for the first time from now on and
/// `rest` has passed; never where the widget or `context` goes before that. For work that a person must not
/// wait for when the window comes. Main thread only.
void afterFirstPaint(QWidget& widget, QObject& context, std::function<void()> then,
                     std::chrono::milliseconds rest = {});

}  // namespace trimora::app
