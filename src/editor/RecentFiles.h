#pragma once

#include <filesystem>
#include <functional>
#include <vector>

#include "ports/Settings.h"

namespace trimora::editor {

/// The pictures that were opened last, the newest first, kept from one run to the next. Main thread only.
class RecentFiles {
 public:
    /// How many are kept.
    static constexpr std::size_t kMost = 10;

    /// `settings` lives longer.
    explicit RecentFiles(ports::Settings& settings) : settings_(settings) {}

    [[nodiscard]] std::vector<std::filesystem::path> files() const;

    /// Puts the file first. A relative path counts from the present folder.
    void add(const std::filesystem::path& file);
    /// Takes it off the list, where it stands on it.
    void remove(const std::filesystem::path& file);
    void clear();

    /// Called after every change, in place of who was called before.
    void onChange(std::function<void()> changed) { changed_ = std::move(changed); }

 private:
    void keep(const std::vector<std::filesystem::path>& files);

    ports::Settings& settings_;
    std::function<void()> changed_;
};

}  // namespace trimora::editor
