#pragma once

#include <functional>

class QObject;
class QWidget;

namespace trimora::app {

/// Calls `then` once, from the event loop, after the widget was painted for the first time from now on; never
/// where the widget or `context` goes before that. For work that a person must not wait for when the window
/// comes. Main thread only.
void afterFirstPaint(QWidget& widget, QObject& context, std::function<void()> then);

}  // namespace trimora::app
