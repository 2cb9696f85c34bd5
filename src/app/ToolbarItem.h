#pragma once

#include <QList>
#include <QSize>
#include <cstdint>
#include <functional>

class QAbstractButton;
class QWidget;

namespace trimora::app {

/// One group of the toolbar: a view, where in the bar it goes, and the least and the most room that it
/// is given; none until it is told of some.
///
/// An item whose maximum is its minimum is collapsed: it keeps to its least room. One whose view is
/// hidden takes none. Only the widths count, the bar gives each view its own height. Main thread only;
/// belongs to its Toolbar.
class ToolbarItem {
 public:
    enum class Place : std::uint8_t {
        leading,
        middle,  ///< in the bar's middle where there is room; gives its room up first where there is not
        trailing
    };

    /// `changed` is called when the bar has to be laid out again.
    ToolbarItem(QWidget& view, Place place, std::function<void()> changed);

    [[nodiscard]] QWidget& view() const { return view_; }
    [[nodiscard]] Place place() const { return place_; }
    [[nodiscard]] bool isShown() const;

    [[nodiscard]] QSize minSize() const { return minSize_; }
    [[nodiscard]] QSize maxSize() const { return maxSize_; }
    void setRoom(QSize minSize, QSize maxSize);
    void setMaxSize(QSize size);

    /// The buttons that lie directly in the view, in their order.
    [[nodiscard]] QList<QAbstractButton*> buttons() const;

    /// The least width for the first `count` of the buttons: the minimum for all of them.
    [[nodiscard]] int widthFor(qsizetype count) const;

 private:
    QWidget& view_;
    const Place place_;
    QSize minSize_;
    QSize maxSize_;
    std::function<void()> changed_;
};

}  // namespace trimora::app
