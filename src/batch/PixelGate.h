#pragma once

#include <condition_variable>
#include <cstdint>
#include <mutex>

namespace trimora::batch {

/// Lets pictures into memory as long as all that are in it fit together, so that many jobs at a time cost
/// no more memory than the largest picture alone may.
///
/// A picture larger than the limit passes when it is alone; whoever decodes it refuses it then with the
/// reason. Any thread.
class PixelGate {
 public:
    explicit PixelGate(std::uint64_t limit) : limit_(limit) {}

    /// A picture's place inside, given back when the object goes.
    class Place {
     public:
        Place(PixelGate& gate, std::uint64_t pixels) : gate_(gate), pixels_(pixels) {}
        ~Place() { gate_.leave(pixels_); }
        Place(const Place&) = delete;
        Place& operator=(const Place&) = delete;

     private:
        PixelGate& gate_;
        std::uint64_t pixels_;
    };

    /// Waits until there is room for so many pixels.
    [[nodiscard]] Place enter(std::uint64_t pixels);

    [[nodiscard]] std::uint64_t inside() const;

 private:
    void leave(std::uint64_t pixels);

    const std::uint64_t limit_;
    mutable std::mutex mutex_;
    std::condition_variable left_;
    std::uint64_t inside_ = 0;
};

}  // namespace trimora::batch
