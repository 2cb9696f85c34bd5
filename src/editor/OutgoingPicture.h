#pragma once

#include <QByteArray>
#include <QMimeData>
#include <functional>
#include <memory>
#include <string>

#include "editor/ScratchFolder.h"

namespace trimora::editor {

/// A picture on its way out of the program.
struct OutgoingPicture {
    std::string name;  ///< of the file, with its ending; a single name
    QByteArray png;    ///< the file's bytes; empty where there is no picture
};

/// What a drag of the result carries: a PNG as bytes, and the same as a file.
///
/// Nothing is made before another program asks for it; then the picture is encoded once, and written once
/// where a file is asked for. The file stays as long as its folder is held, which may be longer than the
/// drag: whoever received the drop copies it in its own time.
class OutgoingPictureData final : public QMimeData {
 public:
    /// Called once at most, on the main thread.
    using Supply = std::function<OutgoingPicture()>;

    OutgoingPictureData(Supply supply, std::shared_ptr<const ScratchFolder> folder);

    [[nodiscard]] QStringList formats() const override;
    [[nodiscard]] bool hasFormat(const QString& type) const override;

 protected:
    QVariant retrieveData(const QString& type, QMetaType preferred) const override;

 private:
    [[nodiscard]] const OutgoingPicture& picture() const;
    [[nodiscard]] QVariant fileList() const;

    // Filled when they are first asked for, by calls that the toolkit makes on a constant object.
    mutable Supply supply_;
    mutable OutgoingPicture picture_;
    mutable bool written_ = false;
    std::shared_ptr<const ScratchFolder> folder_;
};

}  // namespace trimora::editor
