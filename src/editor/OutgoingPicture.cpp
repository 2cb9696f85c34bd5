#include "editor/OutgoingPicture.h"

#include <QFile>
#include <QUrl>
#include <QVariant>
#include <span>
#include <utility>

#include "foundation/Log.h"

namespace trimora::editor {
namespace {

constexpr QLatin1String kFiles("text/uri-list");
constexpr QLatin1String kPng("image/png");

}  // namespace

OutgoingPictureData::OutgoingPictureData(Supply supply, std::shared_ptr<const ScratchFolder> folder)
    : supply_(std::move(supply)), folder_(std::move(folder)) {}

QStringList OutgoingPictureData::formats() const {
    return {kFiles, kPng};
}

bool OutgoingPictureData::hasFormat(const QString& type) const {
    return formats().contains(type);
}

QVariant OutgoingPictureData::retrieveData(const QString& type, QMetaType preferred) const {
    if (type == kFiles)
        return fileList();
    if (type == kPng)
        return picture().png;
    return QMimeData::retrieveData(type, preferred);
}

const OutgoingPicture& OutgoingPictureData::picture() const {
    if (const Supply supply = std::exchange(supply_, {}))
        picture_ = supply();
    return picture_;
}

QVariant OutgoingPictureData::fileList() const {
    const auto& [name, png] = picture();
    if (png.isEmpty())
        return {};
    if (!written_) {
        const auto* const data = reinterpret_cast<const std::uint8_t*>(png.constData());
        if (auto written = folder_->write(name, {data, static_cast<std::size_t>(png.size())}); !written) {
            foundation::log::warning("the picture cannot be dragged as a file: %s",
                                     written.error().message.c_str());
            return {};
        }
        written_ = true;
    }
    return QVariantList{QUrl::fromLocalFile(QFile::decodeName(folder_->file(name).c_str()))};
}

}  // namespace trimora::editor
