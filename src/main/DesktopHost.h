#pragma once

#include <QPointer>

#include "app/MessageLine.h"
#include "foundation/RealTime.h"
#include "foundation/ThreadQueues.h"
#include "main/Host.h"
#include "platform/DBusNotifications.h"
#include "platform/DesktopWorkspace.h"
#include "platform/QtMainQueue.h"
#include "platform/QtScheduler.h"
#include "platform/QtSettings.h"

namespace trimora {

/// The host of the program that a person uses: real threads, the machine's clocks, the desktop's session
/// bus, and the account's own folders.
///
/// Made after the QApplication and gone before it, after the Wiring. The order of the members matters: each
/// one uses only those above it. Main thread only.
class DesktopHost {
 public:
    /// `panels` ask the person; they outlive the host.
    explicit DesktopHost(ports::Panels& panels);

    [[nodiscard]] Host host();

    /// Where the desktop has no place for notifications, this line shows them from now on.
    void fallBackTo(app::MessageLine& line) { line_ = &line; }

 private:
    void offer(const ports::UserNotification& notification);

    ports::Panels& panels_;
    const Homes homes_;
    platform::QtMainQueue mainQueue_;
    foundation::ThreadWorkers codecWorkers_;
    foundation::ThreadQueueFactory queues_{mainQueue_};
    foundation::RealClock clock_;
    platform::QtScheduler scheduler_{mainQueue_};
    platform::QtSettings settings_;
    platform::DesktopWorkspace workspace_;
    QPointer<app::MessageLine> line_;
    platform::DBusNotifications userNotifications_;
};

}  // namespace trimora
