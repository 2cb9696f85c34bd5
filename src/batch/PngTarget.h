#pragma once

#include <filesystem>
#include <optional>
#include <ostream>

#include "cutengine/PictureEncoder.h"
#include "files/AtomicFile.h"
#include "foundation/Bitmap.h"
#include "foundation/Result.h"

namespace trimora::batch {

/// Where a picture is to be written: a file, which comes into being whole or not at all, or standard output.
///
/// Life cycle: create() before the work begins, so that what cannot be written is not worked for; write()
/// once; commit(). One that goes without commit() leaves no file. One thread at a time.
class PngTarget {
 public:
    /// Begins a file, or takes `out` where the name is "-". A file that exists is refused unless it may be
    /// replaced, here and once more at commit().
    [[nodiscard]] static foundation::Result<PngTarget> create(const std::filesystem::path& name,
                                                              files::Existing existing, std::ostream& out);

    [[nodiscard]] foundation::Result<void> write(cutengine::PictureEncoder& encoder,
                                                 foundation::BitmapView picture);
    [[nodiscard]] foundation::Result<void> commit();

 private:
    explicit PngTarget(std::ostream& out) : out_(out) {}
    PngTarget(std::ostream& out, files::AtomicFile file) : out_(out), file_(std::move(file)) {}

    std::ostream& out_;
    std::optional<files::AtomicFile> file_;
};

}  // namespace trimora::batch
