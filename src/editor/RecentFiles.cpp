#include "editor/RecentFiles.h"

#include <algorithm>
#include <string>

namespace trimora::editor {

using std::filesystem::path;

namespace {

constexpr const char* kKey = "recentFiles";

path absolutePath(const path& file) {
    std::error_code failed;
    const path absolute = std::filesystem::absolute(file, failed);
    return (failed ? file : absolute).lexically_normal();
}

}  // namespace

std::vector<path> RecentFiles::files() const {
    std::vector<path> files;
    for (const std::string& file : settings_.list(kKey))
        files.emplace_back(file);
    return files;
}

void RecentFiles::add(const path& file) {
    const path added = absolutePath(file);
    std::vector<path> all = files();
    std::erase(all, added);
    all.insert(all.begin(), added);
    all.resize(std::min(all.size(), kMost));
    keep(all);
}

void RecentFiles::remove(const path& file) {
    std::vector<path> all = files();
    if (std::erase(all, absolutePath(file)) > 0)
        keep(all);
}

void RecentFiles::clear() {
    keep({});
}

void RecentFiles::keep(const std::vector<path>& files) {
    std::vector<std::string> names;
    names.reserve(files.size());
    for (const path& file : files)
        names.push_back(file.string());
    settings_.setList(kKey, names);
    if (changed_)
        changed_();
}

}  // namespace trimora::editor
