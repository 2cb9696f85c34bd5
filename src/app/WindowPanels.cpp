#include "app/WindowPanels.h"

#include <QHBoxLayout>
#include <QLabel>
#include <QToolButton>
#include <QVBoxLayout>

#include "controls/Metrics.h"
#include "controls/SizeControl.h"

namespace trimora::app {

namespace metrics = controls::metrics;

namespace {

// Buttons take the keyboard by Tab alone, so a press on one leaves it with the picture.
QToolButton* makeButton(QAction& action, int iconSize, Qt::ToolButtonStyle style) {
    auto* const button = new QToolButton;
    button->setDefaultAction(&action);
    button->setIconSize({iconSize, iconSize});
    button->setToolButtonStyle(style);
    button->setFocusPolicy(Qt::TabFocus);
    button->setAccessibleName(action.iconText());
    button->setAccessibleDescription(action.toolTip());
    return button;
}

QToolButton* makeWideButton(QAction& action, int iconSize) {
    QToolButton* const button = makeButton(action, iconSize, Qt::ToolButtonTextBesideIcon);
    button->setSizePolicy(QSizePolicy::Expanding, QSizePolicy::Fixed);
    return button;
}

QLabel* makeCaption(const QString& text) {
    auto* const caption = new QLabel(text);
    caption->setObjectName(QStringLiteral("caption"));
    return caption;
}

QHBoxLayout* makeGroup(const Commands& commands, std::initializer_list<Command> members,
                       Qt::ToolButtonStyle style) {
    auto* const row = new QHBoxLayout;
    row->setSpacing(metrics::kGap / 2);
    for (const Command member : members)
        row->addWidget(makeButton(commands.action(member), metrics::kBarIcon, style));
    return row;
}

QVBoxLayout* makeColumn(QFrame& panel) {
    auto* const column = new QVBoxLayout(&panel);
    column->setContentsMargins(metrics::kPanelMargin, metrics::kPanelMargin, metrics::kPanelMargin,
                               metrics::kPanelMargin);
    column->setSpacing(metrics::kGap);
    return column;
}

}  // namespace

QFrame* makeToolbar(const Commands& commands) {
    auto* const bar = new QFrame;
    bar->setObjectName(QStringLiteral("toolbar"));
    bar->setFixedHeight(metrics::kToolbarHeight);
    auto* const row = new QHBoxLayout(bar);
    row->setContentsMargins(metrics::kPanelMargin, 0, metrics::kPanelMargin, 0);
    auto* const left =
        makeGroup(commands, {Command::openPicture, Command::savePicture}, Qt::ToolButtonTextBesideIcon);
    left->addStretch();
    auto* const right = makeGroup(commands, {}, Qt::ToolButtonIconOnly);
    right->addStretch();
    right->addLayout(
        makeGroup(commands, {Command::undo, Command::redo, Command::restoreImage}, Qt::ToolButtonIconOnly));
    // Both ends get the same share, which keeps the name in the middle.
    row->addLayout(left, 1);
    row->addWidget(makeCaption(QStringLiteral("Trimora")));
    row->addLayout(right, 1);
    return bar;
}

QFrame* makeToolStrip(const Commands& commands, controls::SizeControl* size) {
    auto* const strip = new QFrame;
    strip->setObjectName(QStringLiteral("toolStrip"));
    strip->setFixedWidth(metrics::kToolStripWidth);
    QVBoxLayout* const column = makeColumn(*strip);
    for (const Command tool : {Command::handTool, Command::brushTool, Command::restoreTool}) {
        QToolButton* const button =
            makeButton(commands.action(tool), metrics::kToolIcon, Qt::ToolButtonIconOnly);
        button->setProperty("tool", true);
        column->addWidget(button, 0, Qt::AlignHCenter);
    }
    column->addSpacing(metrics::kGap);
    column->addWidget(makeCaption(QStringLiteral("Size")), 0, Qt::AlignHCenter);
    column->addWidget(size);
    column->addStretch();
    return strip;
}

QFrame* makeRightPanel(const Commands& commands) {
    auto* const panel = new QFrame;
    panel->setObjectName(QStringLiteral("rightPanel"));
    panel->setFixedWidth(metrics::kRightPanelWidth);
    QVBoxLayout* const column = makeColumn(*panel);
    column->addWidget(makeCaption(QStringLiteral("Background")));
    for (const Command mode :
         {Command::transparentBackground, Command::colourBackground, Command::blurBackground}) {
        QToolButton* const button = makeWideButton(commands.action(mode), metrics::kModeIcon);
        button->setProperty("mode", true);
        column->addWidget(button);
    }
    column->addSpacing(metrics::kGap);
    column->addWidget(makeWideButton(commands.action(Command::chooseColour), metrics::kBarIcon));
    column->addStretch();
    QToolButton* const save = makeWideButton(commands.action(Command::savePicture), metrics::kBarIcon);
    save->setProperty("primary", true);
    column->addWidget(save);
    return panel;
}

}  // namespace trimora::app
