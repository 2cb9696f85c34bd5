#include "analytics/store/SqliteLibrary.h"

#include "files/LateLibrary.h"

namespace trimora::analytics {

using foundation::Result;

namespace {

Result<SqliteLibrary> load() {
    decltype(&::sqlite3_config) config = nullptr;
    auto loaded = files::loadFunctions<SqliteLibrary>(
        "libsqlite3.so.0", [&](files::LateFunctions& find, SqliteLibrary& made) {
            find("sqlite3_bind_double", made.bind_double);
            find("sqlite3_bind_int64", made.bind_int64);
            find("sqlite3_bind_null", made.bind_null);
            find("sqlite3_bind_text64", made.bind_text64);
            find("sqlite3_busy_timeout", made.busy_timeout);
            find("sqlite3_clear_bindings", made.clear_bindings);
            find("sqlite3_close", made.close);
            find("sqlite3_column_blob", made.column_blob);
            find("sqlite3_column_bytes", made.column_bytes);
            find("sqlite3_column_double", made.column_double);
            find("sqlite3_column_int64", made.column_int64);
            find("sqlite3_column_type", made.column_type);
            find("sqlite3_config", config);
            find("sqlite3_db_config", made.db_config);
            find("sqlite3_errmsg", made.errmsg);
            find("sqlite3_errstr", made.errstr);
            find("sqlite3_exec", made.exec);
            find("sqlite3_extended_errcode", made.extended_errcode);
            find("sqlite3_finalize", made.finalize);
            find("sqlite3_last_insert_rowid", made.last_insert_rowid);
            find("sqlite3_open_v2", made.open_v2);
            find("sqlite3_prepare_v3", made.prepare_v3);
            find("sqlite3_reset", made.reset);
            find("sqlite3_step", made.step);
        });
    // It counts all memory that it holds, under a lock. Refused where something else has used it before.
    if (loaded)
        (void)config(SQLITE_CONFIG_MEMSTATUS, 0);
    return loaded;
}

}  // namespace

Result<const SqliteLibrary*> SqliteLibrary::get() {
    static files::LoadedOnce<SqliteLibrary> library;
    return library.get(load);
}

}  // namespace trimora::analytics
