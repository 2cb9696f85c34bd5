#include "batch/PixelGate.h"

namespace trimora::batch {

PixelGate::Place PixelGate::enter(std::uint64_t pixels) {
    std::unique_lock lock(mutex_);
    left_.wait(lock, [&] { return inside_ == 0 || (pixels <= limit_ && inside_ <= limit_ - pixels); });
    inside_ += pixels;
    return {*this, pixels};
}

std::uint64_t PixelGate::inside() const {
    const std::scoped_lock lock(mutex_);
    return inside_;
}

void PixelGate::leave(std::uint64_t pixels) {
    {
        const std::scoped_lock lock(mutex_);
        inside_ -= pixels;
    }
    left_.notify_all();
}

}  // namespace trimora::batch
