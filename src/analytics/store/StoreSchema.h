#pragma once

#include "analytics/store/SqliteDatabase.h"
#include "foundation/Result.h"

/// The tables of the store and how they came to be. docs/formats/event-store.md describes them.
namespace trimora::analytics {

/// What a database file turned out to be.
enum class StoreKind : std::uint8_t {
    ours,     ///< a store of this version or an older one
    empty,    ///< nothing in it yet
    newer,    ///< a store that a later version of the library wrote
    foreign,  ///< some other program's database
};

/// Looks at the database without changing it. An error means that it cannot be read; codes
/// SQLITE_NOTADB and SQLITE_CORRUPT mean that it never will.
[[nodiscard]] foundation::Result<StoreKind> identify(SqliteDatabase& database);

/// Sets what a connection to the store needs (write-ahead log, checks, overwriting of what is deleted).
[[nodiscard]] foundation::Result<void> configureConnection(SqliteDatabase& database);

/// Makes the tables in an empty database, or brings an older store to this version, in one step: on
/// failure returns an error; nothing changed.
[[nodiscard]] foundation::Result<void> prepareTables(SqliteDatabase& database);

/// Sees to it that every table is as this version knows it, and counts anew what the store holds. An
/// error of code SQLITE_CORRUPT means that the tables are not what their version says.
[[nodiscard]] foundation::Result<void> checkTables(SqliteDatabase& database);

}  // namespace trimora::analytics
