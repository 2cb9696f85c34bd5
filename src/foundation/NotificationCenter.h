#pragma once

#include <any>
#include <functional>
#include <map>
#include <memory>
#include <mutex>
#include <string>
#include <string_view>
#include <vector>

namespace trimora::foundation {

/// One broadcast: its name, who sent it (or nobody), and what the sender put beside it.
struct Notification {
    std::string name;
    const void* object = nullptr;
    std::any userInfo;
};

/// Broadcasts by name, for events that cross the borders between parts of the program.
///
/// post() calls every observer of the name on the poster's thread, in the order in which they began
/// to observe, and returns after the last. An observer added while a post runs hears the next one; one
/// removed while a post runs is not called any more. Any thread; no lock is held during a call, so an
/// observation that ends on one thread does not wait for a call that another thread is just making: an
/// observer that hears posts of other threads must live through such a call.
class NotificationCenter {
 public:
    using Handler = std::function<void(const Notification&)>;

    /// Keeps an observer registered; destroying it ends the observation. May outlive the centre.
    class Observation {
     public:
        Observation() = default;
        Observation(Observation&&) = default;
        Observation& operator=(Observation&& other) noexcept;
        ~Observation() { end(); }
        void end();

     private:
        friend class NotificationCenter;
        struct Entry;
        explicit Observation(std::shared_ptr<Entry> entry) : entry_(std::move(entry)) {}
        std::shared_ptr<Entry> entry_;
    };

    NotificationCenter() = default;
    NotificationCenter(const NotificationCenter&) = delete;
    NotificationCenter& operator=(const NotificationCenter&) = delete;

    /// Calls `handler` for each notification of this name from any sender, or from `object` alone
    /// where one is given.
    [[nodiscard]] Observation observe(std::string_view name, Handler handler, const void* object = nullptr);

    void post(std::string_view name, const void* object = nullptr, std::any userInfo = {});

 private:
    std::mutex mutex_;
    std::map<std::string, std::vector<std::weak_ptr<Observation::Entry>>, std::less<>> observers_;
};

}  // namespace trimora::foundation
