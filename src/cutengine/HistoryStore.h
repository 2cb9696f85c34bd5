#pragma once

#include <atomic>
#include <bitset>
#include <cstdint>
#include <filesystem>
#include <optional>
#include <string>

#include "cutengine/kernels/MaskCodec.h"
#include "files/PrivateFolder.h"
#include "foundation/Bitmap.h"
#include "foundation/Geometry.h"
#include "foundation/Result.h"

namespace trimora::cutengine {

/// Undo and redo on disk: one PNG of the whole mask plane per state, in a ring of 31 file names
/// (0.his to 30.his), of which at most 30 states can be visited.
///
/// The ring has one name more than the depth, so the newest write never replaces a state that can
/// still be reached. Undo always reads the whole file and checks it; what is kept is the packed mask of the
/// shown state, so that of a file only what differs from it is unpacked, and only what changed is packed.
///
/// `changed`, wherever it is asked for, is the part of the mask that may differ from the shown state (top row
/// first): the whole of it where nobody knows.
///
/// Threads: the painting queue records and steps; clear() runs while that queue is idle; the counters
/// may be read by any thread.
class HistoryStore {
 public:
    static constexpr std::int64_t kLargestLength = 30;
    static constexpr std::int64_t kLastFileNumber = 30;

    enum class Step : std::uint8_t { back, forward };

    /// Resolves the folder and creates it, private to its owner; where that fails every write fails. With
    /// none only the counters are kept: writes succeed at once, and no step finds a state.
    explicit HistoryStore(const std::optional<std::filesystem::path>& folder);

    [[nodiscard]] const std::filesystem::path& directory() const { return directory_; }

    /// Number of states that can be visited.
    [[nodiscard]] std::int64_t length() const { return length_; }
    /// Index of the shown state, 0 .. length - 1; -1 while empty.
    [[nodiscard]] std::int64_t currentState() const { return currentState_; }
    /// Number in the ring of the shown state's file; -1 while there is none.
    [[nodiscard]] std::int64_t fileIndex() const { return fileIndex_; }

    /// Forgets all states and removes every file in the folder.
    void clear();

    /// Keeps the mask as the newest state; states that had been undone are dropped. The counters move
    /// in any case; without a mask no file is written. A file that cannot be written returns an error,
    /// and no file stands under its name then.
    foundation::Result<void> record(foundation::BitmapView mask, const foundation::IntRect& changed);

    /// Moves to the state before or after and returns the rows that make its mask of the present one; a mask
    /// by itself, and empty, where the file does not decode. None where there is no such state, or its file
    /// was not written or cannot be opened (logged): nothing changed. Throws std::bad_alloc, and nothing
    /// changed then either.
    [[nodiscard]] std::optional<kernels::MaskRows> step(Step step, const foundation::IntRect& changed);

    [[nodiscard]] bool canStepForward() const { return currentState_ <= length_ - 2; }

 private:
    bool onDisk_;
    std::filesystem::path directory_;
    std::optional<files::PrivateFolder> folder_;
    std::atomic<std::int64_t> length_ = 0;
    std::atomic<std::int64_t> currentState_ = -1;
    std::atomic<std::int64_t> fileIndex_ = -1;
    /// The files that hold what was last recorded under their names. Another may hold an older mask that
    /// a failing disk would neither replace nor remove.
    std::bitset<kLastFileNumber + 1> written_;
    kernels::MaskFiles packed_;
};

}  // namespace trimora::cutengine
