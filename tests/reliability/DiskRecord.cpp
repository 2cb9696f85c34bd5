#include "DiskRecord.h"

#include <sys/mman.h>

#include <algorithm>
#include <array>
#include <cstdlib>
#include <cstring>

namespace trimora::reliability {
namespace {

constexpr std::size_t kMostNotes = 1 << 16;
constexpr std::size_t kMostBytes = std::size_t{1} << 30;  // only what is written takes memory
constexpr std::size_t kSector = 512;                      // what a disk writes whole or not at all
// ext4 refuses a disk whose superblock is torn, which lies in several of these small sectors; it counts on
// disks that write its first block whole.
constexpr std::size_t kFirstBlock = 4096;

void* sharedMemory(std::size_t size) {
    void* const memory =
        ::mmap(nullptr, size, PROT_READ | PROT_WRITE, MAP_SHARED | MAP_ANONYMOUS | MAP_NORESERVE, -1, 0);
    if (memory == MAP_FAILED)
        std::abort();
    return memory;
}

}  // namespace

struct DiskRecord::Note {
    std::size_t at;
    std::size_t size;
    std::size_t from;  ///< where its bytes begin among those that were noted
    bool isFlush;
};

struct DiskRecord::Notes {
    std::atomic<std::size_t> count;
    std::size_t used;
    std::array<Note, kMostNotes> notes;
    std::array<char, kMostBytes> bytes;
};

DiskRecord::DiskRecord(std::span<const char> bytes)
    : begun_(bytes.begin(), bytes.end()),
      disk_(static_cast<char*>(sharedMemory(bytes.size()))),
      notes_(static_cast<Notes*>(sharedMemory(sizeof(Notes)))) {
    std::memcpy(disk_, bytes.data(), bytes.size());
}

DiskRecord::~DiskRecord() {
    ::munmap(notes_, sizeof(Notes));
    ::munmap(disk_, begun_.size());
}

bool DiskRecord::write(std::size_t at, std::span<const char> bytes) {
    if (at > begun_.size() || bytes.size() > begun_.size() - at)
        return false;
    std::memcpy(disk_ + at, bytes.data(), bytes.size());
    return note(at, bytes, false);
}

bool DiskRecord::flush() {
    return note(0, {}, true);
}

bool DiskRecord::note(std::size_t at, std::span<const char> bytes, bool isFlush) {
    const std::size_t number = notes_->count;
    if (number == kMostNotes || bytes.size() > kMostBytes - notes_->used)
        return false;
    notes_->notes[number] = {at, bytes.size(), notes_->used, isFlush};
    std::copy(bytes.begin(), bytes.end(), notes_->bytes.begin() + static_cast<long>(notes_->used));
    notes_->used += bytes.size();
    notes_->count = number + 1;
    return true;
}

std::size_t DiskRecord::position() const {
    return notes_->count;
}

std::string DiskRecord::afterCut(std::size_t position, std::mt19937_64& random) const {
    const std::span<const Note> notes(notes_->notes.data(), position);
    const auto lastFlush =
        std::find_if(notes.rbegin(), notes.rend(), [](const Note& n) { return n.isFlush; });
    const auto kept = static_cast<std::size_t>(notes.rend() - lastFlush);
    const std::uint64_t sharesLost[] = {0, 1, 2, 4};  // of four: all of it arrives, some, a half, nothing
    const std::uint64_t share = sharesLost[random() % std::size(sharesLost)];
    const bool inSectors = random() % 2 == 0;
    std::string disk = begun_;
    for (std::size_t i = 0; i < notes.size(); ++i) {
        const bool isTorn = i >= kept && inSectors && notes[i].at >= kFirstBlock;
        const std::size_t piece = isTorn ? kSector : std::max(notes[i].size, kSector);
        for (std::size_t done = 0; done < notes[i].size; done += piece) {
            if (i < kept || random() % 4 >= share)
                std::memcpy(disk.data() + notes[i].at + done, notes_->bytes.data() + notes[i].from + done,
                            std::min(piece, notes[i].size - done));
        }
    }
    return disk;
}

}  // namespace trimora::reliability
