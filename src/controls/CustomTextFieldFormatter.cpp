#include "controls/CustomTextFieldFormatter.h"

#include <algorithm>

namespace trimora::controls {

QValidator::State CustomTextFieldFormatter::validate(QString& text, int& position) const {
    const QString capitals = text.toUpper();
    if (capitals.size() > maxLength_)
        return Invalid;
    text = capitals;
    position = std::min(position, static_cast<int>(capitals.size()));
    return Acceptable;
}

}  // namespace trimora::controls
