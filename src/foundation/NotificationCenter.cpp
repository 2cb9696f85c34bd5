#include "foundation/NotificationCenter.h"

#include <algorithm>
#include <atomic>
#include <utility>

namespace trimora::foundation {

struct NotificationCenter::Observation::Entry {
    Handler handler;
    const void* object = nullptr;
    std::atomic<bool> ended = false;
};

NotificationCenter::Observation& NotificationCenter::Observation::operator=(Observation&& other) noexcept {
    Observation taken(std::move(other));
    entry_.swap(taken.entry_);  // what was observed before ends with `taken`
    return *this;
}

void NotificationCenter::Observation::end() {
    if (entry_)
        entry_->ended = true;
    entry_.reset();
}

NotificationCenter::Observation NotificationCenter::observe(std::string_view name, Handler handler,
                                                            const void* object) {
    auto entry = std::make_shared<Observation::Entry>();
    entry->handler = std::move(handler);
    entry->object = object;
    const std::scoped_lock lock(mutex_);
    auto& list = observers_[std::string(name)];
    std::erase_if(list, [](const auto& held) { return held.expired(); });
    list.push_back(entry);
    return Observation(std::move(entry));
}

void NotificationCenter::post(std::string_view name, const void* object, std::any userInfo) {
    std::vector<std::weak_ptr<Observation::Entry>> called;
    {
        const std::scoped_lock lock(mutex_);
        const auto found = observers_.find(name);
        if (found == observers_.end())
            return;
        called = found->second;
    }
    const Notification notification{std::string(name), object, std::move(userInfo)};
    for (const auto& weak : called) {
        const auto entry = weak.lock();
        if (!entry || entry->ended || (entry->object != nullptr && entry->object != object))
            continue;
        entry->handler(notification);
    }
}

}  // namespace trimora::foundation
