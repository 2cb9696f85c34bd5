#include "platform/SingleInstance.h"

#include <QDeadlineTimer>
#include <QFile>
#include <QThread>
#include <optional>
#include <utility>

#include "files/UserFolders.h"
#include "foundation/Log.h"

namespace trimora::platform {

using std::filesystem::path;

namespace {

constexpr unsigned long kPauseMs = 20;  // for a process that is just starting, or just ending

path socketFolder() {
    const path runtime = QFile::decodeName(qgetenv("XDG_RUNTIME_DIR")).toStdString();
    return runtime.is_absolute() ? runtime / "trimora" : files::dataHome() / "Trimora";
}

LaunchRequest withAbsoluteFiles(LaunchRequest request) {
    for (path& file : request.files) {
        std::error_code noCurrentFolder;
        const path absolute = std::filesystem::absolute(file, noCurrentFolder);
        if (!noCurrentFolder)
            file = absolute.lexically_normal();
    }
    return request;
}

}  // namespace

SingleInstance::Meeting SingleInstance::ofThisSession() {
    return {QDBusConnection::sessionBus(), socketFolder()};
}

SingleInstance::SingleInstance(Meeting meeting)
    : meeting_(std::move(meeting)),
      bus_(meeting_.applicationId, meeting_.bus, [this](const auto& request) { hear(request); }),
      socket_(meeting_.socketFolder, [this](const auto& request) { hear(request); }) {}

SingleInstance::Launch SingleInstance::launch(const LaunchRequest& request) {
    const LaunchRequest absolute = withAbsoluteFiles(request);
    if (const auto met = meetAt(bus_, absolute))
        return *met;
    return meetAt(socket_, absolute).value_or(Launch::alone);
}

/// Tries until one of the two roles is certain; nothing where nobody can meet at this place.
template <typename Place>
std::optional<SingleInstance::Launch> SingleInstance::meetAt(Place& place, const LaunchRequest& request) {
    const QDeadlineTimer deadline(meeting_.patience);
    for (;;) {
        const auto claim = place.claim();
        if (claim == Place::Claim::impossible)
            return std::nullopt;
        if (claim == Place::Claim::first)
            return Launch::first;
        const auto handed = place.handOver(request, std::chrono::milliseconds(deadline.remainingTime()));
        if (handed)
            return Launch::handedOver;
        if (deadline.hasExpired()) {
            foundation::log::warning("the running Trimora does not answer: %s",
                                     handed.error().message.c_str());
            return Launch::alone;
        }
        QThread::msleep(kPauseMs);
    }
}

void SingleInstance::onLaunch(Launched launched) {
    launched_ = std::move(launched);
    for (const LaunchRequest& request : std::exchange(unheard_, {}))
        launched_(request);
}

void SingleInstance::hear(const LaunchRequest& request) {
    if (launched_)
        launched_(request);
    else
        unheard_.push_back(request);
}

}  // namespace trimora::platform
