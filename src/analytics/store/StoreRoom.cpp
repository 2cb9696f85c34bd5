#include "analytics/store/StoreRoom.h"

#include <sqlite3.h>

#include <optional>
#include <string>

namespace trimora::analytics {

using foundation::Error;
using foundation::Result;

namespace {

Result<bool> isWithinLimits(SqliteDatabase& database, const StoreSettings& limits) {
    SqliteStatement totals =
        database.statement("SELECT events, bytes, (SELECT count(*) FROM TXSSID) FROM Totals");
    if (totals.step())
        return totals.integer(0) <= limits.maxEvents && totals.integer(1) <= limits.maxBytes &&
               totals.integer(2) <= limits.maxSessions;
    const Result<void> failed = totals.result();
    return failed ? Error{"store has lost its totals", SQLITE_CORRUPT} : failed.error();
}

std::optional<std::string> oldestFinished(SqliteDatabase& database) {
    SqliteStatement oldest = database.statement(
        "SELECT name FROM TXSSID WHERE status = 1 AND name IS NOT NULL ORDER BY changeStatusTime, id LIMIT "
        "1");
    return oldest.step() ? oldest.text(0) : std::nullopt;
}

Result<std::int64_t> changed(SqliteDatabase& database, const Result<void>& done) {
    if (!done)
        return done.error();
    return database.number("SELECT changes()");
}

Result<void> count(SqliteDatabase& database, std::int64_t sessions, std::int64_t events,
                   DroppedFromStore& dropped) {
    dropped.sessions += sessions;
    dropped.events += events;
    return database
        .statement(
            "UPDATE Totals SET droppedSessions = droppedSessions + ?, droppedEvents = droppedEvents + ?")
        .bind(sessions)
        .bind(events)
        .run();
}

Result<void> dropSession(SqliteDatabase& database, const std::string& name, DroppedFromStore& dropped) {
    const auto events =
        changed(database, database.statement("DELETE FROM TXEvent WHERE ssid = ?").bind(name).run());
    if (!events)
        return events.error();
    const auto rows =
        changed(database, database.statement("DELETE FROM TXSSID WHERE name = ?").bind(name).run());
    if (!rows)
        return rows.error();
    return count(database, *rows, *events, dropped);
}

/// False where there were none.
Result<bool> dropOrphans(SqliteDatabase& database, DroppedFromStore& dropped) {
    const auto events =
        changed(database, database
                              .statement("DELETE FROM TXEvent WHERE NOT EXISTS"
                                         " (SELECT 1 FROM TXSSID WHERE TXSSID.name = TXEvent.ssid)")
                              .run());
    if (!events)
        return events.error();
    if (const Result<void> counted = count(database, 0, *events, dropped); !counted)
        return counted.error();
    return *events > 0;
}

}  // namespace

Result<void> makeRoom(SqliteDatabase& database, const StoreSettings& limits, DroppedFromStore& dropped) {
    for (;;) {
        const Result<bool> within = isWithinLimits(database, limits);
        if (!within)
            return within.error();
        if (*within)
            return {};
        if (const auto name = oldestFinished(database)) {
            if (Result<void> done = dropSession(database, *name, dropped); !done)
                return done;
            continue;
        }
        const Result<bool> orphans = dropOrphans(database, dropped);
        if (!orphans)
            return orphans.error();
        if (!*orphans)
            return Error{"store is full", SQLITE_FULL};
    }
}

}  // namespace trimora::analytics
