#pragma once

#include <filesystem>
#include <memory>
#include <vector>

#include "editor/ScratchFolder.h"
#include "foundation/Queues.h"

class QMimeData;

namespace trimora::editor {

/// A picture that a drag carries as bytes and not as a file: one dragged out of a browser, say.
///
/// Dropping it promises a file: the path is known at once, the bytes are written there on the background
/// queue, and whoever opens it waits for it to appear. The file is whole or absent at every moment. It
/// stays until the next promise or until the object goes, whichever comes first.
///
/// Main thread only. The queues outlive the object.
class PromisedFiles {
 public:
    /// Files are promised inside `caches`, which is made where it is not there.
    PromisedFiles(foundation::QueueFactory& queues, std::filesystem::path caches)
        : queues_(queues), caches_(std::move(caches)) {}

    /// Whether the drag carries a picture as bytes.
    [[nodiscard]] static bool areIn(const QMimeData& drag);

    /// Takes the drag's picture and begins to write it. Returns the file that is coming, named as its
    /// source names it and with the ending of its format; none where the drag carries no picture.
    [[nodiscard]] std::vector<std::filesystem::path> take(const QMimeData& drag);

 private:
    foundation::QueueFactory& queues_;
    std::filesystem::path caches_;
    std::shared_ptr<const ScratchFolder> folder_;  // of the last promise; the writing holds it too
};

}  // namespace trimora::editor
