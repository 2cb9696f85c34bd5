#include "editor/BrushMenu.h"

#include <QAbstractButton>
#include <QCoreApplication>
#include <QMenu>
#include <QToolButton>
#include <QWidgetAction>
#include <utility>

#include "controls/Icons.h"
#include "controls/Metrics.h"
#include "util/ActionBlock.h"

namespace trimora::editor {

namespace metrics = controls::metrics;

QMenu* BrushMenu::popUp(QAbstractButton& button, const Actions& actions) {
    auto* const menu = new QMenu(&button);
    menu->setAttribute(Qt::WA_DeleteOnClose);
    const auto tr = [](const char* text) { return QCoreApplication::translate("BrushMenu", text); };
    QAction* const brush = menuItemWithTitle_image_action(
        tr(QT_TRANSLATE_NOOP("BrushMenu", "Brush")), QStringLiteral("brush"), actions.brushSelected, menu);
    menu->addAction(brush);
    menu->insertAction(brush,
                       menuItemWithTitle_image_action(tr(QT_TRANSLATE_NOOP("BrushMenu", "Hand")),
                                                      QStringLiteral("hand"), actions.handSelected, menu));
    const QPoint place(-metrics::kBrushMenuGap - menu->sizeHint().width(), button.height() / 2);
    menu->popup(button.mapToGlobal(place), brush);
    return menu;
}

QWidgetAction* BrushMenu::menuItemWithTitle_image_action(const QString& title, const QString& image,
                                                         std::function<void()> action, QMenu* menu) {
    auto* const view = new QWidget;
    view->setFixedSize(metrics::kBrushMenuWidth, metrics::kBrushMenuHeight);
    auto* const button = new QToolButton(view);
    button->setGeometry(metrics::kBrushMenuGap, 0, metrics::kBrushMenuWidth - 2 * metrics::kBrushMenuGap,
                        metrics::kBrushMenuHeight);
    button->setAutoRaise(true);
    button->setToolButtonStyle(Qt::ToolButtonTextBesideIcon);
    button->setIcon(controls::icon(image));
    button->setIconSize({metrics::kModeIcon, metrics::kModeIcon});
    button->setText(title);
    button->setAccessibleName(title);
    util::setWantsLayerToViewAndSubViews(*button, true);

    auto* const item = new QWidgetAction(menu);
    item->setText(title);
    item->setDefaultWidget(view);
    QObject::connect(item, &QAction::triggered, menu, [action = std::move(action)] { action(); });
    QObject::connect(button, &QAbstractButton::clicked, item, [item, menu] {
        item->trigger();
        menu->close();
    });
    return item;
}

}  // namespace trimora::editor
