#include "analytics/store/SqliteDatabase.h"

#include <fcntl.h>
#include <sqlite3.h>
#include <sys/stat.h>
#include <unistd.h>

namespace trimora::analytics {

using foundation::Error;
using foundation::Result;

namespace {

constexpr mode_t kOwnerOnly = 0600;

/// SQLite gives its side files the permissions of the database, so one file made right is enough.
void makeFile(const std::filesystem::path& file) {
    const int made = ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kOwnerOnly);
    if (made >= 0)
        ::close(made);
}

/// SQLite counts all memory that it holds, under a lock. Too late where something else has used it before.
void stopCountingMemory() {
    [[maybe_unused]] static const int kOutcome = sqlite3_config(SQLITE_CONFIG_MEMSTATUS, 0);
}

Error errorOf(sqlite3* handle) {
    return {sqlite3_errmsg(handle), sqlite3_extended_errcode(handle)};
}

}  // namespace

SqliteStatement::~SqliteStatement() {
    if (statement_ == nullptr)
        return;
    sqlite3_reset(statement_);
    sqlite3_clear_bindings(statement_);
}

void SqliteStatement::note(int code) {
    if (code_ == SQLITE_OK && code != SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE)
        code_ = code;
}

SqliteStatement& SqliteStatement::bind(std::int64_t value) {
    note(sqlite3_bind_int64(statement_, ++bound_, value));
    return *this;
}

SqliteStatement& SqliteStatement::bind(double value) {
    note(sqlite3_bind_double(statement_, ++bound_, value));
    return *this;
}

SqliteStatement& SqliteStatement::bind(const std::optional<std::string>& value) {
    ++bound_;
    if (value)
        note(sqlite3_bind_text64(statement_, bound_, value->data(), value->size(), SQLITE_TRANSIENT,
                                 SQLITE_UTF8));
    else
        note(sqlite3_bind_null(statement_, bound_));
    return *this;
}

bool SqliteStatement::step() {
    if (code_ != SQLITE_OK)
        return false;
    const int code = sqlite3_step(statement_);
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        note(sqlite3_extended_errcode(database_));
    return code == SQLITE_ROW;
}

Result<void> SqliteStatement::run() {
    while (step()) {
    }
    return result();
}

Result<void> SqliteStatement::result() const {
    if (code_ == SQLITE_OK)
        return {};
    return Error{sqlite3_errstr(code_), code_};
}

std::int64_t SqliteStatement::integer(int column) const {
    return sqlite3_column_int64(statement_, column);
}

double SqliteStatement::real(int column) const {
    return sqlite3_column_double(statement_, column);
}

std::optional<std::string> SqliteStatement::text(int column) const {
    if (sqlite3_column_type(statement_, column) == SQLITE_NULL)
        return std::nullopt;
    const auto* const bytes = static_cast<const char*>(sqlite3_column_blob(statement_, column));
    const auto size = static_cast<std::size_t>(sqlite3_column_bytes(statement_, column));
    return bytes == nullptr ? std::string() : std::string(bytes, size);
}

Result<std::unique_ptr<SqliteDatabase>> SqliteDatabase::open(const std::filesystem::path& file, Mode mode,
                                                             int busyMilliseconds) {
    stopCountingMemory();
    if (mode == Mode::readWrite)
        makeFile(file);
    const int access = mode == Mode::readWrite ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
    sqlite3* handle = nullptr;
    const int code =
        sqlite3_open_v2(file.c_str(), &handle, access | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    std::unique_ptr<SqliteDatabase> database(new SqliteDatabase(handle));
    if (code != SQLITE_OK)
        return handle == nullptr ? Error{sqlite3_errstr(code), code} : errorOf(handle);
    sqlite3_busy_timeout(handle, busyMilliseconds);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite3_db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    return database;
}

SqliteDatabase::~SqliteDatabase() {
    for (const auto& [sql, statement] : statements_)
        sqlite3_finalize(statement);
    sqlite3_close(handle_);
}

SqliteStatement SqliteDatabase::statement(const char* sql) {
    sqlite3_stmt*& prepared = statements_[sql];
    int code = SQLITE_OK;
    if (prepared == nullptr)
        code = sqlite3_prepare_v3(handle_, sql, -1, SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
    return {handle_, prepared, code};
}

Result<void> SqliteDatabase::execute(const char* sql) {
    if (sqlite3_exec(handle_, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
        return errorOf(handle_);
    return {};
}

Result<std::int64_t> SqliteDatabase::number(const char* sql) {
    SqliteStatement question = statement(sql);
    if (question.step())
        return question.integer(0);
    if (const Result<void> result = question.result(); !result)
        return result.error();
    return Error{"no answer", SQLITE_ERROR};
}

std::int64_t SqliteDatabase::lastInsertedRow() const {
    return sqlite3_last_insert_rowid(handle_);
}

}  // namespace trimora::analytics
