#pragma once

#include <cstddef>
#include <cstdint>

namespace trimora::reliability {

/// Lets the memory of the calling thread run out while it lives: its n-th allocation (from 1) is refused,
/// once or from then on; 0 only counts. Only those of at least `smallest` bytes count. The program that links
/// AllocationFaults.cpp has malloc() and its like of its own, which every library in it calls.
class AllocationFaults {
 public:
    AllocationFaults(std::int64_t number, bool forEver, std::size_t smallest = 0);
    /// Calls `strike` right before the n-th allocation, which is then done like the others.
    AllocationFaults(std::int64_t number, void (*strike)());
    ~AllocationFaults();
    AllocationFaults(const AllocationFaults&) = delete;
    AllocationFaults& operator=(const AllocationFaults&) = delete;

    /// How many allocations the thread has asked for.
    [[nodiscard]] static std::int64_t count();

    /// How many blocks of memory the process holds, all threads together; more or less by a constant.
    [[nodiscard]] static std::int64_t liveBlocks();
    /// How many bytes those are. What the allocator keeps for itself does not count: how much that is hangs
    /// on which thread gave which block back.
    [[nodiscard]] static std::int64_t liveBytes();
};

}  // namespace trimora::reliability
