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
    FirstPaint(QWidget& widget, QObject& context, std::function<void()> then)
        : QObject(&widget), context_(&context), then_(std::move(then)) {
        widget.installEventFilter(this);
    }

    bool eventFilter(QObject* watched, QEvent* event) override {
        if (event->type() == QEvent::Paint || event->type() == QEvent::UpdateRequest) {
            watched->removeEventFilter(this);
            deleteLater();
            if (context_ != nullptr)
                QTimer::singleShot(0, context_, std::move(then_));
        }
        return false;
    }

 private:
    const QPointer<QObject> context_;
    std::function<void()> then_;
};

}  // namespace

void afterFirstPaint(QWidget& widget, QObject& context, std::function<void()> then) {
    new FirstPaint(widget, context, std::move(then));
}

}  // namespace trimora::app
