#include "files/FolderEntries.h"

#include <dirent.h>
#include <fcntl.h>

#include <algorithm>
#include <cerrno>
#include <memory>
#include <utility>

#include "files/FileDescriptor.h"
#include "files/SystemError.h"

namespace trimora::files {
namespace {

using foundation::Result;

struct CloseDirectory {
    void operator()(DIR* directory) const { ::closedir(directory); }
};

}  // namespace

Result<std::vector<std::string>> folderEntries(int folder) {
    // Opened anew: reading a directory moves the position of its descriptor, which threads would share.
    FileDescriptor reading = openAt(folder, ".", O_RDONLY | O_DIRECTORY);
    const std::unique_ptr<DIR, CloseDirectory> directory(reading ? ::fdopendir(reading.number()) : nullptr);
    if (!directory)
        return systemError("the folder cannot be read", errno);
    (void)reading.release();  // the directory closes it from here on
    std::vector<std::string> names;
    while (const dirent* entry = ::readdir(directory.get())) {
        if (std::string name = entry->d_name; name != "." && name != "..")
            names.push_back(std::move(name));
    }
    std::sort(names.begin(), names.end());
    return names;
}

}  // namespace trimora::files
