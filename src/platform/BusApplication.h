#pragma once

#include <QDBusConnection>
#include <QDBusVirtualObject>
#include <chrono>
#include <functional>

#include "foundation/Result.h"
#include "platform/LaunchRequest.h"

namespace trimora::platform {

/// The program on the session bus, as the interface org.freedesktop.Application has it: the first
/// process owns the name and is asked to activate, to open files or to perform an action; later ones,
/// and the desktop's launchers, ask. Main thread only.
class BusApplication final : public QDBusVirtualObject {
 public:
    using Launched = std::function<void(const LaunchRequest&)>;

    /// Nothing is done on the bus yet. `launched` comes on the main thread, from the event loop, after
    /// the asker has its answer.
    BusApplication(QString applicationId, QDBusConnection bus, Launched launched);
    ~BusApplication() override;

    enum class Claim {
        first,       ///< the name is ours, and requests come
        taken,       ///< another process has the name
        impossible,  ///< there is no bus, or it does not let us have the name
    };
    /// Asks for the name; waits for the bus itself, for no other program.
    [[nodiscard]] Claim claim();

    /// Has the process that owns the name do what is asked, and waits for its answer. On failure (also
    /// where nobody has the name any more) returns an error. Files must be absolute.
    [[nodiscard]] foundation::Result<void> handOver(const LaunchRequest& request,
                                                    std::chrono::milliseconds patience);

    /// What the bus asks of its objects.
    [[nodiscard]] QString introspect(const QString& path) const override;
    bool handleMessage(const QDBusMessage& message, const QDBusConnection& connection) override;

 private:
    [[nodiscard]] QDBusMessage callFor(const LaunchRequest& request) const;

    QString name_;
    QString path_;
    QDBusConnection bus_;
    Launched launched_;
    bool isFirst_ = false;
};

}  // namespace trimora::platform
