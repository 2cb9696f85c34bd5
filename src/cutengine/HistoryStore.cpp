#include "cutengine/HistoryStore.h"

#include <cerrno>
#include <new>
#include <utility>
#include <vector>

#include "cutengine/MaskPainter.h"
#include "foundation/Log.h"

namespace trimora::cutengine {

using foundation::BitmapView;
using foundation::Error;
using foundation::IntRect;
using foundation::Result;

namespace {

/// More than any mask of ours takes; a larger file in the folder is none of ours.
constexpr std::size_t kLargestFile = std::size_t{64} << 20;
/// A mask written by another program may have another size, within reason.
constexpr int kLargestMaskSide = 2 * static_cast<int>(kLargestPlaneSide);

std::string fileName(std::int64_t number) {
    return std::to_string(number) + ".his";
}

/// What the codec makes of it; memory that runs out is a reason like others.
template <typename Code>
auto unlessMemoryRunsOut(const Code& code) -> decltype(code()) {
    try {
        return code();
    } catch (const std::bad_alloc&) {
        return Error{"not enough memory"};
    }
}

}  // namespace

HistoryStore::HistoryStore(const std::optional<std::filesystem::path>& folder)
    : onDisk_(folder.has_value()), directory_(folder.value_or("")) {
    if (!onDisk_)
        return;
    Result<files::PrivateFolder> opened = files::PrivateFolder::create(directory_);
    if (opened)
        folder_ = std::move(*opened);
    else
        foundation::log::warning("no history folder: %s", opened.error().message.c_str());
}

void HistoryStore::clear() {
    length_ = 0;
    currentState_ = -1;
    fileIndex_ = -1;
    written_.reset();
    packed_.forget();
    if (!folder_)
        return;
    const Result<void> removed = folder_->removeAllFiles();
    if (!removed)
        foundation::log::warning("history files stay behind: %s", removed.error().message.c_str());
}

Result<void> HistoryStore::record(BitmapView mask, const IntRect& changed) {
    if (currentState_ < length_ - 1) {
        ++currentState_;
        length_ = currentState_ + 1;
    } else if (length_ < kLargestLength) {
        ++currentState_;
        ++length_;
    }
    const std::int64_t number = fileIndex_ < kLastFileNumber ? fileIndex_ + 1 : 0;
    if (mask.isEmpty()) {
        packed_.forget();
        return {};
    }
    fileIndex_ = number;
    written_.reset(static_cast<std::size_t>(number));
    if (!onDisk_)
        return {};
    if (!folder_)
        return Error{"there is no folder for it"};
    const auto file = unlessMemoryRunsOut([&] { return packed_.write(mask, changed); });
    Result<void> written = file ? folder_->write(fileName(number), *file) : file.error();
    if (!written) {
        // What an earlier round of the ring left under this name is another state: better none.
        (void)folder_->remove(fileName(number));
        return written;
    }
    written_.set(static_cast<std::size_t>(number));
    return written;
}

std::optional<kernels::MaskRows> HistoryStore::step(Step step, const IntRect& changed) {
    const bool back = step == Step::back;
    if (!onDisk_ || (back ? currentState_ <= 0 : !canStepForward()))
        return std::nullopt;
    const std::int64_t shown = fileIndex_;
    const std::int64_t number =
        back ? (shown < 1 ? kLastFileNumber : shown - 1) : (shown >= kLastFileNumber ? 0 : shown + 1);
    const Result<files::FileBytes> file = written_.test(static_cast<std::size_t>(number))
                                              ? folder_->read(fileName(number), kLargestFile)
                                              : Error{"it was not written"};
    if (!file && file.error().code == ENOMEM)
        throw std::bad_alloc();
    if (!file) {
        foundation::log::warning("NO DATA PROVIDER");
        return std::nullopt;
    }
    auto rows = packed_.read(file->view(), kLargestMaskSide, changed);
    if (!rows && rows.error().code == ENOMEM)
        throw std::bad_alloc();
    fileIndex_ = number;
    currentState_ += back ? -1 : 1;
    if (rows)
        return std::move(*rows);
    foundation::log::warning("%s: %s", fileName(number).c_str(), rows.error().message.c_str());
    return kernels::MaskRows();
}

}  // namespace trimora::cutengine
