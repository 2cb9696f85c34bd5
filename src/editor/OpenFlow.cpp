#include "editor/OpenFlow.h"

#include <utility>

namespace trimora::editor {

using cutengine::Picture;
using std::filesystem::path;

OpenFlow::OpenFlow(const Services& services, Show show) : services_(services), show_(std::move(show)) {}

void OpenFlow::openPicture() {
    services_.panels.chooseFileToOpen(
        folder_, [this, alive = std::weak_ptr(panel_)](const std::optional<path>& chosen) {
            if (chosen && !alive.expired())
                open({*chosen});
        });
}

void OpenFlow::open(std::vector<path> files) {
    if (files.empty())
        return;
    services_.messages.progress("Opening " + files.front().filename().string());
    opening_ = std::make_shared<int>();
    services_.queues.backgroundQueue().async(
        [this, files = std::move(files), services = services_, current = std::weak_ptr(opening_)] {
            auto outcome = std::make_shared<Outcome>(decodeFirst(services.decoder, files));
            services.queues.mainQueue().async([this, outcome, current] {
                if (!current.expired())
                    finish(*outcome);
            });
        });
}

OpenFlow::Outcome OpenFlow::decodeFirst(cutengine::PictureDecoder& decoder, const std::vector<path>& files) {
    Outcome outcome;
    for (const path& file : files) {
        auto decoded = decoder.decode(file);
        if (decoded) {
            outcome.picture = Picture::create(std::move(decoded->representations));
            outcome.file = file;
            outcome.remark = decoded->notice;
            return outcome;
        }
        if (outcome.tried++ == 0) {
            outcome.file = file;
            outcome.remark = decoded.error().message;
        }
    }
    return outcome;
}

void OpenFlow::finish(const Outcome& outcome) {
    opening_.reset();
    const std::string name = outcome.file.filename().string();
    if (outcome.picture == nullptr) {
        const std::string others =
            outcome.tried > 1 ? " (nor could " + std::to_string(outcome.tried - 1) + " more)" : "";
        services_.messages.trouble(name + " could not be opened: " + outcome.remark + others);
        return;
    }
    folder_ = outcome.file.parent_path();
    if (outcome.remark.empty())
        services_.messages.note("Opened " + name);
    else
        services_.messages.note(name + ": " + outcome.remark);
    show_(outcome.picture, outcome.file);
}

}  // namespace trimora::editor
