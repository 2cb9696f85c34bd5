#include "main/TelemetrixWiring.h"

#include <QFile>
#include <QGuiApplication>
#include <QUrl>
#include <QWindow>
#include <atomic>
#include <mutex>
#include <sstream>
#include <utility>

#include "analytics/public/TXAnalyticsQueue.h"
#include "analytics/public/Telemetrix.h"
#include "analytics/public/TelemetrixNotifications.h"
#include "analytics/session/TXAnalyticsConfig.h"
#include "analytics/store/TXAnalyticsCoreDataManager.h"
#include "host/CurlTransport.h"
#include "platform/ApplicationId.h"

namespace trimora {

using analytics::Telemetrix;
using analytics::TXAnalyticsQueue;

namespace {

host::ProgramBundle::Information aboutThisProgram() {
    return {{"CFBundleDisplayName", "Trimora"},
            {"CFBundleName", "trimora"},
            {"CFBundleIdentifier", platform::kApplicationId},
            {"CFBundleVersion", TRIMORA_VERSION},
            {"CFBundleShortVersionString", TRIMORA_VERSION},
            {"TelemetrixInnerId", platform::kApplicationId}};
}

std::string storeAsText(analytics::EventForm form) {
    std::ostringstream text;
    auto& context = analytics::TXAnalyticsCoreDataManager::sharedManager().managedObjectContext();
    if (const auto printed = analytics::printStore(context, form, text); !printed)
        text << printed.error().message << '\n';
    return text.str();
}

}  // namespace

/// A CurlTransport that is made with the first post.
class TelemetrixWiring::OnDemandTransport final : public analytics::HttpTransport {
 public:
    void send(analytics::HttpRequest request, Completion completion) override {
        auto made = make();
        if (!made) {
            completion(analytics::TelemetrixError{host::CurlTransport::kDomain, made.error().code,
                                                  made.error().message});
            return;
        }
        ++underWay_;
        (*made)->send(std::move(request), [this, completion = std::move(completion)](const Outcome& outcome) {
            completion(outcome);
            --underWay_;
        });
    }
    [[nodiscard]] bool isPosting() const { return underWay_ > 0; }
    void cancelAll() override {
        const std::scoped_lock lock(mutex_);
        if (curl_)
            curl_->cancelAll();
    }

 private:
    foundation::Result<host::CurlTransport*> make() {
        const std::scoped_lock lock(mutex_);
        if (!curl_) {
            auto created = host::CurlTransport::create();
            if (!created)
                return created.error();
            curl_ = std::move(created).value();
        }
        return curl_.get();
    }

    std::atomic<int> underWay_ = 0;
    std::mutex mutex_;
    std::unique_ptr<host::CurlTransport> curl_;
};

TelemetrixWiring::TelemetrixWiring(Services services, Begin begin, EarlierYes earlierYes)
    : services_(std::move(services)),
      defaults_(services_.configHome / "Trimora" / "usage.ini"),
      bundle_(aboutThisProgram()),
      device_(platform::kApplicationId, "Trimora/" TRIMORA_VERSION " (Linux)"),
      location_(defaults_),
      transport_(std::make_unique<OnDemandTransport>()),
      gate_(*transport_),
      consent_(defaults_, *this),
      isHeld_(begin == Begin::afterFirstFrame),
      mayAllow_(earlierYes == EarlierYes::counts) {
    consent_.begin();
    mayAllow_ = true;
}

TelemetrixWiring::~TelemetrixWiring() {
    keyWatch_.reset();
    beginWork();
    if (installation_)
        services_.notifications.post(analytics::kNSApplicationWillTerminateNotification);
    installation_.reset();
}

std::string TelemetrixWiring::privacyUrl() const {
    const auto file = bundle_.pathForResource("privacy", "md");
    if (!file)
        return "";
    return QUrl::fromLocalFile(QFile::decodeName(file->c_str())).toEncoded().toStdString();
}

void TelemetrixWiring::holdWork() {
    TXAnalyticsQueue::addTask([mayWork = mayWork_.get_future().share()] { mayWork.wait(); });
}

void TelemetrixWiring::beginWork() {
    if (std::exchange(isHeld_, false))
        mayWork_.set_value();
}

bool TelemetrixWiring::isPosting() const {
    return transport_->isPosting();
}

void TelemetrixWiring::watchKeyWindow() {
    keyWatch_ = std::make_unique<QObject>();
    keyWindow_ = QGuiApplication::focusWindow();
    QObject::connect(qGuiApp, &QGuiApplication::focusWindowChanged, keyWatch_.get(),
                     [this](QWindow* window) { keyWindowChanged(window); });
}

// The library does not ask which window it was: one that loses the keyboard to another of this program is a
// loss and a gain.
void TelemetrixWiring::keyWindowChanged(QWindow* to) {
    QWindow* const from = std::exchange(keyWindow_, to);
    if (from != nullptr)
        services_.notifications.post(analytics::kNSWindowDidResignKeyNotification);
    if (to != nullptr)
        services_.notifications.post(analytics::kNSWindowDidBecomeKeyNotification);
}

std::optional<std::string> TelemetrixWiring::destination() const {
    return analytics::TXAnalyticsConfig::configuredUrl();
}

void TelemetrixWiring::record() {
    if (!installation_) {
        installation_ = std::make_unique<analytics::Installation>(analytics::Wiring{services_.queues,
                                                                                    services_.clock,
                                                                                    services_.scheduler,
                                                                                    services_.notifications,
                                                                                    defaults_,
                                                                                    bundle_,
                                                                                    device_,
                                                                                    location_,
                                                                                    reachability_,
                                                                                    gate_,
                                                                                    services_.dataHome,
                                                                                    {}});
        if (isHeld_)
            holdWork();
    }
    Telemetrix::startSession();
}

void TelemetrixWiring::allowSending() {
    if (mayAllow_)
        gate_.open();
}

void TelemetrixWiring::stopAndErase() {
    if (!installation_)
        return;
    beginWork();
    gate_.refuse();
    installation_.reset();  // which waits until the store is empty
}

void TelemetrixWiring::erase() {
    if (installation_)
        gate_.erase();
}

void TelemetrixWiring::describe(analytics::EventForm form, std::function<void(std::string)> tell) {
    if (!installation_) {
        services_.queues.mainQueue().async([tell = std::move(tell)] { tell(""); });
        return;
    }
    TXAnalyticsQueue::addTask([form, tell = std::move(tell)] {
        TXAnalyticsQueue::addTaskOnMainQueue([tell, text = storeAsText(form)] { tell(text); });
    });
}

}  // namespace trimora
