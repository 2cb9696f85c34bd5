#include "analytics/store/SqliteDatabase.h"

#include <fcntl.h>
#include <sys/stat.h>
#include <unistd.h>

#include "analytics/store/SqliteLibrary.h"

namespace trimora::analytics {

using foundation::Error;
using foundation::Result;

namespace {

constexpr mode_t kOwnerOnly = 0600;

/// Where a database has been opened, the library is there, and stays.
const SqliteLibrary& sqlite() {
    static const SqliteLibrary& library = **SqliteLibrary::get();
    return library;
}

/// SQLite gives its side files the permissions of the database, so one file made right is enough.
void makeFile(const std::filesystem::path& file) {
    const int made = ::open(file.c_str(), O_RDWR | O_CREAT | O_EXCL | O_CLOEXEC, kOwnerOnly);
    if (made >= 0)
        ::close(made);
}

Error errorOf(sqlite3* handle) {
    return {sqlite().errmsg(handle), sqlite().extended_errcode(handle)};
}

}  // namespace

SqliteStatement::~SqliteStatement() {
    if (statement_ == nullptr)
        return;
    sqlite().reset(statement_);
    sqlite().clear_bindings(statement_);
}

void SqliteStatement::note(int code) {
    if (code_ == SQLITE_OK && code != SQLITE_OK && code != SQLITE_ROW && code != SQLITE_DONE)
        code_ = code;
}

SqliteStatement& SqliteStatement::bind(std::int64_t value) {
    note(sqlite().bind_int64(statement_, ++bound_, value));
    return *this;
}

SqliteStatement& SqliteStatement::bind(double value) {
    note(sqlite().bind_double(statement_, ++bound_, value));
    return *this;
}

SqliteStatement& SqliteStatement::bind(const std::optional<std::string>& value) {
    ++bound_;
    if (value)
        note(sqlite().bind_text64(statement_, bound_, value->data(), value->size(), SQLITE_TRANSIENT,
                                  SQLITE_UTF8));
    else
        note(sqlite().bind_null(statement_, bound_));
    return *this;
}

bool SqliteStatement::step() {
    if (code_ != SQLITE_OK)
        return false;
    const int code = sqlite().step(statement_);
    if (code != SQLITE_ROW && code != SQLITE_DONE)
        note(sqlite().extended_errcode(database_));
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
    return Error{sqlite().errstr(code_), code_};
}

std::int64_t SqliteStatement::integer(int column) const {
    return sqlite().column_int64(statement_, column);
}

double SqliteStatement::real(int column) const {
    return sqlite().column_double(statement_, column);
}

std::optional<std::string> SqliteStatement::text(int column) const {
    if (sqlite().column_type(statement_, column) == SQLITE_NULL)
        return std::nullopt;
    const auto* const bytes = static_cast<const char*>(sqlite().column_blob(statement_, column));
    const auto size = static_cast<std::size_t>(sqlite().column_bytes(statement_, column));
    return bytes == nullptr ? std::string() : std::string(bytes, size);
}

Result<std::unique_ptr<SqliteDatabase>> SqliteDatabase::open(const std::filesystem::path& file, Mode mode,
                                                             int busyMilliseconds) {
    if (const auto library = SqliteLibrary::get(); !library)
        return library.error();
    if (mode == Mode::readWrite)
        makeFile(file);
    const int access = mode == Mode::readWrite ? SQLITE_OPEN_READWRITE : SQLITE_OPEN_READONLY;
    std::unique_ptr<SqliteDatabase> database(new SqliteDatabase);  // before there is anything to lose
    sqlite3*& handle = database->handle_;
    const int code = sqlite().open_v2(file.c_str(), &handle,
                                      access | SQLITE_OPEN_NOMUTEX | SQLITE_OPEN_EXRESCODE, nullptr);
    if (code != SQLITE_OK)
        return handle == nullptr ? Error{sqlite().errstr(code), code} : errorOf(handle);
    sqlite().busy_timeout(handle, busyMilliseconds);
    sqlite().db_config(handle, SQLITE_DBCONFIG_DEFENSIVE, 1, nullptr);
    sqlite().db_config(handle, SQLITE_DBCONFIG_TRUSTED_SCHEMA, 0, nullptr);
    return database;
}

SqliteDatabase::~SqliteDatabase() {
    for (const auto& [sql, statement] : statements_)
        sqlite().finalize(statement);
    sqlite().close(handle_);
}

SqliteStatement SqliteDatabase::statement(const char* sql) {
    sqlite3_stmt*& prepared = statements_[sql];
    int code = SQLITE_OK;
    if (prepared == nullptr)
        code = sqlite().prepare_v3(handle_, sql, -1, SQLITE_PREPARE_PERSISTENT, &prepared, nullptr);
    return {handle_, prepared, code};
}

Result<void> SqliteDatabase::execute(const char* sql) {
    if (sqlite().exec(handle_, sql, nullptr, nullptr, nullptr) != SQLITE_OK)
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
    return sqlite().last_insert_rowid(handle_);
}

}  // namespace trimora::analytics
