#pragma once

#include <QWidget>

namespace trimora::editor {

/// What fills the empty view: a dashed frame, a picture and two lines that say how to begin.
///
/// It lies over its parent and covers all of it, lets every press through to it, and brightens while
/// files hover over the window. Main thread only.
class EmptyHint final : public QWidget {
 public:
    explicit EmptyHint(QWidget* parent);

    void setHighlighted(bool highlighted);

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;

 private:
    bool highlighted_ = false;
};

}  // namespace trimora::editor
