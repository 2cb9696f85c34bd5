#pragma once

#include <QObject>
#include <filesystem>
#include <functional>
#include <vector>

class QDropEvent;
class QWidget;

namespace trimora::editor {

/// Lets local files be dropped on a widget and on everything in it that takes no drops of its own.
///
/// A drag that holds no local file is refused while it hovers. A drop hands over every local file, in
/// the order of the drag. Lives no longer than the widget, which owns it. Main thread only.
class DropTarget final : public QObject {
 public:
    using Dropped = std::function<void(std::vector<std::filesystem::path>)>;
    /// Called with true while files hover over the widget, with false when they leave or are dropped.
    using Hovered = std::function<void(bool)>;

    DropTarget(QWidget& widget, Dropped dropped, Hovered hovered = {});

    bool eventFilter(QObject* watched, QEvent* event) override;

 private:
    bool offer(QDropEvent& drag);
    void hover(bool over);

    Dropped dropped_;
    Hovered hovered_;
};

}  // namespace trimora::editor
