#include "analytics/store/StoreCoordinator.h"

#include <sqlite3.h>

#include <ctime>
#include <new>
#include <utility>

#include "analytics/Diagnostics.h"
#include "analytics/store/StoreSchema.h"
#include "files/PrivateFolder.h"

namespace trimora::analytics {

using foundation::Error;
using foundation::Result;

namespace {

bool isBeyondHelp(const Error& error) {
    const int kind = error.code & 0xff;
    return kind == SQLITE_CORRUPT || kind == SQLITE_NOTADB;
}

/// Faults after which the connection may be worth nothing although the file is well.
bool needsNewConnection(const Error& error) {
    switch (error.code & 0xff) {
        case SQLITE_IOERR:
        case SQLITE_CANTOPEN:
        case SQLITE_READONLY:
        case SQLITE_FULL:
        case SQLITE_PERM:
            return true;
        default:
            return isBeyondHelp(error);
    }
}

std::filesystem::path besides(std::filesystem::path file, const std::string& ending) {
    file += ending;
    return file;
}

std::string stamp(foundation::Clock::WallTime time) {
    const std::time_t seconds = std::chrono::system_clock::to_time_t(time);
    std::tm parts = {};
    ::gmtime_r(&seconds, &parts);
    char text[32];
    const std::size_t length = std::strftime(text, sizeof text, "%Y%m%d-%H%M%S", &parts);
    return {text, length};
}

// The whole check, indexes included: a question answered from a damaged index would miss events.
Result<void> checkIntegrity(SqliteDatabase& database) {
    SqliteStatement check = database.statement("PRAGMA integrity_check(1)");
    if (check.step() && check.text(0) == "ok")
        return {};
    const Result<void> checked = check.result();
    return checked ? Error{"store is damaged", SQLITE_CORRUPT} : checked.error();
}

/// Moves the database and its side files out of the way under a name that is still free.
Result<std::filesystem::path> moveAside(const std::filesystem::path& file, const std::string& when) {
    std::filesystem::path aside = besides(file, ".damaged-" + when);
    std::error_code failure;
    for (int number = 2; std::filesystem::exists(aside, failure); ++number)
        aside = besides(file, ".damaged-" + when + "-" + std::to_string(number));
    std::filesystem::rename(file, aside, failure);
    if (failure)
        return Error{"the damaged store cannot be moved aside: " + failure.message(), SQLITE_CANTOPEN};
    for (const char* ending : {"-wal", "-shm"}) {
        std::error_code missing;  // a side file need not exist
        std::filesystem::rename(besides(file, ending), besides(aside, ending), missing);
    }
    return aside;
}

}  // namespace

StoreCoordinator::StoreCoordinator(std::filesystem::path file, StoreSettings settings,
                                   const foundation::Clock& clock)
    : file_(std::move(file)), settings_(settings), clock_(clock) {}

Result<void> StoreCoordinator::write(const Work& work) {
    return perform([&](SqliteDatabase&) { return inTransaction(work); });
}

Result<void> StoreCoordinator::read(const Work& work) {
    return perform(work);
}

Result<void> StoreCoordinator::perform(const Work& work) {
    const std::scoped_lock lock(mutex_);
    if (depth_ > 0)
        return work(*database_);
    if (Result<void> opened = ensureOpen(); !opened)
        return opened;
    Result<void> done = work(*database_);
    if (done || !needsNewConnection(done.error()))
        return done;
    close();
    if (!isBeyondHelp(done.error()) || settings_.access == StoreSettings::Access::readOnly)
        return done;
    if (Result<void> replaced = replaceDamaged(done.error()); !replaced)
        return replaced;
    return work(*database_);
}

Result<void> StoreCoordinator::inTransaction(const Work& work) {
    if (depth_ > 0)
        return work(*database_);
    if (Result<void> begun = database_->execute("BEGIN IMMEDIATE"); !begun)
        return begun;
    Result<void> done;
    try {
        ++depth_;
        done = work(*database_);
        --depth_;
        if (done)
            done = database_->execute("COMMIT");
    } catch (const std::bad_alloc&) {  // not even an Error can be made
        depth_ = 0;
        rollBack();
        throw;
    }
    if (!done)
        rollBack();
    return done;
}

void StoreCoordinator::rollBack() noexcept {
    try {
        (void)database_->execute("ROLLBACK");
    } catch (const std::bad_alloc&) {
        return;  // no memory for what was wrong with it
    }
}

StoreLocks* StoreCoordinator::locks() {
    const std::scoped_lock lock(mutex_);
    if (!locks_ && settings_.access == StoreSettings::Access::readWrite) {
        auto made = StoreLocks::create(file_.parent_path() / "telemetrix.lock");
        if (made)
            locks_ = std::move(made).value();
        else
            logLine(made.error().message);
    }
    return locks_.get();
}

Result<void> StoreCoordinator::ensureOpen() {
    if (database_)
        return {};
    try {
        Result<void> opened = openWhole();
        reportOpening(opened);
        return opened;
    } catch (const std::bad_alloc&) {
        close();  // a connection that is not whole must not be taken for one
        throw;
    }
}

Result<void> StoreCoordinator::openWhole() {
    if (settings_.access == StoreSettings::Access::readWrite)
        (void)files::makeFolder(file_.parent_path());  // what opens the file says what is wrong
    Result<void> opened = open();
    if (opened)
        return opened;
    close();
    if (!isBeyondHelp(opened.error()) || settings_.access == StoreSettings::Access::readOnly)
        return opened;
    return replaceDamaged(opened.error());
}

Result<void> StoreCoordinator::open() {
    const bool writable = settings_.access == StoreSettings::Access::readWrite;
    auto opened = SqliteDatabase::open(
        file_, writable ? SqliteDatabase::Mode::readWrite : SqliteDatabase::Mode::readOnly,
        settings_.busyMilliseconds);
    if (!opened)
        return opened.error();
    database_ = std::move(opened).value();
    const Result<StoreKind> kind = identify(*database_);
    if (!kind)
        return kind.error();
    if (*kind == StoreKind::foreign)
        return Error{"file is another program's database", SQLITE_NOTADB};
    if (*kind == StoreKind::newer)
        return Error{"store was written by a newer version", SQLITE_MISMATCH};
    if (!writable)
        return {};
    if (Result<void> configured = configureConnection(*database_); !configured)
        return configured;
    if (Result<void> prepared = prepareTables(*database_); !prepared)
        return prepared;
    if (Result<void> whole = checkIntegrity(*database_); !whole)
        return whole;
    return checkTables(*database_);
}

Result<void> StoreCoordinator::replaceDamaged(const Error& why) {
    StoreLocks* const agreement = locks();
    if (agreement == nullptr)
        return why;
    const auto token = agreement->holdRecovery();
    Result<void> opened = open();  // another process may have replaced it meanwhile
    if (opened)
        return opened;
    close();
    if (!isBeyondHelp(opened.error()))
        return opened;
    const auto aside = moveAside(file_, stamp(clock_.wallTime()));
    if (!aside)
        return aside.error();
    logLine(formatted("Warning! Store was damaged (%s), moved it aside as %s and began a new one",
                      why.message.c_str(), aside->c_str()));
    opened = open();
    if (!opened)
        close();
    return opened;
}

void StoreCoordinator::close() {
    database_.reset();
}

void StoreCoordinator::reportOpening(const Result<void>& outcome) {
    const std::string failure = outcome ? "" : outcome.error().message;
    if (failure == reportedFailure_)
        return;
    reportedFailure_ = failure;
    if (!outcome)
        debugWarning(
            formatted("error add persistent store for url file://%s %s", file_.c_str(), failure.c_str()));
}

}  // namespace trimora::analytics
