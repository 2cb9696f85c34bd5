#include "analytics/store/StoreSchema.h"

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

}  // namespace trimora::analytics
