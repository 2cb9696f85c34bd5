#pragma once

#include <sqlite3.h>

#include "foundation/Result.h"

namespace trimora::analytics {

/// Those functions of SQLite that are called here, under its names without their "sqlite3_". The library is
/// loaded when the store is first opened, which is after the window came: it took a fiftieth of the time
/// until then.
struct SqliteLibrary {
    decltype(&::sqlite3_bind_double) bind_double;
    decltype(&::sqlite3_bind_int64) bind_int64;
    decltype(&::sqlite3_bind_null) bind_null;
    decltype(&::sqlite3_bind_text64) bind_text64;
    decltype(&::sqlite3_busy_timeout) busy_timeout;
    decltype(&::sqlite3_clear_bindings) clear_bindings;
    decltype(&::sqlite3_close) close;
    decltype(&::sqlite3_column_blob) column_blob;
    decltype(&::sqlite3_column_bytes) column_bytes;
    decltype(&::sqlite3_column_double) column_double;
    decltype(&::sqlite3_column_int64) column_int64;
    decltype(&::sqlite3_column_type) column_type;
    decltype(&::sqlite3_db_config) db_config;
    decltype(&::sqlite3_errmsg) errmsg;
    decltype(&::sqlite3_errstr) errstr;
    decltype(&::sqlite3_exec) exec;
    decltype(&::sqlite3_extended_errcode) extended_errcode;
    decltype(&::sqlite3_finalize) finalize;
    decltype(&::sqlite3_last_insert_rowid) last_insert_rowid;
    decltype(&::sqlite3_open_v2) open_v2;
    decltype(&::sqlite3_prepare_v3) prepare_v3;
    decltype(&::sqlite3_reset) reset;
    decltype(&::sqlite3_step) step;

    /// The one of this process, loaded with the first call. An error where it is not installed or memory is
    /// missing; the next call tries again. Any thread.
    [[nodiscard]] static foundation::Result<const SqliteLibrary*> get();
};

}  // namespace trimora::analytics
