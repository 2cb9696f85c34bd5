#include "app/FirstPaint.h"

#include <QEvent>
#include <QPointer>
#include <QTimer>
#include <QWidget>
#include <utility>

namespace trimora::app {
namespace {

class FirstPaint final : public QObject {
 public:
    FirstPaint(QWidget& widget, QObject& context, std::function<void()> then, std::chrono::milliseconds rest)
        : QObject(&widget), context_(&context), then_(std::move(then)), rest_(rest) {
        widget.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint || event->type() == QEvent::UpdateRequest) {
            watched->removeEventFilter(this);
            deleteLater();
            if (context_ != nullptr)
                QTimer::singleShot(rest_, context_, std::move(then_));
        }
        return false;
    }

 private:
    const QPointer<QObject> context_;
    std::function<void()> then_;
    const std::chrono::milliseconds rest_;
};

}  // namespace

void afterFirstPaint(QWidget& widget, QObject& context, std::function<void()> then,
                     std::chrono::milliseconds rest) {
    new FirstPaint(widget, context, std::move(then), rest);
}

}  // namespace trimora::app
