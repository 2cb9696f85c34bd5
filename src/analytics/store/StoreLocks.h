#pragma once

#include <cstdint>
#include <filesystem>
#include <memory>
#include <mutex>

#include "files/FileDescriptor.h"
#include "foundation/Result.h"

namespace trimora::analytics {

/// What several processes that share one store must agree on, told by locks on the bytes of one empty
/// file. The system takes a lock back when its process ends, however it ends, so nothing can be left
/// behind that needs cleaning up.
///
/// - Each process locks one byte of its own, whose number is its `owner()` number. The number stands
///   in the session rows that the process writes; others see from the lock whether it still lives.
/// - One process at a time sends: it holds the sending lock while it builds and posts requests.
/// - One process at a time replaces a damaged store: the recovery lock.
///
/// Any thread.
class StoreLocks : public std::enable_shared_from_this<StoreLocks> {
 public:
    /// Opens or makes the file. On failure returns an error; nothing changed.
    [[nodiscard]] static foundation::Result<std::shared_ptr<StoreLocks>> create(
        const std::filesystem::path& file);

    StoreLocks(const StoreLocks&) = delete;
    StoreLocks& operator=(const StoreLocks&) = delete;

    /// The number of this process for this store: random, never 0, never twice.
    [[nodiscard]] std::int64_t owner() const { return owner_; }

    /// Whether the process with this number lives (this one does).
    [[nodiscard]] bool isAlive(std::int64_t owner) const;

    /// Makes this process the one that sends, as long as any of the tokens returned is kept. Null
    /// where another process sends; never waits.
    [[nodiscard]] std::shared_ptr<void> holdSending();

    /// Waits until no other process replaces the store; as long as the token is kept none begins to.
    [[nodiscard]] std::shared_ptr<void> holdRecovery();

 private:
    StoreLocks(files::FileDescriptor file, std::int64_t owner) : file_(std::move(file)), owner_(owner) {}
    [[nodiscard]] std::shared_ptr<void> released(std::int64_t byte);

    const files::FileDescriptor file_;
    const std::int64_t owner_;
    // Recursive: where memory for the token of holdSending() is refused, its end comes under the lock.
    std::recursive_mutex mutex_;
    std::weak_ptr<void> sending_;
};

}  // namespace trimora::analytics
