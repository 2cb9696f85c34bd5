#pragma once

#include <functional>
#include <utility>

#include "foundation/Queues.h"

namespace trimora::testing {

/// Workers without threads: one part after the other, the lowest first, so that each part of a picture gets a
/// share, and always the same one.
class LowestFirst final : public foundation::Workers {
 public:
    /// `beforeTop` is called when all parts but the first have run.
    explicit LowestFirst(
        int width, std::function<void()> beforeTop = [] {})
        : width_(width), beforeTop_(std::move(beforeTop)) {}
    [[nodiscard]] int width() const override { return width_; }
    void run(int count, const std::function<void(int)>& part) override {
        for (int i = count - 1; i > 0; --i)
            part(i);
        beforeTop_();
        part(0);
    }

 private:
    int width_;
    std::function<void()> beforeTop_;
};

}  // namespace trimora::testing
