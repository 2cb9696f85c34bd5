#include "controls/AppStyle.h"

#include <QApplication>
#include <QEvent>
#include <QFont>
#include <QMessageBox>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QProxyStyle>
#include <QString>
#include <QStyleOption>

#include "controls/Icons.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "controls/Sheet.h"

namespace trimora::controls {
namespace {

/// Paints the ground of message boxes that have no frame of the desktop's.
class SheetGround final : public QObject {
 public:
    bool eventFilter(QObject* watched, QEvent* event) override {
        auto* const box = static_cast<QWidget*>(watched);
        if (event->type() != QEvent::Paint || !box->windowFlags().testFlag(Qt::FramelessWindowHint))
            return false;
        QPainter painter(box);
        paintSheet(painter, box->rect(), sheetCornersHere());
        return true;
    }
};

class AppStyle final : public QProxyStyle {
 public:
    AppStyle() : QProxyStyle(QStringLiteral("fusion")) {}

    using QProxyStyle::polish;
    void polish(QWidget* widget) override {
        QProxyStyle::polish(widget);
        if (qobject_cast<QMessageBox*>(widget) == nullptr)
            return;
        widget->setContentsMargins(metrics::kGap, metrics::kGap, metrics::kGap, metrics::kGap);
        widget->installEventFilter(&sheetGround_);
    }

    /// The base style rings what can be ticked in a shade of the background, which nobody sees on ours.
    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        if (element != PE_IndicatorRadioButton && element != PE_IndicatorCheckBox)
            return;
        const QRectF edge = QRectF(option->rect).adjusted(0.5, 0.5, -0.5, -0.5);
        const double radius = element == PE_IndicatorRadioButton ? edge.width() / 2 : metrics::kCornerRadius;
        painter->save();
        painter->setRenderHint(QPainter::Antialiasing);
        painter->setPen(
            QPen(option->state & State_Enabled ? palette::kSecondaryText : palette::kDisabledText, 1));
        painter->setBrush(Qt::NoBrush);
        painter->drawRoundedRect(edge, radius, radius);
        painter->restore();
    }

    int styleHint(StyleHint hint, const QStyleOption* option, const QWidget* widget,
                  QStyleHintReturn* returned) const override {
        if (hint == SH_MenuBar_AltKeyNavigation)
            return 0;
        return QProxyStyle::styleHint(hint, option, widget, returned);
    }

    /// The base style reads the menu bar's symbol for what has no room from a file of another format, whose
    /// reader is then looked for and loaded, in every start.
    QIcon standardIcon(StandardPixmap symbol, const QStyleOption* option,
                       const QWidget* widget) const override {
        if (symbol == SP_ToolBarHorizontalExtensionButton)
            return icon(QStringLiteral("more"));
        return QProxyStyle::standardIcon(symbol, option, widget);
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

 private:
    SheetGround sheetGround_;
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
