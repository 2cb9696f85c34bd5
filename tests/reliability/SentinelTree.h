#pragma once

#include <filesystem>
#include <map>
#include <string>

#include "files/FilesForTests.h"

namespace trimora::reliability {

/// Files of the person's in a folder, which nothing that a test does elsewhere may touch.
class SentinelTree {
 public:
    explicit SentinelTree(std::filesystem::path folder) : folder_(std::move(folder)) {
        std::filesystem::create_directories(folder_ / "deeper");
        files::put(folder_ / "letter.txt", "dear all");
        files::put(folder_ / "0.his", "not yours");
        files::put(folder_ / "deeper" / ".trimora-0123456789abcdef.part", "not yours either");
        std::filesystem::create_symlink("letter.txt", folder_ / "link");
        planted_ = now();
    }

    [[nodiscard]] const std::filesystem::path& folder() const { return folder_; }
    [[nodiscard]] bool isUntouched() const { return now() == planted_; }

 private:
    /// Every name with its kind, time of change and contents.
    [[nodiscard]] std::map<std::string, std::string> now() const {
        std::map<std::string, std::string> found;
        for (const auto& entry : std::filesystem::recursive_directory_iterator(folder_)) {
            std::string& text = found[entry.path().string()];
            if (entry.is_symlink())
                text = "link to " + std::filesystem::read_symlink(entry.path()).string();
            else if (entry.is_regular_file())
                text = std::to_string(entry.last_write_time().time_since_epoch().count()) +
                       files::contents(entry.path());
        }
        return found;
    }

    std::filesystem::path folder_;
    std::map<std::string, std::string> planted_;
};

}  // namespace trimora::reliability
