#include "controls/StyleSheet.h"

#include <QColor>
#include <utility>

#include "controls/Metrics.h"
#include "controls/Palette.h"

namespace trimora::controls {
namespace {

QString css(const QColor& colour) {
    return QStringLiteral("rgba(%1,%2,%3,%4)")
        .arg(colour.red())
        .arg(colour.green())
        .arg(colour.blue())
        .arg(colour.alpha());
}

}  // namespace

QString styleSheet(const char* text) {
    const std::pair<const char*, QString> words[] = {
        {"@field", css(palette::kField)},
        {"@focus", css(palette::kFocusOnField)},
        {"@raised", css(palette::kRaised)},
        {"@line", css(palette::kLine)},
        {"@text", css(palette::kText)},
        {"@disabled", css(palette::kDisabledText)},
        {"@accentEnd", css(palette::kAccentEnd)},
        {"@accent", css(palette::kAccent)},
        {"@radius", QStringLiteral("%1px").arg(metrics::kCornerRadius)},
    };
    QString sheet = QString::fromLatin1(text);
    for (const auto& [word, value] : words)
        sheet.replace(QLatin1String(word), value);
    return sheet;
}

}  // namespace trimora::controls
