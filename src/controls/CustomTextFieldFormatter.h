#pragma once

#include <QValidator>
#include <cstdint>
#include <limits>

namespace trimora::controls {

/// Filters what is typed into a field: a text of more than so many characters is refused, small
/// letters become capitals. The text itself is the field's value.
class CustomTextFieldFormatter final : public QValidator {
 public:
    explicit CustomTextFieldFormatter(QObject* parent = nullptr) : QValidator(parent) {}

    [[nodiscard]] std::int32_t maximumLength() const { return maxLength_; }
    void setMaximumLength(std::int32_t length) { maxLength_ = length; }

    /// Turns `text` into its capitals; invalid, and left as it is, where those are too long.
    State validate(QString& text, int& position) const override;

 private:
    std::int32_t maxLength_ = std::numeric_limits<std::int32_t>::max();
};

}  // namespace trimora::controls
