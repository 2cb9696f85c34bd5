#include "controls/AppStyle.h"

#include <QApplication>
#include <QEvent>
#include <QFont>
#include <QMenu>
#include <QMessageBox>
#include <QPainter>
#include <QPalette>
#include <QPixmap>
#include <QProxyStyle>
#include <QStyleOption>
#include <QToolTip>

#include "controls/Icons.h"
#include "controls/Metrics.h"
#include "controls/Palette.h"
#include "controls/Sheet.h"
#include "controls/StyleSheet.h"

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

void drawTipGround(QPainter& painter, const QRectF& ground) {
    const double right = ground.width() - 1;
    const double bottom = ground.height() - 1;
    painter.save();
    painter.fillRect(ground, palette::kRaised);
    painter.setRenderHint(QPainter::Antialiasing);  // the line round it is a point wide at every scale
    painter.setPen(Qt::NoPen);
    painter.setBrush(palette::kLine);
    painter.translate(ground.topLeft());
    for (const QRectF& side : {QRectF(0, 0, ground.width(), 1), QRectF(0, bottom, ground.width(), 1),
                               QRectF(0, 1, 1, bottom - 1), QRectF(right, 1, 1, bottom - 1)})
        painter.drawRect(side);
    painter.restore();
}

constexpr const char* kMenuSheet = R"(
QMenu { background: @raised; color: @text; border: 1px solid @line; padding: 4px 0px; }
QMenu::item { padding: 4px 24px 4px 24px; }
QMenu::item:selected { background: @accent; }
QMenu::item:disabled { color: @disabled; background: transparent; }
QMenu::separator { height: 1px; background: @line; margin: 4px 0px; }
)";

/// A style sheet costs time for every widget in its reach, so the window has none: the start would be longer
/// by a sixth. A menu takes its own when it opens for the first time.
class AppStyle final : public QProxyStyle {
 public:
    AppStyle() : QProxyStyle(QStringLiteral("fusion")) {}

    using QProxyStyle::polish;
    void polish(QWidget* widget) override {
        QProxyStyle::polish(widget);
        if (auto* const menu = qobject_cast<QMenu*>(widget);
            menu != nullptr && menu->styleSheet().isEmpty()) {
            connect(
                menu, &QMenu::aboutToShow, menu, [menu] { menu->setStyleSheet(styleSheet(kMenuSheet)); },
                Qt::SingleShotConnection);
        }
        if (qobject_cast<QMessageBox*>(widget) == nullptr)
            return;
        widget->setContentsMargins(metrics::kGap, metrics::kGap, metrics::kGap, metrics::kGap);
        widget->installEventFilter(&sheetGround_);
    }

    int pixelMetric(PixelMetric metric, const QStyleOption* option, const QWidget* widget) const override {
        if (metric == PM_ToolTipLabelFrameWidth)
            return metrics::kTipPadding;
        return QProxyStyle::pixelMetric(metric, option, widget);
    }

    QSize sizeFromContents(ContentsType type, const QStyleOption* option, const QSize& contents,
                           const QWidget* widget) const override {
        if (type == CT_MenuBarItem)
            return contents + QSize(2 * metrics::kMenuTitlePaddingX, 2 * metrics::kMenuTitlePaddingY);
        return QProxyStyle::sizeFromContents(type, option, contents, widget);
    }

    /// The base style draws a line under the menu bar, and its titles on a raised ground.
    void drawControl(ControlElement element, const QStyleOption* option, QPainter* painter,
                     const QWidget* widget) const override {
        if (element == CE_MenuBarEmptyArea) {
            painter->fillRect(option->rect, palette::kPanel);
            return;
        }
        const auto* const title = qstyleoption_cast<const QStyleOptionMenuItem*>(option);
        if (element != CE_MenuBarItem || title == nullptr) {
            QProxyStyle::drawControl(element, option, painter, widget);
            return;
        }
        painter->fillRect(title->rect,
                          title->state.testFlag(State_Selected) ? palette::kAccent : palette::kPanel);
        const bool keysShown = styleHint(SH_UnderlineShortcut, title, widget, nullptr) != 0;
        drawItemText(painter, title->rect,
                     Qt::AlignCenter | Qt::TextDontClip | Qt::TextSingleLine |
                         (keysShown ? Qt::TextShowMnemonic : Qt::TextHideMnemonic),
                     title->palette, true, title->text, QPalette::WindowText);
    }

    void drawPrimitive(PrimitiveElement element, const QStyleOption* option, QPainter* painter,
                       const QWidget* widget) const override {
        if (element == PE_PanelTipLabel) {
            drawTipGround(*painter, option->rect);
            return;
        }
        QProxyStyle::drawPrimitive(element, option, painter, widget);
        // The base style rings what can be ticked in a shade of the background, which nobody sees on ours.
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

}  // namespace

void applyAppStyle() {
    QApplication::setStyle(new AppStyle);
    QApplication::setPalette(makePalette());
    QToolTip::setPalette(makePalette());
    QFont font = QApplication::font();
    font.setPointSizeF(metrics::kSmallFont);
    QApplication::setFont(font);
}

}  // namespace trimora::controls
