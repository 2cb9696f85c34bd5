#include "editor/DropTarget.h"

#include <QDropEvent>
#include <QFile>
#include <QMimeData>
#include <QUrl>
#include <QWidget>
#include <utility>

namespace trimora::editor {
namespace {

std::vector<std::filesystem::path> localFiles(const QMimeData& data) {
    std::vector<std::filesystem::path> files;
    for (const QUrl& url : data.urls()) {
        if (url.isLocalFile())
            files.emplace_back(QFile::encodeName(url.toLocalFile()).toStdString());
    }
    return files;
}

}  // namespace

DropTarget::DropTarget(QWidget& widget, Dropped dropped, Hovered hovered)
    : QObject(&widget), dropped_(std::move(dropped)), hovered_(std::move(hovered)) {
    widget.setAcceptDrops(true);
    widget.installEventFilter(this);
}

bool DropTarget::eventFilter(QObject* watched, QEvent* event) {
    switch (event->type()) {
        case QEvent::DragEnter:
        case QEvent::DragMove:
            hover(offer(static_cast<QDropEvent&>(*event)));
            return true;
        case QEvent::DragLeave:
            hover(false);
            return true;
        case QEvent::Drop: {
            hover(false);
            auto& drop = static_cast<QDropEvent&>(*event);
            if (offer(drop))
                dropped_(localFiles(*drop.mimeData()));
            return true;
        }
        default:
            return QObject::eventFilter(watched, event);
    }
}

bool DropTarget::offer(QDropEvent& drag) {
    const bool files = !localFiles(*drag.mimeData()).empty();
    drag.setDropAction(Qt::CopyAction);
    drag.setAccepted(files);
    return files;
}

void DropTarget::hover(bool over) {
    if (hovered_)
        hovered_(over);
}

}  // namespace trimora::editor
