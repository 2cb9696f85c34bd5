#include "analytics/store/StoreSchema.h"

#include <sqlite3.h>

#include <array>

namespace trimora::analytics {

using foundation::Error;
using foundation::Result;

namespace {

constexpr std::int64_t kApplicationId = 0x54584442;  // "TXDB"; keep equal to the PRAGMA below

/// Step n brings a store from version n to version n + 1. A step that was shipped never changes.
constexpr std::array kMigrations = {
    R"sql(
CREATE TABLE TXEvent (id INTEGER PRIMARY KEY AUTOINCREMENT, ssid TEXT, body TEXT);
CREATE INDEX TXEvent_ssid ON TXEvent (ssid);
CREATE TABLE TXSSID (id INTEGER PRIMARY KEY AUTOINCREMENT, name TEXT, status INTEGER NOT NULL,
                     changeStatusTime REAL NOT NULL, owner INTEGER NOT NULL DEFAULT 0);
CREATE INDEX TXSSID_name ON TXSSID (name);
CREATE INDEX TXSSID_status ON TXSSID (status);

CREATE TABLE Totals (events INTEGER NOT NULL, bytes INTEGER NOT NULL,
                     droppedSessions INTEGER NOT NULL, droppedEvents INTEGER NOT NULL);
INSERT INTO Totals VALUES (0, 0, 0, 0);
CREATE TRIGGER TXEvent_inserted AFTER INSERT ON TXEvent BEGIN
    UPDATE Totals SET events = events + 1, bytes = bytes + coalesce(length(CAST(new.body AS BLOB)), 0);
END;
CREATE TRIGGER TXEvent_updated AFTER UPDATE OF body ON TXEvent BEGIN
    UPDATE Totals SET bytes = bytes + coalesce(length(CAST(new.body AS BLOB)), 0)
                                    - coalesce(length(CAST(old.body AS BLOB)), 0);
END;
CREATE TRIGGER TXEvent_deleted AFTER DELETE ON TXEvent BEGIN
    UPDATE Totals SET events = events - 1, bytes = bytes - coalesce(length(CAST(old.body AS BLOB)), 0);
END;
PRAGMA application_id = 0x54584442;
PRAGMA user_version = 1;
)sql",
};
constexpr auto kVersion = static_cast<std::int64_t>(kMigrations.size());

Result<std::int64_t> version(SqliteDatabase& database) {
    return database.number("PRAGMA user_version");
}

}  // namespace

Result<StoreKind> identify(SqliteDatabase& database) {
    const auto tables = database.number("SELECT count(*) FROM sqlite_schema");
    const auto application = database.number("PRAGMA application_id");
    const auto found = version(database);
    for (const auto* answer : {&tables, &application, &found}) {
        if (!*answer)
            return answer->error();
    }
    if (*application == kApplicationId)
        return *found > kVersion ? StoreKind::newer : StoreKind::ours;
    return *tables == 0 && *application == 0 ? StoreKind::empty : StoreKind::foreign;
}

Result<void> configureConnection(SqliteDatabase& database) {
    // A checkpoint every 512 pages (2 MiB) waits for the disk once in some hundred events and keeps the
    // log beside the store small; after a kill nothing is lost, after a power cut only the last moments.
    return database.execute(
        "PRAGMA journal_mode = WAL;"
        "PRAGMA synchronous = NORMAL;"
        "PRAGMA wal_autocheckpoint = 512;"
        "PRAGMA journal_size_limit = 2097152;"
        "PRAGMA secure_delete = ON;"
        "PRAGMA cell_size_check = ON;"
        "PRAGMA temp_store = MEMORY;");
}

Result<void> prepareTables(SqliteDatabase& database) {
    if (Result<void> begun = database.execute("BEGIN IMMEDIATE"); !begun)
        return begun;
    // Read inside the transaction: another process may have made the tables meanwhile.
    const Result<std::int64_t> found = version(database);
    Result<void> done = found ? Result<void>() : found.error();
    for (std::int64_t step = found ? *found : kVersion; done && step < kVersion; ++step)
        done = database.execute(kMigrations.at(static_cast<std::size_t>(step)));
    if (done)
        done = database.execute("COMMIT");
    if (!done)
        (void)database.execute("ROLLBACK");
    return done;
}

Result<void> checkTables(SqliteDatabase& database) {
    // To explain a statement compiles it, with its triggers, and changes nothing.
    Result<void> done = database.execute(
        "BEGIN IMMEDIATE;"
        "EXPLAIN INSERT INTO TXEvent (ssid, body) VALUES ('', '');"
        "EXPLAIN UPDATE TXEvent SET ssid = '', body = '' WHERE id = 0;"
        "EXPLAIN DELETE FROM TXEvent WHERE ssid = '';"
        "EXPLAIN UPDATE Totals SET droppedSessions = 0, droppedEvents = 0;"
        "EXPLAIN INSERT INTO TXSSID (name, status, changeStatusTime, owner) VALUES ('', 0, 0, 0);"
        "SELECT id, name, status, changeStatusTime, owner FROM TXSSID LIMIT 0;"
        "SELECT id, ssid, body FROM TXEvent LIMIT 0;"
        "INSERT INTO Totals SELECT 0, 0, 0, 0 WHERE NOT EXISTS (SELECT 1 FROM Totals);"
        "UPDATE Totals SET events = (SELECT count(*) FROM TXEvent),"
        "    bytes = (SELECT coalesce(sum(length(CAST(body AS BLOB))), 0) FROM TXEvent);"
        "COMMIT");
    if (done)
        return done;
    (void)database.execute("ROLLBACK");
    if (done.error().code == SQLITE_ERROR)
        return Error{"tables are damaged: " + done.error().message, SQLITE_CORRUPT};
    return done;
}

}  // namespace trimora::analytics
