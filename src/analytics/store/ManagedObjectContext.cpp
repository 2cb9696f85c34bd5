#include "analytics/store/ManagedObjectContext.h"

#include <cinttypes>

#include "analytics/Diagnostics.h"
#include "analytics/store/StoreRoom.h"

namespace trimora::analytics {

using foundation::Result;

namespace {

void readEvents(SqliteStatement& rows, PropertyValues values, std::vector<TXEvent>& found) {
    while (rows.step()) {
        TXEvent& event = found.emplace_back();
        event.row = rows.integer(0);
        if (values == PropertyValues::fetched) {
            event.ssid = rows.text(1);
            event.body = rows.text(2);
        }
    }
}

void readSessions(SqliteStatement& rows, PropertyValues values, std::vector<TXSSID>& found) {
    while (rows.step()) {
        TXSSID& session = found.emplace_back();
        session.row = rows.integer(0);
        if (values == PropertyValues::left)
            continue;
        session.name = rows.text(1);
        session.status = static_cast<int>(rows.integer(2));
        session.changeStatusTime = rows.real(3);
        session.owner = rows.integer(4);
    }
}

/// Reads all objects that a statement finds.
template <typename Object, typename Bind, typename Read>
Result<std::vector<Object>> fetch(StoreCoordinator& coordinator, const char* sql, PropertyValues values,
                                  const Bind& bind, const Read& read) {
    std::vector<Object> found;
    const Result<void> done = coordinator.read([&](SqliteDatabase& database) {
        found.clear();
        SqliteStatement rows = database.statement(sql);
        bind(rows);
        read(rows, values, found);
        return rows.result();
    });
    if (!done)
        return done.error();
    return found;
}

template <typename Bind>
Result<std::vector<TXEvent>> fetchEvents(StoreCoordinator& coordinator, const char* sql,
                                         PropertyValues values, const Bind& bind) {
    return fetch<TXEvent>(coordinator, sql, values, bind, readEvents);
}

template <typename Bind>
Result<std::vector<TXSSID>> fetchSessions(StoreCoordinator& coordinator, const char* sql,
                                          PropertyValues values, const Bind& bind) {
    return fetch<TXSSID>(coordinator, sql, values, bind, readSessions);
}

Result<void> insert(SqliteDatabase& database, const TXEvent& event) {
    return database.statement("INSERT INTO TXEvent (ssid, body) VALUES (?, ?)")
        .bind(event.ssid)
        .bind(event.body)
        .run();
}

Result<void> insert(SqliteDatabase& database, const TXSSID& session) {
    return database
        .statement("INSERT INTO TXSSID (name, status, changeStatusTime, owner) VALUES (?, ?, ?, ?)")
        .bind(session.name)
        .bind(std::int64_t{session.status})
        .bind(session.changeStatusTime)
        .bind(session.owner)
        .run();
}

void logDropped(const DroppedFromStore& dropped) {
    if (dropped.sessions > 0 || dropped.events > 0)
        logLine(formatted("Warning! Store is full, dropped %" PRId64 " finished sessions and %" PRId64
                          " events",
                          dropped.sessions, dropped.events));
}

}  // namespace

Result<void> ManagedObjectContext::performAndWait(const std::function<Result<void>()>& block) {
    return coordinator_.write([&](SqliteDatabase&) { return block(); });
}

Result<std::vector<TXEvent>> ManagedObjectContext::eventsOfSession(const std::string& ssid,
                                                                   PropertyValues values) {
    const char* const sql = values == PropertyValues::fetched
                                ? "SELECT id, ssid, body FROM TXEvent WHERE ssid = ? ORDER BY id"
                                : "SELECT id FROM TXEvent WHERE ssid = ? ORDER BY id";
    return fetchEvents(coordinator_, sql, values, [&](SqliteStatement& rows) { rows.bind(ssid); });
}

Result<std::vector<TXEvent>> ManagedObjectContext::eventsOfNoSession() {
    return fetchEvents(coordinator_,
                       "SELECT id, ssid, body FROM TXEvent WHERE NOT EXISTS"
                       " (SELECT 1 FROM TXSSID WHERE TXSSID.name = TXEvent.ssid) ORDER BY id",
                       PropertyValues::fetched, [](SqliteStatement&) {});
}

template <typename Object>
Result<void> ManagedObjectContext::addMakingRoom(std::span<Object> objects) {
    DroppedFromStore dropped;
    Result<void> done = coordinator_.write([&](SqliteDatabase& database) {
        dropped = {};  // the work is done again where the store had to be replaced
        for (Object& object : objects) {
            if (Result<void> inserted = insert(database, object); !inserted)
                return inserted;
            object.row = database.lastInsertedRow();
        }
        return makeRoom(database, coordinator_.settings(), dropped);
    });
    if (done)
        logDropped(dropped);
    for (Object& object : objects)
        object.row = done ? object.row : 0;
    return done;
}

Result<void> ManagedObjectContext::add(std::vector<TXEvent>& events) {
    return addMakingRoom(std::span(events));
}

Result<void> ManagedObjectContext::save(TXEvent& event) {
    if (event.row == 0)
        return addMakingRoom(std::span(&event, 1));
    return coordinator_.write([&](SqliteDatabase& database) {
        return database.statement("UPDATE TXEvent SET ssid = ?, body = ? WHERE id = ?")
            .bind(event.ssid)
            .bind(event.body)
            .bind(event.row)
            .run();
    });
}

Result<void> ManagedObjectContext::removeEventsOfSession(const std::string& ssid) {
    return run("DELETE FROM TXEvent WHERE ssid = ?", ssid);
}

Result<void> ManagedObjectContext::removeAllEvents() {
    return run("DELETE FROM TXEvent");
}

Result<std::vector<TXSSID>> ManagedObjectContext::sessionsWithStatus(int status, PropertyValues values) {
    return fetchSessions(
        coordinator_,
        "SELECT id, name, status, changeStatusTime, owner FROM TXSSID WHERE status = ? ORDER BY id", values,
        [&](SqliteStatement& rows) { rows.bind(std::int64_t{status}); });
}

Result<std::vector<TXSSID>> ManagedObjectContext::sessionsNamed(const std::string& name,
                                                                PropertyValues values) {
    return fetchSessions(
        coordinator_,
        "SELECT id, name, status, changeStatusTime, owner FROM TXSSID WHERE name = ? ORDER BY id", values,
        [&](SqliteStatement& rows) { rows.bind(name); });
}

Result<std::vector<TXSSID>> ManagedObjectContext::allSessions(PropertyValues values) {
    return fetchSessions(coordinator_,
                         "SELECT id, name, status, changeStatusTime, owner FROM TXSSID ORDER BY id", values,
                         [](SqliteStatement&) {});
}

Result<void> ManagedObjectContext::save(TXSSID& session) {
    if (session.row == 0)
        return addMakingRoom(std::span(&session, 1));
    return coordinator_.write([&](SqliteDatabase& database) {
        return database
            .statement("UPDATE TXSSID SET name = ?, status = ?, changeStatusTime = ?, owner = ? WHERE id = ?")
            .bind(session.name)
            .bind(std::int64_t{session.status})
            .bind(session.changeStatusTime)
            .bind(session.owner)
            .bind(session.row)
            .run();
    });
}

Result<void> ManagedObjectContext::remove(const TXSSID& session) {
    return coordinator_.write([&](SqliteDatabase& database) {
        return database.statement("DELETE FROM TXSSID WHERE id = ?").bind(session.row).run();
    });
}

Result<void> ManagedObjectContext::removeSessionsNamed(const std::string& name) {
    return run("DELETE FROM TXSSID WHERE name = ?", name);
}

Result<void> ManagedObjectContext::removeAllSessions() {
    return run("DELETE FROM TXSSID");
}

void ManagedObjectContext::wipeRemoved() {
    // Readers in other processes may hold the log; it is then wiped by the next checkpoint.
    (void)coordinator_.read(
        [](SqliteDatabase& database) { return database.execute("PRAGMA wal_checkpoint(TRUNCATE)"); });
}

Result<void> ManagedObjectContext::run(const char* sql) {
    return coordinator_.write([&](SqliteDatabase& database) { return database.statement(sql).run(); });
}

Result<void> ManagedObjectContext::run(const char* sql, const std::string& value) {
    return coordinator_.write(
        [&](SqliteDatabase& database) { return database.statement(sql).bind(value).run(); });
}

}  // namespace trimora::analytics
