#include "analytics/session/StoreReport.h"

#include <cinttypes>
#include <cmath>
#include <cstdint>
#include <ctime>
#include <ostream>

#include "analytics/Diagnostics.h"
#include "analytics/event/Dictionary.h"
#include "analytics/session/TXSessionRequestBuilder.h"

namespace trimora::analytics {

using foundation::Error;
using foundation::Result;

namespace {

std::string utc(double unixSeconds) {
    const auto seconds = static_cast<std::time_t>(std::floor(unixSeconds));
    std::tm parts = {};
    ::gmtime_r(&seconds, &parts);
    char text[32];
    return {text, std::strftime(text, sizeof text, "%Y-%m-%d %H:%M:%S", &parts)};
}

std::string statusName(int status) {
    switch (static_cast<SessionStatus>(status)) {
        case SessionStatus::active:
            return "active";
        case SessionStatus::done:
            return "done";
        case SessionStatus::sending:
            return "sending";
    }
    return "unknown (" + std::to_string(status) + ")";
}

/// The events of a session that is in the store.
Result<std::vector<TXEvent>> eventsOf(ManagedObjectContext& store, const std::string& session) {
    const auto rows = store.sessionsNamed(session, PropertyValues::left);
    if (!rows)
        return rows.error();
    if (rows->empty())
        return Error{"no session " + session + " in the store"};
    return store.eventsOfSession(session, PropertyValues::fetched);
}

std::string textOf(const Dictionary& body, std::string_view name) {
    const Dictionary* const member = body.find(name);
    return member != nullptr && member->text() != nullptr ? *member->text() : "";
}

std::string eventLine(const std::string& text) {
    const auto body = Dictionary::parse(text);
    const Dictionary* const timestamp = body ? body->find("timestamp") : nullptr;
    const auto moment = timestamp != nullptr ? timestamp->integer() : std::nullopt;
    if (!moment)
        return text;
    const std::int64_t milliseconds = *moment;
    std::string line = utc(static_cast<double>(milliseconds) / 1000) +
                       formatted(".%03" PRId64 "  ", milliseconds % 1000) + textOf(*body, "event") + "  " +
                       textOf(*body, "data");
    const Dictionary* const end = body->find("end_timed_event");
    if (end != nullptr && end->boolean().value_or(false))
        line += "  (end)";
    return line;
}

void printSession(const TXSSID& session, std::size_t events, std::ostream& out) {
    out << session.name.value_or("") << "  " << statusName(session.status) << "  "
        << utc(session.changeStatusTime) << "  " << events << (events == 1 ? " event\n" : " events\n");
}

/// Calls print(session, events) for each session.
template <typename Print>
Result<void> forEachSession(ManagedObjectContext& store, PropertyValues values, const Print& print) {
    const auto sessions = store.allSessions(PropertyValues::fetched);
    if (!sessions)
        return sessions.error();
    for (const TXSSID& session : *sessions) {
        const auto events = store.eventsOfSession(session.name.value_or(""), values);
        if (!events)
            return events.error();
        print(session, *events);
    }
    return {};
}

}  // namespace

Result<void> printSessions(ManagedObjectContext& store, std::ostream& out) {
    return forEachSession(store, PropertyValues::left,
                          [&](const TXSSID& session, const std::vector<TXEvent>& events) {
                              printSession(session, events.size(), out);
                          });
}

Result<void> printEvents(ManagedObjectContext& store, const std::string& session, std::ostream& out) {
    const auto events = eventsOf(store, session);
    if (!events)
        return events.error();
    for (const TXEvent& event : *events)
        out << eventLine(event.body.value_or("")) << '\n';
    return {};
}

Result<void> printStore(ManagedObjectContext& store, EventForm form, std::ostream& out) {
    const auto printIndented = [&](const std::vector<TXEvent>& events) {
        for (const TXEvent& event : events) {
            const std::string body = event.body.value_or("");
            out << "    " << (form == EventForm::readable ? eventLine(body) : body) << '\n';
        }
    };
    Result<void> done = forEachSession(store, PropertyValues::fetched,
                                       [&](const TXSSID& session, const std::vector<TXEvent>& events) {
                                           printSession(session, events.size(), out);
                                           printIndented(events);
                                       });
    if (!done)
        return done;
    const auto others = store.eventsOfNoSession();
    if (!others)
        return others.error();
    if (!others->empty())
        out << "of no session (never sent)\n";
    printIndented(*others);
    return {};
}

Result<void> printRequest(ManagedObjectContext& store, const std::string& session, std::ostream& out) {
    const auto events = eventsOf(store, session);
    if (!events)
        return events.error();
    out << TXSessionRequestBuilder::bodyOfSession(*events);
    return {};
}

}  // namespace trimora::analytics
