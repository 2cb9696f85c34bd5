#pragma once

#include <cstdint>
#include <span>
#include <string>

#include "files/FileDescriptor.h"
#include "foundation/Result.h"

namespace trimora::files {

/// What to do where a file of the wanted name is there already.
enum class Existing : std::uint8_t {
    replace,
    keep,  ///< an error with the code EEXIST; also where that file appears at the last moment
};

/// The error of Existing::keep.
[[nodiscard]] foundation::Error nameTaken();

/// A file that is being written and has no name that anybody knows yet; publish() gives it one in one
/// step, replacing what bore that name or leaving it alone. Until then it vanishes with the object.
///
/// Where the file system can, the file has no name at all while it is written, so that even a killed
/// process leaves nothing behind; elsewhere it has a short hidden random one. Neither is made from the
/// final name, which may therefore be as long as the system allows. A writer holds a lock on its file
/// until that has its final name, by which removeAbandoned() tells what a killed one left.
///
/// Not thread-safe. The folder's descriptor must stay open while the object lives.
class TemporaryFile {
 public:
    enum class Name : std::uint8_t {
        whenWhole,  ///< none before publish(), where the file system can do that
        atOnce,     ///< a hidden one from the start, as it is done where the file system cannot
    };

    /// A new empty file in the open folder. `mode` is cut by the process's file mask, as for any new
    /// file. On failure returns an error; nothing changed.
    [[nodiscard]] static foundation::Result<TemporaryFile> create(int folder, unsigned mode,
                                                                  Name wanted = Name::whenWhole);

    /// Removes the hidden files of this kind in the open folder whose writers are gone, as far as that can
    /// be done; those of writers that still live stay.
    static void removeAbandoned(int folder);

    ~TemporaryFile() { discard(); }
    TemporaryFile(TemporaryFile&& other) noexcept;
    TemporaryFile& operator=(TemporaryFile&&) = delete;

    [[nodiscard]] int descriptor() const { return file_.number(); }

    /// Appends the bytes; an error means that the file cannot become whole any more.
    [[nodiscard]] foundation::Result<void> write(std::span<const std::uint8_t> bytes) {
        return writeAll(file_.number(), bytes);
    }

    /// Closes the file and lets it take the name `name` in its folder.
    /// On failure returns an error; the name means what it meant before.
    [[nodiscard]] foundation::Result<void> publish(const char* name, Existing existing = Existing::replace);

    /// Lets the file vanish; does nothing once it is published.
    void discard();

 private:
    TemporaryFile(int folder, FileDescriptor file, std::string name)
        : folder_(folder), file_(std::move(file)), name_(std::move(name)) {}

    [[nodiscard]] foundation::Result<void> giveName();
    [[nodiscard]] bool rename(const char* name, Existing existing) const;

    int folder_;
    FileDescriptor file_;
    std::string name_;  // empty while the file has none
};

}  // namespace trimora::files
