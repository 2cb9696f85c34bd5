#pragma once

#include <QDBusConnection>
#include <QString>
#include <chrono>
#include <filesystem>
#include <functional>
#include <optional>
#include <vector>

#include "platform/ApplicationId.h"
#include "platform/BusApplication.h"
#include "platform/LaunchRequest.h"
#include "platform/SocketApplication.h"

namespace trimora::platform {

/// One editor for one session: the first process serves, later ones hand over what they were started
/// for and leave.
///
/// They meet on the session bus, where the desktop's launchers find the first one too, or, where there
/// is no bus, at a private socket. Made after the QApplication, on the main thread, before anything
/// that a later process would make in vain.
class SingleInstance {
 public:
    using Launched = std::function<void(const LaunchRequest&)>;

    /// Where processes meet, and for how long one waits for another.
    struct Meeting {
        QDBusConnection bus;                 ///< one that is not connected stands for none
        std::filesystem::path socketFolder;  ///< used where there is no bus
        QString applicationId = QLatin1String(kApplicationId);
        std::chrono::milliseconds patience{10'000};
    };
    /// That of this session: its bus, and $XDG_RUNTIME_DIR/trimora, or Trimora in the data home where that is
    /// not set.
    [[nodiscard]] static Meeting ofThisSession();

    explicit SingleInstance(Meeting meeting);

    enum class Launch {
        first,       ///< this process goes on, and later ones come to it
        alone,       ///< this process goes on by itself: nobody can be met, or the other does not answer
        handedOver,  ///< another process does what was asked; this one leaves with success
    };
    /// Settles who serves. A request that is handed over has its files made absolute first; one of a
    /// process that goes on is that process's own business.
    [[nodiscard]] Launch launch(const LaunchRequest& request);

    /// Who hears of later starts, on the main thread, from the event loop. What came before this call is
    /// told in it.
    void onLaunch(Launched launched);

 private:
    void hear(const LaunchRequest& request);

    template <typename Place>
    [[nodiscard]] std::optional<Launch> meetAt(Place& place, const LaunchRequest& request);

    Meeting meeting_;
    Launched launched_;
    std::vector<LaunchRequest> unheard_;
    BusApplication bus_;
    SocketApplication socket_;
};

}  // namespace trimora::platform
