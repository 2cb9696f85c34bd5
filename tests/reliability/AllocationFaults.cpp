#include "AllocationFaults.h"

#include <malloc.h>

#include <atomic>
#include <cerrno>
#include <cstdlib>

namespace trimora::reliability {
namespace {

struct State {
    bool counting = false;
    bool forEver = false;
    std::int64_t number = 0;
    std::int64_t count = 0;
    std::size_t smallest = 0;
    void (*strike)() = nullptr;
};
thread_local State state;
std::atomic<std::int64_t> blocks = 0;
std::atomic<std::int64_t> bytes = 0;

bool refused(std::size_t size) {
    if (!state.counting || size < state.smallest)
        return false;
    ++state.count;
    const bool isDue =
        state.number > 0 && (state.forEver ? state.count >= state.number : state.count == state.number);
    if (!isDue || state.strike == nullptr)
        return isDue;
    state.counting = false;  // what strikes may allocate too
    state.strike();
    return false;
}

std::int64_t sizeOf(void* memory) {
    return static_cast<std::int64_t>(::malloc_usable_size(memory));
}

/// Answers as the system's functions do where there is no memory.
template <typename Allocate>
void* allocated(std::size_t size, const Allocate& allocate) {
    if (refused(size)) {
        errno = ENOMEM;
        return nullptr;
    }
    void* const memory = allocate();
    blocks += memory != nullptr ? 1 : 0;
    bytes += sizeOf(memory);
    return memory;
}

}  // namespace

AllocationFaults::AllocationFaults(std::int64_t number, bool forEver, std::size_t smallest) {
    state = {true, forEver, number, 0, smallest, nullptr};
}

AllocationFaults::AllocationFaults(std::int64_t number, void (*strike)()) {
    state = {true, false, number, 0, 0, strike};
}

AllocationFaults::~AllocationFaults() {
    state.counting = false;
}

std::int64_t AllocationFaults::count() {
    return state.count;
}

std::int64_t AllocationFaults::liveBlocks() {
    return blocks;
}

std::int64_t AllocationFaults::liveBytes() {
    return bytes;
}

}  // namespace trimora::reliability

// NOLINTBEGIN(readability-identifier-naming, bugprone-reserved-identifier)
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);
void __libc_free(void* memory);

// The system's own names for these parameters are reserved ones.
// NOLINTBEGIN(readability-inconsistent-declaration-parameter-name)
void* malloc(std::size_t size) {
    return trimora::reliability::allocated(size, [=] { return __libc_malloc(size); });
}
void* calloc(std::size_t count, std::size_t size) {
    return trimora::reliability::allocated(count * size, [=] { return __libc_calloc(count, size); });
}
void* realloc(void* memory, std::size_t size) {
    if (memory == nullptr)
        return malloc(size);
    if (size == 0) {
        free(memory);
        return nullptr;
    }
    if (trimora::reliability::refused(size)) {
        errno = ENOMEM;
        return nullptr;
    }
    const std::int64_t before = trimora::reliability::sizeOf(memory);
    void* const grown = __libc_realloc(memory, size);  // it stays the one block that it was
    if (grown != nullptr)
        trimora::reliability::bytes += trimora::reliability::sizeOf(grown) - before;
    return grown;
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return trimora::reliability::allocated(size, [=] { return __libc_memalign(alignment, size); });
}
int posix_memalign(void** memory, std::size_t alignment, std::size_t size) {
    void* const made = aligned_alloc(alignment, size);
    if (made == nullptr)
        return ENOMEM;
    *memory = made;
    return 0;
}
void free(void* memory) {
    trimora::reliability::blocks -= memory != nullptr ? 1 : 0;
    trimora::reliability::bytes -= trimora::reliability::sizeOf(memory);
    __libc_free(memory);
}
// NOLINTEND(readability-inconsistent-declaration-parameter-name)

}  // extern "C"
// NOLINTEND(readability-identifier-naming, bugprone-reserved-identifier)
