#include "editor/PictureClipboard.h"

#include <QClipboard>
#include <QColorSpace>
#include <QFile>
#include <QGuiApplication>
#include <QImage>
#include <QMimeData>
#include <QUrl>
#include <cstring>
#include <utility>

#include "util/BitmapImage.h"

namespace trimora::editor {

using cutengine::Picture;
using cutengine::PicturePtr;
using foundation::Bitmap;
using foundation::Result;

Result<QByteArray> pngBytes(cutengine::PictureEncoder& encoder, const cutengine::PictureRows& picture) {
    QByteArray bytes;
    const auto encoded = encoder.encodePng(picture, [&bytes](auto piece) -> Result<void> {
        bytes.append(reinterpret_cast<const char*>(piece.data()), static_cast<qsizetype>(piece.size()));
        return {};
    });
    if (!encoded)
        return encoded.error();
    return bytes;
}

PicturePtr pictureOf(const QImage& image) {
    if (image.isNull())
        return nullptr;
    QImage upright = image;
    if (upright.colorSpace().isValid() && upright.colorSpace() != QColorSpace(QColorSpace::SRgb))
        upright.convertToColorSpace(QColorSpace(QColorSpace::SRgb));
    upright = upright.convertToFormat(QImage::Format_ARGB32_Premultiplied);
    auto bitmap = Bitmap::create(upright.width(), upright.height());
    if (upright.isNull() || !bitmap)
        return nullptr;
    const foundation::BitmapView pixels(upright.constBits(), upright.width(), upright.height(),
                                        static_cast<std::size_t>(upright.bytesPerLine()),
                                        foundation::AlphaMode::premultiplied);
    foundation::copyPixels(pixels, bitmap->view());
    return Picture::create(std::move(*bitmap));
}

void PictureClipboard::copy(const PicturePtr& result) {
    if (result == nullptr) {
        refuse("there is not enough memory for it");
        return;
    }
    services_.messages.progress(tr("Copying").toStdString());
    copying_ = std::make_shared<int>();
    services_.queues.backgroundQueue().async(
        [this, result, services = services_, current = std::weak_ptr(copying_)] {
            auto png = std::make_shared<Result<QByteArray>>(
                pngBytes(services.encoder, cutengine::BitmapRows(result->bestRepresentation()->view())));
            services.queues.mainQueue().async([this, result, png, current] {
                if (!current.expired())
                    place(result, *png);
            });
        });
}

void PictureClipboard::place(const PicturePtr& result, const Result<QByteArray>& png) {
    if (!png) {
        refuse(png.error().message);
        return;
    }
    const QImage image = util::sharedImage(result->bestRepresentation()->view()).copy();
    if (image.isNull()) {
        refuse("there is not enough memory for it");
        return;
    }
    auto* const data = new QMimeData;
    data->setData(QStringLiteral("image/png"), *png);
    data->setImageData(image);
    QGuiApplication::clipboard()->setMimeData(data);
    services_.messages.note(tr("The result is on the clipboard").toStdString());
}

void PictureClipboard::refuse(const std::string& reason) {
    services_.messages.trouble(
        tr("The result could not be copied: %1").arg(QString::fromStdString(reason)).toStdString());
}

PictureClipboard::Contents PictureClipboard::paste() const {
    Contents contents;
    const QMimeData* const data = QGuiApplication::clipboard()->mimeData();
    if (data == nullptr)
        return contents;
    for (const QUrl& url : data->urls()) {
        if (url.isLocalFile())
            contents.files.emplace_back(QFile::encodeName(url.toLocalFile()).toStdString());
    }
    if (contents.files.empty() && data->hasImage())
        contents.picture = pictureOf(qvariant_cast<QImage>(data->imageData()));
    if (contents.files.empty() && contents.picture == nullptr)
        services_.messages.note(tr("There is no picture on the clipboard").toStdString());
    return contents;
}

}  // namespace trimora::editor
