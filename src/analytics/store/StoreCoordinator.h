#pragma once

#include <filesystem>
#include <functional>
#include <memory>
#include <mutex>
#include <string>

#include "analytics/store/SqliteDatabase.h"
#include "analytics/store/StoreLocks.h"
#include "analytics/store/StoreSettings.h"
#include "foundation/Clock.h"
#include "foundation/Result.h"

namespace trimora::analytics {

/// Holds the store's file: opens it, keeps it whole, and gives it up where it is beyond help.
///
/// Life cycle: nothing is opened before the first operation. An operation that finds no open store
/// tries to open it, so that recording works again as soon as a fault (disk full, permissions, another
/// process) has gone. Beside the store lies the lock file of StoreLocks, "telemetrix.lock".
///
/// Damage: a file that is damaged, or is another program's database, is moved aside under the name
/// "<file>.damaged-<date>-<time>" with its side files, never deleted; one warning is logged, a new
/// store is begun and the operation is done there. A store that a newer version wrote is left alone and
/// nothing is recorded.
///
/// Any thread; operations run one at a time. No operation waits longer for another process than
/// StoreSettings says.
class StoreCoordinator {
 public:
    using Work = std::function<foundation::Result<void>(SqliteDatabase&)>;

    StoreCoordinator(std::filesystem::path file, StoreSettings settings, const foundation::Clock& clock);

    /// Does the work in one transaction: on failure returns an error; nothing changed. Within the work
    /// of another write() it becomes part of that one's transaction.
    [[nodiscard]] foundation::Result<void> write(const Work& work);

    /// Does work that only reads.
    [[nodiscard]] foundation::Result<void> read(const Work& work);

    /// The agreement with other processes; null where the lock file cannot be had.
    [[nodiscard]] StoreLocks* locks();

    [[nodiscard]] const StoreSettings& settings() const { return settings_; }
    [[nodiscard]] const std::filesystem::path& file() const { return file_; }

 private:
    [[nodiscard]] foundation::Result<void> perform(const Work& work);
    [[nodiscard]] foundation::Result<void> ensureOpen();
    [[nodiscard]] foundation::Result<void> open();
    [[nodiscard]] foundation::Result<void> openWhole();
    [[nodiscard]] foundation::Result<void> inTransaction(const Work& work);
    void rollBack() noexcept;
    [[nodiscard]] foundation::Result<void> replaceDamaged(const foundation::Error& why);
    void close();
    void reportOpening(const foundation::Result<void>& outcome);

    const std::filesystem::path file_;
    const StoreSettings settings_;
    const foundation::Clock& clock_;
    std::recursive_mutex mutex_;
    std::shared_ptr<StoreLocks> locks_;
    std::unique_ptr<SqliteDatabase> database_;
    int depth_ = 0;                // transactions within each other
    std::string reportedFailure_;  // so that a lasting fault is logged once
};

}  // namespace trimora::analytics
