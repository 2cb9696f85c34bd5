#include "editor/PromisedFiles.h"

#include <QBuffer>
#include <QByteArray>
#include <QFileInfo>
#include <QImage>
#include <QMimeData>
#include <QUrl>
#include <array>
#include <optional>
#include <span>
#include <string>
#include <utility>

#include "foundation/Log.h"

namespace trimora::editor {
namespace {

struct Format {
    QLatin1String type;
    QLatin1String ending;
};
/// The picture files that can be opened, in the order in which they are asked for: those that keep
/// everything come first.
constexpr std::array kFormats{Format{QLatin1String("image/png"), QLatin1String("png")},
                              Format{QLatin1String("image/tiff"), QLatin1String("tiff")},
                              Format{QLatin1String("image/jpeg"), QLatin1String("jpg")},
                              Format{QLatin1String("image/gif"), QLatin1String("gif")}};

const Format* formatIn(const QMimeData& drag) {
    for (const Format& format : kFormats) {
        if (drag.hasFormat(format.type))
            return &format;
    }
    return nullptr;
}

/// What the source calls the picture, where it says so: the end of its address, without the ending.
QString stemOf(const QMimeData& drag) {
    const QList<QUrl> urls = drag.urls();
    QString stem = urls.isEmpty() ? QString() : QFileInfo(urls.front().fileName()).completeBaseName();
    stem.removeIf([](QChar c) { return c == QChar('/') || !c.isPrint(); });
    stem.truncate(64);  // whatever a name's bytes are, this many letters and an ending fit
    return stem.isEmpty() || stem.startsWith(QChar('.')) ? QStringLiteral("Dropped picture") : stem;
}

/// A picture file as it came, or pixels that are still to be made one.
struct Promise {
    std::string name;
    QByteArray bytes;
    QImage image;

    [[nodiscard]] QByteArray file() const {
        if (image.isNull())
            return bytes;
        QByteArray made;
        QBuffer buffer(&made);
        constexpr int kQuickly = 80;  // little compression: the file is read at once and thrown away
        image.save(&buffer, "PNG", kQuickly);
        return made;
    }
};

std::optional<Promise> promiseIn(const QMimeData& drag) {
    if (const Format* const format = formatIn(drag)) {
        const QString name = stemOf(drag) + QChar('.') + format->ending;
        if (QByteArray bytes = drag.data(format->type); !bytes.isEmpty())
            return Promise{name.toStdString(), std::move(bytes), {}};
    }
    auto image = qvariant_cast<QImage>(drag.imageData());
    if (image.isNull())
        return std::nullopt;
    return Promise{(stemOf(drag) + QLatin1String(".png")).toStdString(), {}, std::move(image)};
}

}  // namespace

bool PromisedFiles::areIn(const QMimeData& drag) {
    return formatIn(drag) != nullptr || drag.hasImage();
}

std::vector<std::filesystem::path> PromisedFiles::take(const QMimeData& drag) {
    std::optional<Promise> promise = promiseIn(drag);
    if (!promise || caches_.empty())
        return {};
    folder_ = std::make_shared<const ScratchFolder>(caches_);
    std::filesystem::path file = folder_->file(promise->name);
    queues_.backgroundQueue().async([promise = std::move(*promise), folder = folder_] {
        const QByteArray bytes = promise.file();
        const auto* const data = reinterpret_cast<const std::uint8_t*>(bytes.constData());
        if (auto written = folder->write(promise.name, {data, static_cast<std::size_t>(bytes.size())});
            !written)
            foundation::log::warning("a dropped picture was not kept: %s", written.error().message.c_str());
    });
    return {std::move(file)};
}

}  // namespace trimora::editor
