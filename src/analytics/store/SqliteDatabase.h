#pragma once

#include <cstdint>
#include <filesystem>
#include <map>
#include <memory>
#include <optional>
#include <string>

#include "foundation/Result.h"

struct sqlite3;
struct sqlite3_stmt;

namespace trimora::analytics {

/// One use of a prepared statement: bind in order, then step. Its end makes the statement ready for
/// the next use. Errors stick: after one, step() is false and result() says why.
class SqliteStatement {
 public:
    SqliteStatement(sqlite3* database, sqlite3_stmt* statement, int code)
        : database_(database), statement_(statement), code_(code) {}
    ~SqliteStatement();
    SqliteStatement(const SqliteStatement&) = delete;
    SqliteStatement& operator=(const SqliteStatement&) = delete;

    /// Gives the next placeholder its value, the first placeholder first. Text is copied; an absent one
    /// becomes NULL.
    SqliteStatement& bind(std::int64_t value);
    SqliteStatement& bind(double value);
    SqliteStatement& bind(const std::optional<std::string>& value);

    /// Moves to the next row; false where there is none, or after an error.
    bool step();

    /// Steps to the end.
    [[nodiscard]] foundation::Result<void> run();

    /// How it went so far; the error's code is SQLite's extended one.
    [[nodiscard]] foundation::Result<void> result() const;

    /// A value of the row that step() moved to; columns count from 0. NULL reads as 0, or as no text.
    [[nodiscard]] std::int64_t integer(int column) const;
    [[nodiscard]] double real(int column) const;
    [[nodiscard]] std::optional<std::string> text(int column) const;

 private:
    void note(int code);

    sqlite3* database_;
    sqlite3_stmt* statement_;
    int code_;
    int bound_ = 0;
};

/// One connection to a database file. Statements are prepared once and kept. Not thread-safe: its
/// owner lets one thread at a time in.
class SqliteDatabase {
 public:
    enum class Mode : std::uint8_t { readWrite, readOnly };

    /// Opens the file, made (for its owner alone) where it is missing in readWrite mode. That the file
    /// is a database at all shows only at the first use. On failure returns an error whose code is
    /// SQLite's extended one.
    [[nodiscard]] static foundation::Result<std::unique_ptr<SqliteDatabase>> open(
        const std::filesystem::path& file, Mode mode, int busyMilliseconds);

    ~SqliteDatabase();
    SqliteDatabase(const SqliteDatabase&) = delete;
    SqliteDatabase& operator=(const SqliteDatabase&) = delete;

    /// The statement, ready to be bound. `sql` is a literal; only one use of it at a time.
    [[nodiscard]] SqliteStatement statement(const char* sql);

    /// Runs any number of statements without results.
    [[nodiscard]] foundation::Result<void> execute(const char* sql);

    /// The number that a statement such as a PRAGMA answers.
    [[nodiscard]] foundation::Result<std::int64_t> number(const char* sql);

    /// The row of the last INSERT of this connection.
    [[nodiscard]] std::int64_t lastInsertedRow() const;

 private:
    SqliteDatabase() = default;

    sqlite3* handle_ = nullptr;
    std::map<const char*, sqlite3_stmt*> statements_;
};

}  // namespace trimora::analytics
