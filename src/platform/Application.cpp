#include "platform/Application.h"

#include <QThread>
#include <new>
#include <utility>

#include "foundation/OutOfMemory.h"

namespace trimora::platform {

bool Application::notify(QObject* receiver, QEvent* event) {
    if (QThread::currentThread() != thread())
        return QApplication::notify(receiver, event);
    const bool handled = notifyAsFarAsMemoryGoes(receiver, event);
    if (depth_ > 0 || !std::exchange(isUntold_, false))
        return handled;
    isUntold_ =
        !foundation::asFarAsMemoryGoes("not enough memory even to say so", [this] { emit memoryMissing(); });
    return handled;
}

bool Application::notifyAsFarAsMemoryGoes(QObject* receiver, QEvent* event) {
    struct Level {
        explicit Level(int& depth) : depth_(++depth) {}
        ~Level() { --depth_; }
        Level(const Level&) = delete;
        Level& operator=(const Level&) = delete;
        int& depth_;
    };
    const Level level(depth_);
    try {
        return QApplication::notify(receiver, event);
    } catch (const std::bad_alloc&) {
        isUntold_ = true;
        foundation::tellOfMissingMemory("not enough memory for what was asked");
        return false;
    }
}

}  // namespace trimora::platform
