#include "editor/SaveFlow.h"

#include <QDateTime>
#include <utility>

#include "files/AtomicFile.h"

namespace trimora::editor {

using cutengine::PictureEncoder;
using cutengine::PicturePtr;
using foundation::Result;
using std::filesystem::path;

namespace {

Result<void> writePng(PictureEncoder& encoder, const cutengine::Picture& picture, const path& target) {
    auto file = files::AtomicFile::create(target);
    if (!file)
        return file.error();
    const auto pixels = picture.bestRepresentation(picture.size().width, picture.size().height);
    auto encoded = encoder.encodePng(pixels->view(), [&file](auto bytes) { return file->write(bytes); });
    if (!encoded)
        return encoded;
    return file->commit();
}

}  // namespace

std::string defaultFileName(foundation::Clock::WallTime now) {
    const QDateTime local = QDateTime::fromMSecsSinceEpoch(foundation::milliseconds(now));
    return "Trimora - " + local.toString(QStringLiteral("dd-MM-yyyy HH:mm:ss")).toStdString() + ".png";
}

SaveFlow::SaveFlow(const Services& services, cutengine::RKImageCutView& view)
    : services_(services), view_(view) {}

void SaveFlow::savePicture(const path& folder) {
    if (view_.image() == nullptr)
        return;
    services_.panels.chooseFileToSave(
        folder_.empty() ? folder : folder_, defaultFileName(services_.clock.wallTime()),
        [this, flow = std::weak_ptr(underWay_)](const std::optional<path>& chosen) {
            if (chosen && !flow.expired())
                saveTo(*chosen);
        });
}

void SaveFlow::saveTo(const path& file) {
    folder_ = file.parent_path();
    const std::string name = file.filename().string();
    const PicturePtr result = view_.getResult();
    if (result == nullptr) {
        services_.messages.trouble(name + " could not be saved: there is not enough memory for the result");
        return;
    }
    services_.messages.progress("Saving " + name);
    ++*underWay_;
    services_.queues.backgroundQueue().async(
        [services = services_, result, file, name, flow = std::weak_ptr(underWay_)] {
            const Result<void> written = writePng(services.encoder, *result, file);
            const std::string problem = written ? "" : written.error().message;
            services.queues.mainQueue().async([services, name, problem, flow] {
                const auto underWay = flow.lock();
                if (!underWay)
                    return;
                --*underWay;
                if (problem.empty())
                    services.messages.note("Save complete: " + name);
                else
                    services.messages.trouble(name + " could not be saved: " + problem);
            });
        });
}

}  // namespace trimora::editor
