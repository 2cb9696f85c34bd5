#include "host/ProgramBundle.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <chrono>
#include <system_error>
#include <utility>

namespace trimora::host {
namespace {

using WallTime = foundation::Clock::WallTime;

/// What the system knows of the file; nothing where it is not there.
std::optional<struct statx> statusOf(const std::filesystem::path& file) {
    struct statx status = {};
    if (::statx(AT_FDCWD, file.c_str(), 0, STATX_BASIC_STATS | STATX_BTIME, &status) != 0)
        return std::nullopt;
    return status;
}

WallTime wallTime(const statx_timestamp& time) {
    const auto sinceEpoch = std::chrono::seconds(time.tv_sec) + std::chrono::nanoseconds(time.tv_nsec);
    return WallTime(std::chrono::duration_cast<WallTime::duration>(sinceEpoch));
}

}  // namespace

ProgramBundle::ProgramBundle(Information information, std::filesystem::path executable)
    : information_(std::move(information)), executable_(std::move(executable)) {}

std::filesystem::path ProgramBundle::thisExecutable() {
    std::error_code failure;
    return std::filesystem::read_symlink("/proc/self/exe", failure);
}

std::optional<std::string> ProgramBundle::infoValue(std::string_view key) const {
    const auto found = information_.find(key);
    return found == information_.end() ? std::nullopt : std::optional(found->second);
}

std::optional<WallTime> ProgramBundle::creationDate() const {
    const auto status = statusOf(executable_);
    if (!status)
        return std::nullopt;
    return wallTime((status->stx_mask & STATX_BTIME) != 0 ? status->stx_btime : status->stx_ctime);
}

std::optional<WallTime> ProgramBundle::modificationDate() const {
    const auto status = statusOf(executable_);
    return status ? std::optional(wallTime(status->stx_mtime)) : std::nullopt;
}

std::optional<std::filesystem::path> ProgramBundle::pathForResource(std::string_view name,
                                                                    std::string_view type) const {
    const std::filesystem::path file = std::filesystem::path("share") /
                                       infoValue("CFBundleName").value_or("") /
                                       (std::string(name) + "." + std::string(type));
    const std::filesystem::path folder = executable_.parent_path();
    for (const auto& base : {folder.parent_path(), folder}) {
        std::error_code failure;
        if (std::filesystem::exists(base / file, failure))
            return base / file;
    }
    return std::nullopt;
}

}  // namespace trimora::host
