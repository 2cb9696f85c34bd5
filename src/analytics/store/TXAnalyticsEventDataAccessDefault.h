#pragma once

#include <string>
#include <vector>

#include "analytics/store/ManagedObjectContext.h"

namespace trimora::analytics {

/// Events in the store. Failures are logged as "Telemetrix: <reason>" and the operation is dropped;
/// a fetch then returns nothing. Any thread; each call works on the disk before it returns.
class TXAnalyticsEventDataAccessDefault {
 public:
    /// Brings the event to the store; it has its row afterwards. On failure logs
    /// "Telemetrix: Warning! Wasn't able to save event with reason <reason>" and returns false: the
    /// event is lost.
    bool saveEvent(TXEvent& event, ManagedObjectContext& context);

    /// Brings new events to the store in their order, in one transaction where that goes; what stops one
    /// of them (it is too large for a full store) does not stop the others. Each that is lost is logged
    /// as above.
    void saveEvents(std::vector<TXEvent>& events, ManagedObjectContext& context);

    /// The events of one session, in the order in which they were saved.
    [[nodiscard]] std::vector<TXEvent> eventsForSSIDString(const std::string& ssid, PropertyValues values,
                                                           ManagedObjectContext& context);

    void deleteEventsForSSIDString(const std::string& ssid, ManagedObjectContext& context);

    /// Empties the entity.
    void deleteAllObjects();
};

}  // namespace trimora::analytics
