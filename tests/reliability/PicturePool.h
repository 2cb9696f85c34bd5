#pragma once

#include <filesystem>
#include <vector>

namespace trimora::reliability {

/// Files to open, sound ones and others, in a folder of their own that nobody writes to.
class PicturePool {
 public:
    /// Makes the files.
    explicit PicturePool(std::filesystem::path folder);

    /// Pictures of several formats and shapes, none above three million pixels.
    [[nodiscard]] const std::vector<std::filesystem::path>& sound() const { return sound_; }
    /// Files that are broken, and what is no file at all: a folder, a pipe, a device, a link to itself, a
    /// name that nothing bears.
    [[nodiscard]] const std::vector<std::filesystem::path>& bad() const { return bad_; }

 private:
    void put(std::vector<std::filesystem::path>& list, const char* name,
             const std::vector<std::uint8_t>& bytes);

    const std::filesystem::path folder_;
    std::vector<std::filesystem::path> sound_;
    std::vector<std::filesystem::path> bad_;
};

}  // namespace trimora::reliability
