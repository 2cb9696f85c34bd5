#pragma once

#include <QList>
#include <QMenu>
#include <QWidget>
#include <memory>
#include <vector>

#include "app/ToolbarItem.h"
#include "controls/ControlContext.h"

namespace trimora::controls {
class TopBarButton;
}

namespace trimora::app {

/// The strip along the top of the window, which holds the toolbar's items.
///
/// Leading items stand at its left, trailing ones at its right (the other way round in languages that
/// are written so), the middle one in the middle. Each gets its minimum, and of what is left up to its
/// maximum. Where even the minima do not fit, the middle item shrinks first; then buttons leave from
/// the trailing end and are found in the menu of a "More" button, with the same names and states.
///
/// Owns the views of its items. Main thread only.
class Toolbar final : public QWidget {
 public:
    explicit Toolbar(const controls::ControlContext& context, QWidget* parent = nullptr);

    /// Takes the view over. The item lives as long as the bar.
    ToolbarItem& addItem(QWidget* view, ToolbarItem::Place place);

    /// The buttons that had no room, in their order.
    [[nodiscard]] const QList<QAbstractButton*>& overflowed() const { return overflowed_; }
    /// Shown while there are such buttons.
    [[nodiscard]] QAbstractButton& moreButton() const;
    /// What that button opens.
    [[nodiscard]] QMenu& moreMenu() { return moreMenu_; }

 protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    struct Span {
        int from = 0;
        int to = 0;
    };

    void layOut();
    void chooseButtons(int room);
    [[nodiscard]] int neededFor(qsizetype buttons) const;
    [[nodiscard]] Span placeSides(Span room);
    void placeMiddle(Span room);
    void put(QWidget& view, int left, int width) const;
    void fillMoreMenu();
    [[nodiscard]] QList<QAbstractButton*> sideButtons() const;
    [[nodiscard]] int leastWidth(const ToolbarItem& item) const;

    std::vector<std::unique_ptr<ToolbarItem>> items_;
    controls::TopBarButton* more_;
    QMenu moreMenu_;
    QList<QAbstractButton*> overflowed_;
};

}  // namespace trimora::app
