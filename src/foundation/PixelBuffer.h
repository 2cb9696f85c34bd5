#pragma once

#include <cstddef>
#include <cstdint>
#include <memory>

namespace trimora::foundation {

/// Raw memory for pixels, aligned to 64 bytes, recycled through a small process-wide stock.
///
/// Why a stock: a fresh block of 96 MB costs 30 to 45 ms in page faults when it is first written,
/// more than decoding into it. Blocks of 1 MiB and more go back to the stock when released and serve
/// the next request that they fit without wasting more than half. The stock keeps at most
/// kStockLimit bytes, the latest released; trimStock() empties it.
///
/// Contents of a new buffer are undefined. Movable, not copyable. Any thread.
class PixelBuffer {
 public:
    static constexpr std::size_t kAlignment = 64;
    static constexpr std::size_t kStockLimit = std::size_t{1} << 30;

    PixelBuffer() = default;

    /// A buffer of at least `size` bytes; an empty one (data() null) when memory is refused.
    [[nodiscard]] static PixelBuffer allocate(std::size_t size);

    /// Gives everything in the stock back to the system.
    static void trimStock();

    [[nodiscard]] std::uint8_t* data() { return block_.get(); }
    [[nodiscard]] const std::uint8_t* data() const { return block_.get(); }
    explicit operator bool() const { return block_ != nullptr; }

 private:
    struct Release {
        std::size_t capacity;
        void operator()(std::uint8_t* block) const;
    };
    explicit PixelBuffer(std::uint8_t* block, std::size_t capacity) : block_(block, Release{capacity}) {}

    std::unique_ptr<std::uint8_t, Release> block_{nullptr, Release{0}};
};

}  // namespace trimora::foundation
