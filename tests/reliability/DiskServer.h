#pragma once

#include <sys/types.h>

#include <filesystem>
#include <memory>

#include "DiskRecord.h"

/// Disks that are made of a record or of a file. Only root can have them, and only on a thread that has
/// mounts of its own (onOwnMounts() of Mounts.h).
namespace trimora::reliability {

/// A file system of the ext4 kind on a file; it is there while the object lives.
class MountedDisk {
 public:
    /// Shows the file system that is on `disk` in `folder`. Null where this system does not permit that, or
    /// where there is no such file system any more.
    [[nodiscard]] static std::unique_ptr<MountedDisk> create(const std::filesystem::path& disk,
                                                             const std::filesystem::path& folder);
    ~MountedDisk();
    MountedDisk(const MountedDisk&) = delete;
    MountedDisk& operator=(const MountedDisk&) = delete;

    /// Brings all that was written to it to the disk.
    void bringToDisk() const;

 private:
    explicit MountedDisk(std::filesystem::path folder) : folder_(std::move(folder)) {}

    std::filesystem::path folder_;
};

/// A process that shows a record as the file `disk` in a folder while the object lives.
class DiskServer {
 public:
    /// Null where this system does not permit it. The record must outlive the object.
    [[nodiscard]] static std::unique_ptr<DiskServer> create(DiskRecord& record,
                                                            const std::filesystem::path& folder);
    ~DiskServer();
    DiskServer(const DiskServer&) = delete;
    DiskServer& operator=(const DiskServer&) = delete;

    [[nodiscard]] std::filesystem::path disk() const { return folder_ / "disk"; }

 private:
    DiskServer(pid_t process, std::filesystem::path folder) : process_(process), folder_(std::move(folder)) {}

    pid_t process_;
    std::filesystem::path folder_;
};

}  // namespace trimora::reliability
