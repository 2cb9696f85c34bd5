#include "foundation/PixelBuffer.h"

#include <algorithm>
#include <mutex>
#include <new>
#include <vector>

namespace trimora::foundation {
namespace {

constexpr std::size_t kSmallestStocked = std::size_t{1} << 20;
constexpr std::align_val_t kAlign{PixelBuffer::kAlignment};

struct Block {
    std::uint8_t* memory;
    std::size_t capacity;
};

/// Released blocks waiting for their next use.
class Stock {
 public:
    Block take(std::size_t size) {
        const std::scoped_lock lock(mutex_);
        auto best = blocks_.end();
        for (auto it = blocks_.begin(); it != blocks_.end(); ++it) {
            const bool fits = it->capacity >= size && it->capacity / 2 <= size;
            if (fits && (best == blocks_.end() || it->capacity < best->capacity))
                best = it;
        }
        if (best == blocks_.end())
            return {nullptr, 0};
        const Block found = *best;
        blocks_.erase(best);
        held_ -= found.capacity;
        return found;
    }

    /// Keeps a block, giving up the oldest ones for it; false where it is larger than the stock.
    bool keep(Block block) {
        if (block.capacity > PixelBuffer::kStockLimit)
            return false;
        const std::scoped_lock lock(mutex_);
        while (held_ + block.capacity > PixelBuffer::kStockLimit) {
            held_ -= blocks_.front().capacity;
            ::operator delete(blocks_.front().memory, kAlign);
            blocks_.erase(blocks_.begin());
        }
        blocks_.push_back(block);
        held_ += block.capacity;
        return true;
    }

    void clear() {
        std::vector<Block> blocks;
        {
            const std::scoped_lock lock(mutex_);
            blocks.swap(blocks_);
            held_ = 0;
        }
        for (const Block& block : blocks)  // the system takes its time over a large one
            ::operator delete(block.memory, kAlign);
    }

 private:
    std::mutex mutex_;
    std::vector<Block> blocks_;
    std::size_t held_ = 0;
};

// Lives as long as the process: buffers held by static objects may be released after any destructor here.
Stock& stock() {
    static auto* const instance = new Stock;
    return *instance;
}

}  // namespace

PixelBuffer PixelBuffer::allocate(std::size_t size) {
    const std::size_t capacity =
        std::max<std::size_t>((size + kAlignment - 1) / kAlignment * kAlignment, kAlignment);
    if (capacity < size)
        return {};
    if (capacity >= kSmallestStocked) {
        const Block block = stock().take(capacity);
        if (block.memory != nullptr)
            return PixelBuffer(block.memory, block.capacity);
    }
    void* fresh = ::operator new(capacity, kAlign, std::nothrow);
    return fresh == nullptr ? PixelBuffer() : PixelBuffer(static_cast<std::uint8_t*>(fresh), capacity);
}

void PixelBuffer::trimStock() {
    stock().clear();
}

void PixelBuffer::Release::operator()(std::uint8_t* block) const {
    if (capacity >= kSmallestStocked && stock().keep({block, capacity}))
        return;
    ::operator delete(block, kAlign);
}

}  // namespace trimora::foundation
