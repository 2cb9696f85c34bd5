#include "editor/ScratchFolder.h"

#include <QRandomGenerator>
#include <QString>
#include <system_error>

#include "files/PrivateFolder.h"
#include "files/UserFolders.h"

namespace trimora::editor {

using foundation::Result;
using std::filesystem::path;

path cachesFolder() {
    const path caches = files::cacheHome();
    return caches.empty() ? path() : caches / "Trimora";
}

ScratchFolder::ScratchFolder(const path& parent)
    : folder_(parent.empty() ? path()
                             : parent / QStringLiteral("drag-%1")
                                            .arg(QRandomGenerator::system()->generate64(), 16, 16, QChar('0'))
                                            .toStdString()) {}

ScratchFolder::~ScratchFolder() {
    std::error_code ignored;
    std::filesystem::remove_all(folder_, ignored);
}

Result<void> ScratchFolder::write(const std::string& name, std::span<const std::uint8_t> bytes) const {
    if (folder_.empty())
        return foundation::Error{"the account has no folder for caches"};
    auto folder = files::PrivateFolder::create(folder_);
    if (!folder)
        return folder.error();
    return folder->write(name, bytes);
}

}  // namespace trimora::editor
