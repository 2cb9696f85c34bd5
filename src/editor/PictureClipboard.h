#pragma once

#include <QByteArray>
#include <QCoreApplication>
#include <filesystem>
#include <memory>
#include <vector>

#include "cutengine/Picture.h"
#include "cutengine/PictureEncoder.h"
#include "editor/Messages.h"
#include "foundation/Queues.h"

class QImage;
class QMimeData;

namespace trimora::editor {

/// The picture as PNG bytes in memory, or why not. Any thread.
[[nodiscard]] foundation::Result<QByteArray> pngBytes(cutengine::PictureEncoder& encoder,
                                                      const cutengine::PictureRows& picture);

/// The image's pixels as a picture, in sRGB; none where it is empty or there is no memory.
[[nodiscard]] cutengine::PicturePtr pictureOf(const QImage& image);

/// The result on the clipboard, and pictures from it.
///
/// Main thread only. The services outlive the background queue's work; the object itself may go at any
/// time.
class PictureClipboard {
    Q_DECLARE_TR_FUNCTIONS(PictureClipboard)

 public:
    struct Services {
        foundation::QueueFactory& queues;
        cutengine::PictureEncoder& encoder;
        Messages& messages;
    };
    explicit PictureClipboard(const Services& services) : services_(services) {}

    /// Puts the result, which is in straight alpha, on the clipboard: as a PNG, and as image data for
    /// programs that know no PNG. Encoded on the background queue; of two copies the later counts. None,
    /// as where memory was missing for it, leaves the clipboard as it is, and the person is told.
    void copy(const cutengine::PicturePtr& result);

    /// What a paste brings: local files, or else a picture.
    struct Contents {
        std::vector<std::filesystem::path> files;
        cutengine::PicturePtr picture;
    };
    /// Tells the person where there is neither.
    [[nodiscard]] Contents paste() const;

 private:
    void place(const cutengine::PicturePtr& result, const foundation::Result<QByteArray>& png);
    void refuse(const std::string& reason);

    Services services_;
    std::shared_ptr<int> copying_;  // held by the object alone; work under way looks whether it still lives
};

}  // namespace trimora::editor
