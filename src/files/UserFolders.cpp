#include "files/UserFolders.h"

#include <pwd.h>
#include <unistd.h>

#include <array>
#include <cstdlib>

namespace trimora::files {
namespace {

namespace fs = std::filesystem;

fs::path absoluteVariable(const char* name) {
    const char* const value = std::getenv(name);
    fs::path path = value != nullptr ? value : "";
    return path.is_absolute() ? path : fs::path();
}

fs::path homeOfAccount() {
    std::array<char, 4096> text{};
    passwd entry{};
    passwd* found = nullptr;
    if (::getpwuid_r(::geteuid(), &entry, text.data(), text.size(), &found) != 0 || found == nullptr)
        return {};
    return found->pw_dir;
}

fs::path folder(const char* variable, const char* belowHome) {
    if (fs::path set = absoluteVariable(variable); !set.empty())
        return set;
    fs::path home = absoluteVariable("HOME");
    if (home.empty())
        home = homeOfAccount();
    return home.is_absolute() ? home / belowHome : fs::path();
}

}  // namespace

fs::path dataHome() {
    return folder("XDG_DATA_HOME", ".local/share");
}

fs::path configHome() {
    return folder("XDG_CONFIG_HOME", ".config");
}

fs::path cacheHome() {
    return folder("XDG_CACHE_HOME", ".cache");
}

}  // namespace trimora::files
