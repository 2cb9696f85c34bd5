#pragma once

#include <algorithm>
#include <map>
#include <memory>
#include <mutex>
#include <optional>
#include <string>
#include <utility>
#include <vector>

#include "analytics/info/ApplicationBundle.h"
#include "analytics/info/DeviceSource.h"
#include "analytics/info/LocationSource.h"
#include "analytics/info/UserDefaults.h"
#include "analytics/reachability/ReachabilitySource.h"
#include "analytics/session/HttpTransport.h"

/// The library's ports in memory: what the host says is what the test put there.
namespace trimora::analytics {

class MemoryUserDefaults final : public UserDefaults {
 public:
    [[nodiscard]] std::optional<std::string> objectForKey(std::string_view key) const override {
        const auto found = values.find(key);
        return found == values.end() ? std::nullopt : std::optional(found->second);
    }
    void setObject(std::string_view key, std::string_view value) override {
        values[std::string(key)] = value;
    }
    void removeObjectForKey(std::string_view key) override { values.erase(std::string(key)); }
    void synchronize() override { ++synchronized; }

    std::map<std::string, std::string, std::less<>> values;
    int synchronized = 0;
};

class FakeBundle final : public ApplicationBundle {
 public:
    [[nodiscard]] std::optional<std::string> infoValue(std::string_view key) const override {
        const auto found = info.find(key);
        return found == info.end() ? std::nullopt : std::optional(found->second);
    }
    [[nodiscard]] std::filesystem::path path() const override { return "/opt/trimora"; }
    [[nodiscard]] std::optional<foundation::Clock::WallTime> creationDate() const override { return created; }
    [[nodiscard]] std::optional<foundation::Clock::WallTime> modificationDate() const override {
        return modified;
    }
    [[nodiscard]] std::optional<std::filesystem::path> pathForResource(std::string_view name,
                                                                       std::string_view type) const override {
        const auto found = resources.find(std::string(name) + "." + std::string(type));
        return found == resources.end() ? std::nullopt : std::optional(found->second);
    }

    std::map<std::string, std::string, std::less<>> info = {{"CFBundleDisplayName", "Trimora"},
                                                            {"CFBundleName", "trimora"},
                                                            {"CFBundleIdentifier", "org.trimora.Trimora"},
                                                            {"CFBundleVersion", "12"},
                                                            {"CFBundleShortVersionString", "1.2"},
                                                            {"TelemetrixInnerId", "app-id"}};
    std::map<std::string, std::filesystem::path> resources;
    std::optional<foundation::Clock::WallTime> created =
        foundation::Clock::WallTime(std::chrono::hours(1000));
    std::optional<foundation::Clock::WallTime> modified =
        foundation::Clock::WallTime(std::chrono::hours(2000));
};

class FakeDevice final : public DeviceSource {
 public:
    [[nodiscard]] std::optional<std::string> uniqueIdentifier() const override { return id; }
    [[nodiscard]] std::optional<std::string> hardwareModel() const override { return model; }
    [[nodiscard]] std::optional<std::string> operatingSystemVersion() const override { return version; }
    [[nodiscard]] std::optional<std::string> userAgent() const override { return agent; }
    [[nodiscard]] std::string localeIdentifier() const override { return locale; }
    [[nodiscard]] TimeZone timeZone() const override { return zone; }
    [[nodiscard]] std::optional<std::string> advertisingIdentifier() const override { return advertising; }

    std::optional<std::string> id = "device-id";
    std::optional<std::string> model = "Desk 1";
    std::optional<std::string> version = "12.0";
    std::optional<std::string> agent = "Trimora/1.2 (Linux)";
    std::string locale = "en_US";
    TimeZone zone = {"Europe/Paris", 3600};
    std::optional<std::string> advertising;
};

class FakeLocation final : public LocationSource {
 public:
    [[nodiscard]] Authorization authorizationStatus() const override { return status; }
    void setDelegate(LocationDelegate* to) override { delegate = to; }
    void startUpdatingLocation() override { ++started; }
    void reverseGeocodeLocation(const Location& /*location*/, Placemarks completion) override {
        ++geocoded;
        completion(placemarks);
    }
    [[nodiscard]] std::string englishCountryName(const std::string& code) const override {
        return code == "FR" ? "France" : "";
    }

