#pragma once

#include <cstdint>
#include <functional>

#include "controls/CustomTextFieldFormatter.h"
#include "util/TextField.h"

namespace trimora::controls {

/// The number beside a slider: at most four characters, clamped to a range when it is committed.
///
/// A text that ends in "." or "," is still being typed: it is not rewritten, nor does it count. An
/// empty one changes nothing. Return gives the keyboard to the bound control. Main thread only.
class CustomTextField final : public util::TextField {
 public:
    explicit CustomTextField(QWidget* parent = nullptr);

    /// The range; the minimum wins where it exceeds the maximum.
    void setMin(std::int64_t min) { min_ = min; }
    void setMax(std::int64_t max) { max_ = max; }
    [[nodiscard]] std::int64_t min() const { return min_; }
    [[nodiscard]] std::int64_t max() const { return max_; }

    /// Called with each committed value, clamped and then cut to a whole number towards zero.
    void setValueDidChange(std::function<void(std::int64_t)> callback) {
        valueDidChange_ = std::move(callback);
    }

    /// At every keystroke: rewrites the number in the field's format.
    void textDidChange() override;
    /// Clamps the number, tells valueDidChange and shows it.
    void textDidEndEditing() override;

    [[nodiscard]] QSize sizeHint() const override;

 protected:
    void didCommit() override;

 private:
    std::int64_t min_ = 0;
    std::int64_t max_ = 0;
    std::function<void(std::int64_t)> valueDidChange_;
    CustomTextFieldFormatter format_;
};

}  // namespace trimora::controls
