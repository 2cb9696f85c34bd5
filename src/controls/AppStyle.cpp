#include "controls/AppStyle.h"

#include <QApplication>
#include <QFont>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QProxyStyle>
#include <QString>

#include "controls/Metrics.h"
#include "controls/Palette.h"

namespace trimora::controls {
namespace {

class AppStyle final : public QProxyStyle {
 public:
    AppStyle() : QProxyStyle(QStringLiteral("fusion")) {}

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override {
        if (hint == SH_MenuBar_AltKeyNavigation)
            return 0;
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }

    /// Symbols that cannot be used now fade as the words beside them do.
    QPixmap generatedIconPixmap(QIcon::Mode mode, const QPixmap& symbol,
                                const QStyleOption* option) const override {
        if (mode != QIcon::Disabled)
            return QProxyStyle::generatedIconPixmap(mode, symbol, option);
        QPixmap faded(symbol.size());
        faded.setDevicePixelRatio(symbol.devicePixelRatio());
        faded.fill(Qt::transparent);
        QPainter painter(&faded);
        painter.setOpacity(palette::kDisabledText.alphaF());
        painter.drawPixmap(0, 0, symbol);
        return faded;
    }
};

QPalette makePalette() {
    QPalette made;
    made.setColor(QPalette::Window, palette::kPanel);
    made.setColor(QPalette::WindowText, palette::kText);
    made.setColor(QPalette::Base, palette::kField);
    made.setColor(QPalette::AlternateBase, palette::kRaised);
    made.setColor(QPalette::Text, palette::kText);
    made.setColor(QPalette::PlaceholderText, palette::kSecondaryText);
    made.setColor(QPalette::Button, palette::kRaised);
    made.setColor(QPalette::ButtonText, palette::kText);
    made.setColor(QPalette::BrightText, palette::kText);
    made.setColor(QPalette::ToolTipBase, palette::kRaised);
    made.setColor(QPalette::ToolTipText, palette::kText);
    made.setColor(QPalette::Highlight, palette::kAccent);
    made.setColor(QPalette::HighlightedText, palette::kText);
    made.setColor(QPalette::Link, palette::kAccentEnd);
    for (const auto role : {QPalette::WindowText, QPalette::Text, QPalette::ButtonText})
        made.setColor(QPalette::Disabled, role, palette::kDisabledText);
    return made;
}

QString css(const QColor& colour) {
    return QStringLiteral("rgba(%1,%2,%3,%4)")
        .arg(colour.red())
        .arg(colour.green())
        .arg(colour.blue())
        .arg(colour.alpha());
}

/// The sheet names its colours and sizes with @words; this table says what they stand for.
QString filledIn(QString sheet) {
    const std::pair<const char*, QString> words[] = {
        {"@panel", css(palette::kPanel)},
        {"@raised", css(palette::kRaised)},
        {"@line", css(palette::kLine)},
        {"@text", css(palette::kText)},
        {"@disabled", css(palette::kDisabledText)},
        {"@accentEnd", css(palette::kAccentEnd)},
        {"@accent", css(palette::kAccent)},
        {"@radius", QString::number(metrics::kCornerRadius)},
    };
    for (const auto& [word, value] : words)
        sheet.replace(QLatin1String(word), value);
    return sheet;
}

constexpr const char* kSheet = R"(
QMenuBar { background: @panel; color: @text; }
QMenuBar::item { padding: 4px 8px; background: transparent; }
QMenuBar::item:selected, QMenu::item:selected { background: @accent; }
QMenu { background: @raised; color: @text; border: 1px solid @line; padding: 4px 0px; }
QMenu::item { padding: 4px 24px 4px 24px; }
QMenu::item:disabled { color: @disabled; background: transparent; }
QMenu::separator { height: 1px; background: @line; margin: 4px 0px; }
QToolTip { background: @raised; color: @text; border: 1px solid @line; padding: 4px; }

#toolbar { background: @panel; border-bottom: 1px solid @line; }
#messageText[trouble="true"] { color: @accentEnd; }
#messageLine { background: @raised; border: 1px solid @line; border-radius: @radiuspx; }
#messageButton { background: transparent; border: none; color: @accentEnd; padding: 0px 4px; }
#messageButton:hover { color: @text; }
)";

}  // namespace

void applyAppStyle(QApplication& application) {
    QApplication::setStyle(new AppStyle);
    QApplication::setPalette(makePalette());
    QFont font = QApplication::font();
    font.setPointSizeF(metrics::kSmallFont);
    QApplication::setFont(font);
    application.setStyleSheet(filledIn(QString::fromLatin1(kSheet)));
}

}  // namespace trimora::controls
