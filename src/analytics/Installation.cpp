#include "analytics/Installation.h"

#include <cassert>
#include <condition_variable>
#include <memory>
#include <mutex>
#include <utility>
#include <vector>

#include "analytics/OutOfMemory.h"
#include "analytics/public/TXAnalyticsCollector.h"
#include "analytics/public/TXAnalyticsQueue.h"
#include "analytics/session/HttpTransport.h"
#include "analytics/session/TXSessionManager.h"

namespace trimora::analytics {
namespace {

/// Lets tasks through while it is open; closing waits for those inside.
class Gate {
 public:
    bool enter() {
        const std::scoped_lock lock(mutex_);
        inside_ += open_ ? 1 : 0;
        return open_;
    }

    void leave() {
        const std::scoped_lock lock(mutex_);
        if (--inside_ == 0)
            empty_.notify_all();
    }

    void close() {
        std::unique_lock lock(mutex_);
        open_ = false;
        empty_.wait(lock, [this] { return inside_ == 0; });
    }

 private:
    std::mutex mutex_;
    std::condition_variable empty_;
    bool open_ = true;
    int inside_ = 0;
};

struct Installed {
    explicit Installed(Wiring given) : wiring(std::move(given)) {}

    Wiring wiring;
    std::shared_ptr<Gate> gate = std::make_shared<Gate>();
    std::mutex mutex;
    std::vector<std::function<void()>> releases;
};

std::unique_ptr<Installed>& installed() {
    static std::unique_ptr<Installed> current;
    return current;
}

}  // namespace

Installation::Installation(const Wiring& wiring) {
    assert(!installed());
    installed() = std::make_unique<Installed>(wiring);
    // The crash of the last run is replayed before the sessions of that run are posted.
    TXAnalyticsCollector::load();
    TXSessionManager::load();
}

Installation::~Installation() {
    Installed& current = *installed();
    TXAnalyticsCollector::unload();
    TXSessionManager::unload();
    TXAnalyticsQueue::drain();
    // No timer or queue begins anything any more; what is under way on the network comes back.
    current.gate->close();
    current.wiring.transport.cancelAll();
    for (auto release = current.releases.rbegin(); release != current.releases.rend(); ++release)
        (*release)();
    installed().reset();
}

bool isInstalled() {
    return installed() != nullptr;
}

const Wiring& wiring() {
    assert(isInstalled());
    return installed()->wiring;
}

foundation::Task whileInstalled(foundation::Task task) {
    assert(isInstalled());
    return [gate = installed()->gate, work = std::move(task)] {
        if (!gate->enter())
            return;
        asFarAsMemoryGoes(work);
        gate->leave();
    };
}

void atUninstallation(std::function<void()> release) {
    Installed& current = *installed();
    const std::scoped_lock lock(current.mutex);
    current.releases.push_back(std::move(release));
}

}  // namespace trimora::analytics
