#pragma once

#include <sys/types.h>

#include <atomic>
#include <cstddef>
#include <random>
#include <span>
#include <string>

namespace trimora::reliability {

/// A disk in memory that notes each write and each flush in the order in which they came, so that every state
/// in which a power cut may leave it can be made again.
///
/// What it holds and what it noted is shared with the processes that this one starts afterwards: one of them
/// serves the disk, another asks how far it has got. One writer at a time.
class DiskRecord {
 public:
    /// A disk that begins with these bytes.
    explicit DiskRecord(std::span<const char> bytes);
    ~DiskRecord();
    DiskRecord(const DiskRecord&) = delete;
    DiskRecord& operator=(const DiskRecord&) = delete;

    [[nodiscard]] std::size_t bytes() const { return begun_.size(); }
    /// False where the record is full: the disk is then broken.
    [[nodiscard]] bool write(std::size_t at, std::span<const char> bytes);
    [[nodiscard]] bool flush();
    /// What is on the disk while the power is there; within bytes().
    [[nodiscard]] std::span<const char> now(std::size_t at, std::size_t size) const {
        return {disk_ + at, size};
    }

    /// How many writes and flushes there have been.
    [[nodiscard]] std::size_t position() const;
    /// What may be left where the power goes after that many writes and flushes: all that came before the
    /// last flush, and of what came after it any part, down to single sectors, as `random` has it; a write
    /// that begins in the first 4096 bytes, where a file system keeps its superblock, arrives whole or not at
    /// all.
    [[nodiscard]] std::string afterCut(std::size_t position, std::mt19937_64& random) const;

 private:
    struct Note;
    struct Notes;

    [[nodiscard]] bool note(std::size_t at, std::span<const char> bytes, bool isFlush);

    std::string begun_;
    char* disk_;
    Notes* notes_;
};

}  // namespace trimora::reliability
