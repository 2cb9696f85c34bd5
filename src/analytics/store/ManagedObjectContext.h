#pragma once

#include <functional>
#include <span>
#include <string>
#include <string_view>
#include <variant>
#include <vector>

#include "analytics/store/StoreCoordinator.h"
#include "analytics/store/TXEvent.h"
#include "analytics/store/TXSSID.h"
#include "foundation/Result.h"

namespace trimora::analytics {

/// Whether a fetch reads the attributes of what it finds, or only where it lies.
enum class PropertyValues : bool { left, fetched };

/// An object of either entity.
using ManagedObject = std::variant<TXEvent, TXSSID>;

/// The way to the objects in the store: fetches, saves and removals of TXEvent and TXSSID.
///
/// Objects are values. A new one lives in its holder's hands alone until save() gives it a row; a
/// fetched one is a copy, which save() writes back. Each operation is one transaction and is on the
/// disk when it returns without an error; several become one within performAndWait(). Fetches return
/// objects in the order in which they were first saved.
///
/// Every operation: on failure returns an error; nothing changed. Any thread.
class ManagedObjectContext {
 public:
    explicit ManagedObjectContext(StoreCoordinator& coordinator) : coordinator_(coordinator) {}

    /// Everything that `block` does here is done whole or not at all, and nobody comes between.
    [[nodiscard]] foundation::Result<void> performAndWait(
        const std::function<foundation::Result<void>()>& block);

    [[nodiscard]] foundation::Result<std::vector<TXEvent>> eventsOfSession(const std::string& ssid,
                                                                           PropertyValues values);
    /// Those whose session has no row: a crash that was told after its session had been sent.
    [[nodiscard]] foundation::Result<std::vector<TXEvent>> eventsOfNoSession();
    /// Adds the event, or replaces the one in its row. Adding to a store that is full drops the oldest
    /// finished sessions and logs how many; where the live session alone fills it, an error.
    [[nodiscard]] foundation::Result<void> save(TXEvent& event);
    /// Adds new events, all or none of them, and makes room for them once.
    [[nodiscard]] foundation::Result<void> add(std::vector<TXEvent>& events);
    [[nodiscard]] foundation::Result<void> removeEventsOfSession(const std::string& ssid);
    [[nodiscard]] foundation::Result<void> removeAllEvents();

    [[nodiscard]] foundation::Result<std::vector<TXSSID>> sessionsWithStatus(int status,
                                                                             PropertyValues values);
    [[nodiscard]] foundation::Result<std::vector<TXSSID>> sessionsNamed(const std::string& name,
                                                                        PropertyValues values);
    [[nodiscard]] foundation::Result<std::vector<TXSSID>> allSessions(PropertyValues values);
    /// Adds the session, or replaces the one in its row; in a full store as for events.
    [[nodiscard]] foundation::Result<void> save(TXSSID& session);
    [[nodiscard]] foundation::Result<void> remove(const TXSSID& session);
    [[nodiscard]] foundation::Result<void> removeSessionsNamed(const std::string& name);
    [[nodiscard]] foundation::Result<void> removeAllSessions();

    /// Overwrites what removed objects left in the files, as far as other readers let it.
    void wipeRemoved();

 private:
    [[nodiscard]] foundation::Result<void> run(const char* sql);
    [[nodiscard]] foundation::Result<void> run(const char* sql, const std::string& value);
    template <typename Object>
    [[nodiscard]] foundation::Result<void> addMakingRoom(std::span<Object> objects);

    StoreCoordinator& coordinator_;
};

}  // namespace trimora::analytics
