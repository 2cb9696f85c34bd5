#pragma once

#include <filesystem>
#include <future>
#include <memory>

#include "analytics/Installation.h"
#include "analytics/session/ConsentGate.h"
#include "app/GdprConsent.h"
#include "host/IniUserDefaults.h"
#include "host/MachineDevice.h"
#include "host/NetlinkReachability.h"
#include "host/ProgramBundle.h"
#include "platform/GeoClueLocation.h"

class QObject;
class QWindow;

namespace trimora {

/// Telemetrix in this program: the library with its adapters, behind the person's consent.
///
/// Life cycle:
/// 1. The constructor carries out the answer of the earlier runs. Unless that was No, the library records
///    from here on; logging calls and Telemetrix::startSession() may come.
/// 2. With Begin::afterFirstFrame, for queues on threads of their own, what is recorded is only queued, and
///    neither the store nor the network is touched, until beginWork().
/// 3. The destructor ends the session, cleanly, and finishes what was queued.
///
/// Nothing is sent, and libcurl not even set up, before the person has said Yes and a finished session is
/// there to send. Main thread only; what Services names outlives the object.
class TelemetrixWiring final : public app::UsageRecording {
 public:
    struct Services {
        foundation::QueueFactory& queues;
        foundation::Clock& clock;
        foundation::Scheduler& scheduler;
        foundation::NotificationCenter& notifications;
        std::filesystem::path dataHome;    ///< the store lies in its folder "Trimora"
        std::filesystem::path configHome;  ///< the answer lies in its file "Trimora/usage.ini"
    };
    enum class Begin : std::uint8_t { atOnce, afterFirstFrame };
    /// Whether a Yes of an earlier run lets this one send.
    enum class EarlierYes : std::uint8_t { counts, recordsOnly };

    TelemetrixWiring(Services services, Begin begin, EarlierYes earlierYes = EarlierYes::counts);
    ~TelemetrixWiring() override;

    [[nodiscard]] app::GdprConsent& consent() { return consent_; }

    /// The address of the privacy policy that came with the program; empty where it did not.
    [[nodiscard]] std::string privacyUrl() const;

    /// The window has been painted: the queued work may begin. Further calls do nothing.
    void beginWork();

    /// Whether what is recorded may be sent.
    [[nodiscard]] bool maySend() const { return gate_.isOpen(); }

    /// Whether a post is under way. Any thread.
    [[nodiscard]] bool isPosting() const;

    /// Tells the library, from now on, when a window of this program loses or gains the keyboard.
    void watchKeyWindow();

    // app::UsageRecording
    [[nodiscard]] std::optional<std::string> destination() const override;
    void record() override;
    void allowSending() override;
    void stopAndErase() override;
    void erase() override;
    void describe(analytics::EventForm form, std::function<void(std::string)> tell) override;

 private:
    class OnDemandTransport;

    void holdWork();
    void keyWindowChanged(QWindow* to);

    const Services services_;
    host::IniUserDefaults defaults_;
    host::ProgramBundle bundle_;
    host::MachineDevice device_;
    platform::GeoClueLocation location_;
    host::NetlinkReachability reachability_;
    std::unique_ptr<OnDemandTransport> transport_;
    analytics::ConsentGate gate_;
    app::GdprConsent consent_;
    std::unique_ptr<QObject> keyWatch_;
    QWindow* keyWindow_ = nullptr;  // compared only
    std::promise<void> mayWork_;
    bool isHeld_ = false;
    bool mayAllow_ = false;
    std::unique_ptr<analytics::Installation> installation_;
};

}  // namespace trimora
