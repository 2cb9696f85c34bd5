#include <unistd.h>

#include <algorithm>
#include <filesystem>
#include <memory>
#include <sstream>
#include <string>

#include "Demand.h"
#include "Targets.h"
#include "analytics/Installation.h"
#include "analytics/PortsForTests.h"
#include "analytics/event/TXEventBuilder.h"
#include "analytics/public/TXAnalyticsCollector.h"
#include "analytics/public/Telemetrix.h"
#include "analytics/session/StoreReport.h"
#include "analytics/session/TXSessionManager.h"
#include "analytics/session/TXSessionRequestBuilder.h"
#include "analytics/store/TXAnalyticsCoreDataManager.h"
#include "foundation/Log.h"
#include "foundation/ManualQueues.h"
#include "foundation/VirtualTime.h"

namespace trimora::fuzz {
namespace {

using namespace analytics;
using foundation::Result;

/// A library of its own, started, with a running session that has no events, whose warnings nobody reads.
class Library {
 public:
    Library() {
        foundation::log::setThreshold(foundation::log::Level::error);
        installation_ = std::make_unique<Installation>(Wiring{queues_,
                                                              time_,
                                                              time_,
                                                              notifications_,
                                                              defaults_,
                                                              bundle_,
                                                              device_,
                                                              location_,
                                                              network_,
                                                              transport_,
                                                              folder_.path,
                                                              {}});
        Telemetrix::startSession();
        queues_.settle();
        demand(context().removeEventsOfSession(session()).ok());
    }
    static std::string session() { return TXSessionManager::sharedManager().currentSession(); }
    static ManagedObjectContext& context() {
        return TXAnalyticsCoreDataManager::sharedManager().managedObjectContext();
    }

 private:
    struct Folder {
        Folder() {
            std::string name = std::filesystem::temp_directory_path() / "trimora-fuzz-XXXXXX";
            demand(::mkdtemp(name.data()) != nullptr);
            path = name;
        }
        ~Folder() { std::filesystem::remove_all(path); }
        Folder(const Folder&) = delete;
        Folder& operator=(const Folder&) = delete;
        std::filesystem::path path;
    };
    Folder folder_;
    foundation::ManualQueueFactory queues_;
    foundation::VirtualTime time_;
    foundation::NotificationCenter notifications_;
    MemoryUserDefaults defaults_;
    FakeBundle bundle_;
    FakeDevice device_;
    FakeLocation location_;
    FakeReachability network_;
    FakeTransport transport_;
    std::unique_ptr<Installation> installation_;
};

Library& library() {
    static Library started;
    return started;
}

/// Whatever the data, the body holds it as a text that reads as the data.
void buildBody(const std::string& text) {
    auto data = Dictionary::parse(text);
    if (!data)
        return;
    const auto body = Dictionary::parse(TXEventBuilder::jsonStringForEvent("name", *data).value());
    demand(body && body->find("data") != nullptr);
    TXEventBuilder::removeEndTimedEventFromDictionary(*data);
    if (data->isObject())
        demand(Dictionary::parse(*body->find("data")->text()) == data);
}

/// A name that JSON can carry is in the body as it was.
void buildNamed(const std::string& name) {
    const auto text = TXEventBuilder::jsonStringForEvent(name, nullptr);
    if (text)
        demand(*Dictionary::parse(*text)->find("event") == Dictionary(name));
}

/// A row with this text in the running session: it comes back as it was, is posted as it is, and whatever
/// else reads it goes on.
void readRow(const std::string& text) {
    ManagedObjectContext& context = Library::context();
    (void)context.performAndWait([&]() -> Result<void> {
        const std::string session = Library::session();
        TXEvent event{0, session, text};
        demand(context.save(event).ok());
        const auto stored = context.eventsOfSession(session, PropertyValues::fetched);
        demand(stored && stored->size() == 1 && stored->front().body == text);
        demand(TXSessionRequestBuilder::bodyOfSession(*stored) == "[" + text + "]");
        std::ostringstream report;
        demand(printStore(context, EventForm::readable, report).ok());
        TXAnalyticsCollector::sessionEnd();
        const auto after = context.eventsOfSession(session, PropertyValues::fetched);
        demand(after && !after->empty() && after->size() <= 2);
        return foundation::Error{"nothing of it is to stay"};
    });
}

}  // namespace

int readEvent(const std::uint8_t* data, std::size_t size) {
    library();
    const std::string text(data, data + size);
    buildBody(text);
    buildNamed(text);
    readRow(text);
    return 0;
}

}  // namespace trimora::fuzz
