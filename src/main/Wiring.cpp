#include "main/Wiring.h"

#include "files/UserFolders.h"
#include "foundation/Log.h"

namespace trimora {

Wiring::Wiring()
    : window_({{queues_, clock_, notifications_, claimHistoryFolder()}, decoder_, encoder_, panels_}) {}

std::filesystem::path Wiring::claimHistoryFolder() {
    const std::filesystem::path base = files::dataHome() / "Trimora";
    auto owned = files::ownedFolder(base, "history");
    if (!owned) {
        foundation::log::warning("no folder for the history: %s", owned.error().message.c_str());
        return {};
    }
    history_ = std::move(*owned);
    return history_->folder.path();
}

}  // namespace trimora
