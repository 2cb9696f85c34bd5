#include "controls/CustomTextField.h"

#include <algorithm>

#include "controls/FieldLook.h"
#include "controls/Metrics.h"
#include "foundation/Log.h"
#include "util/NumberDisplay.h"
#include "util/ValueControl.h"

namespace trimora::controls {
namespace {

constexpr std::int32_t kMaximumLength = 4;  // room for "100%"
constexpr QLatin1Char kPoint('.');

}  // namespace

CustomTextField::CustomTextField(QWidget* parent) : TextField(parent) {
    format_.setMaximumLength(kMaximumLength);
    setValidator(&format_);
    setAlignment(Qt::AlignCenter);
    giveFieldLook(*this);
    setSizePolicy(QSizePolicy::Fixed, QSizePolicy::Fixed);
}

QSize CustomTextField::sizeHint() const {
    const int fullest = fontMetrics().horizontalAdvance(QStringLiteral("100%")) + 2 * metrics::kGap;
    return {std::max(metrics::kPercentFieldWidth, fullest), metrics::kPercentFieldHeight};
}

void CustomTextField::textDidChange() {
    foundation::log::debug("%s", qUtf8Printable(showMode()));
    const QString typed = util::trimmedOfPercent(textWithPoints());
    if (typed.isEmpty() || typed.endsWith(kPoint)) {
        // Without its sign, or the digit that comes next would find no room before it.
        rewrite(util::trimmedOfPercent(text()));
        return;
    }
    rewrite(formatted(util::leadingNumber(typed.toStdString())));
    foundation::log::debug("length %lu", static_cast<unsigned long>(text().size()));
}

void CustomTextField::textDidEndEditing() {
    const QString typed = textWithPoints();
    if (typed.endsWith(kPoint))
        return;
    if (typed.isEmpty()) {
        if (control() != nullptr)
            setFloatValue(control()->floatValue());
        return;
    }
    const float most = std::min(static_cast<float>(max_), util::leadingNumber(typed.toStdString()));
    const float value = std::max(static_cast<float>(min_), most);
    if (valueDidChange_)
        valueDidChange_(static_cast<std::int64_t>(value));
    setFloatValue(value);
}

void CustomTextField::didCommit() {
    if (control() != nullptr)
        control()->setFocus(Qt::OtherFocusReason);
}

}  // namespace trimora::controls
