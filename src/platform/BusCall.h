#pragma once

#include <QDBusConnection>
#include <QDBusMessage>
#include <chrono>
#include <functional>

class QObject;

namespace trimora::platform {

/// Calls a program on the bus without waiting for it.
///
/// `then` hears the answer once, on the main thread, from the event loop: a reply, or a message of type
/// ErrorMessage where there is no bus, nobody to answer, or no answer in time. It is not called any more
/// once `context` is gone.
void callOnBus(const QDBusConnection& bus, const QDBusMessage& call, std::chrono::milliseconds patience,
               QObject* context, std::function<void(const QDBusMessage& answer)> then);

}  // namespace trimora::platform
