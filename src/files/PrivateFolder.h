#pragma once

#include <cstddef>
#include <cstdint>
#include <filesystem>
#include <span>
#include <string>
#include <string_view>
#include <vector>

#include "files/FileDescriptor.h"
#include "files/RegularFile.h"
#include "foundation/Result.h"

namespace trimora::files {

/// Makes the folder and its missing parents, all of mode 0700; one that is there already is left as it is.
[[nodiscard]] foundation::Result<void> makeFolder(const std::filesystem::path& path);

/// A folder of the program's own, readable by its account alone (mode 0700, files 0600), in which only
/// plain files are touched.
///
/// The folder is held open: whatever happens to its path later, all work stays in this folder. Links
/// never lead out of it: a name that is a link is not read, not written through, and not followed.
/// Names are single names; one with '/' in it, an empty one, "." and ".." return an error.
///
/// Files are whole or absent after a crash of the program, because each is written beside and renamed;
/// they are not forced to the disk (what lives here can be lost with the power). Different threads may
/// use one folder at the same time.
class PrivateFolder {
 public:
    /// Opens the folder and makes it, with missing parents (mode 0700 too), where it is not there.
    /// A path whose last part is a link, is no folder, or belongs to another account returns an error.
    [[nodiscard]] static foundation::Result<PrivateFolder> create(const std::filesystem::path& path);

    /// The names of the plain files, sorted; hidden ones (name begins with '.') are left out.
    [[nodiscard]] foundation::Result<std::vector<std::string>> list() const;

    /// A plain file's bytes; one of more than `limit` returns an error.
    [[nodiscard]] foundation::Result<FileBytes> read(std::string_view name, std::size_t limit) const;

    /// Makes `bytes` the contents of the file, new or replaced. A link of that name is replaced itself.
    /// On failure returns an error; nothing changed.
    [[nodiscard]] foundation::Result<void> write(std::string_view name,
                                                 std::span<const std::uint8_t> bytes) const;

    /// Removes a plain file, or a link itself; a name that nothing bears is no failure.
    [[nodiscard]] foundation::Result<void> remove(std::string_view name) const;

    /// Removes all plain files, hidden ones too, and all links themselves. Folders and special files
    /// stay. Goes on past what cannot be removed and returns the first error.
    [[nodiscard]] foundation::Result<void> removeAllFiles() const;

    /// Where the folder was when it was opened: for messages, not for opening.
    [[nodiscard]] const std::filesystem::path& path() const { return path_; }

 private:
    PrivateFolder(std::filesystem::path path, FileDescriptor folder)
        : path_(std::move(path)), folder_(std::move(folder)) {}

    std::filesystem::path path_;
    FileDescriptor folder_;
};

}  // namespace trimora::files
