#pragma once

#include <functional>
#include <string>

namespace trimora::ports {

/// What a notification says. Texts are UTF-8.
struct UserNotification {
    std::string title;
    std::string subtitle;
    std::string informativeText;
    std::string actionTitle;  ///< of its one button; empty for none
};

/// How a person answered a notification.
enum class NotificationActivation { contentsClicked = 1, actionButton = 2 };

/// The desktop's place for short news that a person may answer later. Main thread only.
///
/// A notification that cannot be shown there is shown some other unobtrusive way or, at worst, logged;
/// posting never fails and never waits.
class UserNotifications {
 public:
    using Activated = std::function<void(const UserNotification&, NotificationActivation)>;

    virtual ~UserNotifications() = default;
    UserNotifications(const UserNotifications&) = delete;
    UserNotifications& operator=(const UserNotifications&) = delete;

    /// Shows it, also while the application is in front.
    virtual void post(const UserNotification& notification) = 0;

    /// Who hears of answers from now on, in place of who heard before; comes on the main thread.
    virtual void onActivation(Activated activated) = 0;

 protected:
    UserNotifications() = default;
};

}  // namespace trimora::ports
