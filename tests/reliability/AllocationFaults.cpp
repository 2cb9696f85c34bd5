#include "AllocationFaults.h"

#include <cerrno>

namespace trimora::reliability {
namespace {

struct State {
    bool counting = false;
    bool forEver = false;
    std::int64_t number = 0;
    std::int64_t count = 0;
    std::size_t smallest = 0;
};
thread_local State state;

bool refused(std::size_t size) {
    if (!state.counting || size < state.smallest)
        return false;
    ++state.count;
    return state.number > 0 && (state.forEver ? state.count >= state.number : state.count == state.number);
}

/// Answers as the system's functions do where there is no memory.
template <typename Allocate>
void* allocated(std::size_t size, const Allocate& allocate) {
    if (!refused(size))
        return allocate();
    errno = ENOMEM;
    return nullptr;
}

}  // namespace

AllocationFaults::AllocationFaults(std::int64_t number, bool forEver, std::size_t smallest) {
    state = {true, forEver, number, 0, smallest};
}

AllocationFaults::~AllocationFaults() {
    state.counting = false;
}

std::int64_t AllocationFaults::count() {
    return state.count;
}

}  // namespace trimora::reliability

// NOLINTBEGIN(readability-identifier-naming, bugprone-reserved-identifier)
extern "C" {

void* __libc_malloc(std::size_t size);
void* __libc_calloc(std::size_t count, std::size_t size);
void* __libc_realloc(void* memory, std::size_t size);
void* __libc_memalign(std::size_t alignment, std::size_t size);

void* malloc(std::size_t size) {
    return trimora::reliability::allocated(size, [=] { return __libc_malloc(size); });
}
void* calloc(std::size_t count, std::size_t size) {
    return trimora::reliability::allocated(count * size, [=] { return __libc_calloc(count, size); });
}
void* realloc(void* memory, std::size_t size) {
    return trimora::reliability::allocated(size, [=] { return __libc_realloc(memory, size); });
}
void* aligned_alloc(std::size_t alignment, std::size_t size) {
    return trimora::reliability::allocated(size, [=] { return __libc_memalign(alignment, size); });
}

}  // extern "C"
// NOLINTEND(readability-identifier-naming, bugprone-reserved-identifier)
