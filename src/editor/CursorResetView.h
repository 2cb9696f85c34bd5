#pragma once

#include <QWidget>

#include "foundation/NotificationCenter.h"

namespace trimora::editor {

/// A strip that gives the pointer its arrow back on its way from the cut view to the panels.
///
/// The arrow is set as the pointer comes in; as it leaves, "rk.cutView.needsCursorUpdate" asks the cut view
/// for its brush cursor again. Main thread only; the centre outlives the view.
class CursorResetView : public QWidget {
 public:
    explicit CursorResetView(foundation::NotificationCenter& notifications, QWidget* parent = nullptr)
        : QWidget(parent), notifications_(notifications) {}

 protected:
    void enterEvent(QEnterEvent* event) override;
    void leaveEvent(QEvent* event) override;

 private:
    foundation::NotificationCenter& notifications_;
};

}  // namespace trimora::editor