    Authorization status = Authorization::denied;
    LocationDelegate* delegate = nullptr;
    int started = 0;
    int geocoded = 0;
    foundation::Result<std::vector<Placemark>> placemarks = std::vector{Placemark{"FR"}};
};

/// All refs share one set of flags; change() tells those that listen. The flags are set directly only
/// while no other thread asks.
class FakeReachability final : public ReachabilitySource {
 public:
    class Ref final : public ReachabilityRef {
     public:
        explicit Ref(FakeReachability& owner) : owner_(owner) {
            const std::scoped_lock lock(owner_.mutex_);
            owner_.refs_.push_back(this);
        }
        ~Ref() override {
            const std::scoped_lock lock(owner_.mutex_);
            std::erase(owner_.refs_, this);
        }
        [[nodiscard]] std::optional<std::uint32_t> flags() const override {
            const std::scoped_lock lock(owner_.mutex_);
            return owner_.flags;
        }
        [[nodiscard]] bool setCallback(Callback callback) override {
            callback_ = std::move(callback);
            return owner_.canWatch;
        }
        [[nodiscard]] bool setDispatchQueue(foundation::TaskQueue* queue) override {
            queue_ = queue;
            return owner_.canBind;
        }
        void tell(std::uint32_t flags) const {
            if (queue_ != nullptr && callback_)
                queue_->async([callback = callback_, flags] { callback(flags); });
        }
        [[nodiscard]] bool isWatching() const { return queue_ != nullptr || callback_; }

     private:
        FakeReachability& owner_;
        Callback callback_;
        foundation::TaskQueue* queue_ = nullptr;
    };

    [[nodiscard]] std::unique_ptr<ReachabilityRef> createWithName(const std::string& hostName) override {
        return hostName.empty() ? nullptr : std::make_unique<Ref>(*this);
    }
    [[nodiscard]] std::unique_ptr<ReachabilityRef> createWithAddress(const std::string& address) override {
        {
            const std::scoped_lock lock(mutex_);
            lastAddress = address;
        }
        return std::make_unique<Ref>(*this);
    }

    void change(std::uint32_t to) {
        const std::scoped_lock lock(mutex_);
        flags = to;
        for (const Ref* ref : refs_)
            ref->tell(to);
    }
    [[nodiscard]] bool isWatched() const {
        return std::any_of(refs_.begin(), refs_.end(), [](const Ref* ref) { return ref->isWatching(); });
    }

    std::optional<std::uint32_t> flags = reachability::kReachable;
    bool canWatch = true;
    bool canBind = true;
    std::string lastAddress;

 private:
    mutable std::mutex mutex_;
    std::vector<Ref*> refs_;
};

/// Keeps requests until the test answers them, or answers all by itself with `status`. Any thread.
class FakeTransport final : public HttpTransport {
 public:
    void send(HttpRequest request, Completion completion) override {
        std::optional<Outcome> now;
        {
            const std::scoped_lock lock(mutex_);
            requests_.push_back(request);
            now = answer;
            if (!now) {
                waiting_.push_back(std::move(completion));
                return;
            }
        }
        completion(*now);
    }
    void cancelAll() override {
        while (answerOldest(TelemetrixError{"TestTransport", 7, "cancelled"})) {
        }
    }
    /// False where none waits.
    bool answerOldest(const Outcome& outcome) {
        Completion completion;
        {
            const std::scoped_lock lock(mutex_);
            if (waiting_.empty())
                return false;
            completion = std::move(waiting_.front());
            waiting_.erase(waiting_.begin());
        }
        completion(outcome);
        return true;
    }
    [[nodiscard]] std::vector<HttpRequest> requests() const {
        const std::scoped_lock lock(mutex_);
        return requests_;
    }
    [[nodiscard]] int waiting() const {
        const std::scoped_lock lock(mutex_);
        return static_cast<int>(waiting_.size());
    }

    std::optional<Outcome> answer;  ///< what every request gets at once; nothing: it waits

 private:
    mutable std::mutex mutex_;
    std::vector<HttpRequest> requests_;
    std::vector<Completion> waiting_;
};

}  // namespace trimora::analytics
