#include "editor/OpenFlow.h"

#include <utility>

namespace trimora::editor {

using cutengine::LoadedPicture;
using std::filesystem::path;

namespace {

constexpr const char* kFolderKey = "openFolder";

QString shownName(const path& file) {
    return QString::fromStdString(file.filename().string());
}

}  // namespace

OpenFlow::OpenFlow(const Services& services, Show show) : services_(services), show_(std::move(show)) {}

path OpenFlow::folder() const {
    if (!folder_.empty() || services_.settings == nullptr)
        return folder_;
    return services_.settings->text(kFolderKey).value_or("");
}

void OpenFlow::openPicture(std::function<void()> chosen) {
    if (std::exchange(panelIsOpen_, true))
        return;
    services_.panels.chooseFileToOpen(
        folder(), [this, chosen = std::move(chosen), alive = std::weak_ptr(panel_)](std::vector<path> files) {
            if (alive.expired())
                return;
            panelIsOpen_ = false;
            if (files.empty())
                return;
            if (chosen)
                chosen();
            open(std::move(files));
        });
}

void OpenFlow::open(std::vector<path> files, Files state) {
    if (files.empty())
        return;
    services_.messages.progress(tr("Opening %1").arg(shownName(files.front())).toStdString());
    opening_ = std::make_shared<int>();
    services_.queues.backgroundQueue().async(
        [this, files = std::move(files), state, services = services_, current = std::weak_ptr(opening_)] {
            auto outcome = std::make_shared<Outcome>(loadFirst(services, files, state));
            services.queues.mainQueue().async([this, outcome, state, current] {
                if (!current.expired())
                    finish(*outcome, state);
            });
        });
}

LoadedPicture OpenFlow::load(const Services& services, const path& file, Files state) {
    LoadedPicture loaded = services.patience
                               ? cutengine::imageFromURL_async(file, state == Files::inTheMaking,
                                                               services.decoder, *services.patience)
                               : cutengine::imageFromURL(file, services.decoder);
    if (loaded.picture == nullptr)
        return loaded;
    const auto size = loaded.picture->size();
    loaded.picture = cutengine::resize(loaded.picture, static_cast<int>(size.width),
                                       static_cast<int>(size.height), services.queues.workers());
    loaded.picture = cutengine::Picture::withCopies(loaded.picture, services.queues.workers());
    if (loaded.picture == nullptr)
        loaded.notice = tr("there is not enough memory for it").toStdString();
    return loaded;
}

OpenFlow::Outcome OpenFlow::loadFirst(const Services& services, const std::vector<path>& files, Files state) {
    Outcome outcome;
    for (const path& file : files) {
        LoadedPicture loaded = load(services, file, state);
        const bool first = outcome.tried++ == 0;
        if (first || loaded.picture != nullptr) {
            outcome.file = file;
            outcome.remark = loaded.notice;
        }
        if (loaded.picture != nullptr) {
            outcome.picture = std::move(loaded.picture);
            break;
        }
    }
    return outcome;
}

void OpenFlow::finish(const Outcome& outcome, Files state) {
    opening_.reset();
    if (outcome.picture == nullptr) {
        refuse(outcome);
        return;
    }
    const QString name = shownName(outcome.file);
    if (outcome.remark.empty())
        services_.messages.note(tr("Opened %1").arg(name).toStdString());
    else
        services_.messages.note(tr("%1: %2").arg(name, QString::fromStdString(outcome.remark)).toStdString());
    // A file that was made for a drop lies in a folder that means nothing to the person.
    if (state == Files::complete) {
        folder_ = outcome.file.parent_path();
        if (services_.settings != nullptr)
            services_.settings->setText(kFolderKey, folder_.string());
    }
    show_(outcome.picture, outcome.file);
}

void OpenFlow::refuse(const Outcome& outcome) {
    QString line =
        tr("%1 could not be opened: %2").arg(shownName(outcome.file), QString::fromStdString(outcome.remark));
    if (outcome.tried > 1)
        line += tr(" (nor could %n more)", nullptr, static_cast<int>(outcome.tried - 1));
    services_.messages.trouble(line.toStdString());
    if (refused_)
        refused_(outcome.file);
}

}  // namespace trimora::editor
