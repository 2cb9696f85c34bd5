#include "editor/SaveFlow.h"

#include <QDateTime>
#include <utility>

#include "files/AtomicFile.h"

namespace trimora::editor {

using cutengine::PictureEncoder;
using cutengine::PictureRows;
using foundation::Result;
using std::filesystem::path;

namespace {

constexpr const char* kFolderKey = "saveFolder";

Result<void> writePng(PictureEncoder& encoder, const PictureRows& picture, const path& target) {
    auto file = files::AtomicFile::create(target);
    if (!file)
        return file.error();
    auto encoded = encoder.encodePng(picture, [&file](auto bytes) { return file->write(bytes); });
    if (!encoded)
        return encoded;
    return file->commit();
}

QString shownName(const path& file) {
    return QString::fromStdString(file.filename().string());
}

}  // namespace

std::string defaultFileName(foundation::Clock::WallTime now) {
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(foundation::milliseconds(now));
    return "Trimora - " + local.toString(QStringLiteral("dd-MM-yyyy HH:mm:ss")).toStdString() + ".png";
}

SaveFlow::SaveFlow(const Services& services, cutengine::RKImageCutView& view)
    : services_(services), view_(view) {}

path SaveFlow::folderToBeginIn(const path& folder) const {
    if (!folder_.empty())
        return folder_;
    const auto earlier = services_.settings != nullptr ? services_.settings->text(kFolderKey) : std::nullopt;
    return earlier ? path(*earlier) : folder;
}

void SaveFlow::savePicture(const path& folder, std::function<void()> whenSaved) {
    if (view_.image() == nullptr)
        return;
    proposedName_ = defaultFileName(services_.clock.wallTime());
    const auto question = std::make_shared<Question>();
    question->whenSaved = std::move(whenSaved);
    std::erase_if(questions_, [](const auto& answered) { return answered.expired(); });
    questions_.push_back(question);
    services_.panels.chooseFileToSave(
        folderToBeginIn(folder), *proposedName_,
        [this, question, flow = std::weak_ptr(underWay_)](const std::optional<path>& chosen) {
            question->isOpen = false;
            if (chosen && !flow.expired())
                answer(*chosen, *question);
        });
}

void SaveFlow::pictureWillGo() {
    for (const auto& open : questions_) {
        const auto question = open.lock();
        if (question && question->isOpen && question->result == nullptr)
            question->result = view_.resultRows();
    }
}

void SaveFlow::answer(const path& file, const Question& question) {
    const auto result = question.result != nullptr ? question.result : view_.resultRows();
    if (confirmed_)
        confirmed_();
    write(result, file, question.whenSaved);
}

void SaveFlow::saveTo(const path& file) {
    write(view_.resultRows(), file);
}

void SaveFlow::write(const std::shared_ptr<const PictureRows>& result, const path& file,
                     const std::function<void()>& whenSaved) {
    folder_ = file.parent_path();
    if (services_.settings != nullptr)
        services_.settings->setText(kFolderKey, folder_.string());
    if (result == nullptr) {
        services_.messages.trouble(tr("%1 could not be saved: there is not enough memory for the result")
                                       .arg(shownName(file))
                                       .toStdString());
        return;
    }
    services_.messages.progress(tr("Saving %1").arg(shownName(file)).toStdString());
    ++*underWay_;
    services_.queues.backgroundQueue().async(
        [this, services = services_, result, file, whenSaved, flow = std::weak_ptr(underWay_)] {
            const Result<void> written = writePng(services.encoder, *result, file);
            const std::string problem = written ? "" : written.error().message;
            services.queues.mainQueue().async([this, file, problem, whenSaved, flow] {
                if (!flow.expired())
                    finish(file, problem, whenSaved);
            });
        });
}

void SaveFlow::finish(const path& file, const std::string& problem, const std::function<void()>& whenSaved) {
    --*underWay_;
    if (!problem.empty()) {
        services_.messages.trouble(tr("%1 could not be saved: %2")
                                       .arg(shownName(file), QString::fromStdString(problem))
                                       .toStdString());
        return;
    }
    services_.messages.note(tr("Save complete: %1").arg(shownName(file)).toStdString());
    if (saved_)
        saved_(file);
    if (whenSaved)
        whenSaved();
}

}  // namespace trimora::editor
