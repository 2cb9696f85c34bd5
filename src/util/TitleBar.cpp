#include "util/TitleBar.h"

#include <QEvent>
#include <QLabel>

#include "util/ActionBlock.h"

namespace trimora::util {
namespace {

constexpr const char* kTitleName = "titleOfTheBar";

/// Keeps the label over the whole strip, whose own layout places other things, and a long title in it.
class Title final : public QLabel {
 public:
    explicit Title(QWidget& titleBar) : QLabel(&titleBar) {
        setObjectName(kTitleName);
        setAlignment(Qt::AlignCenter);
        setAttribute(Qt::WA_TransparentForMouseEvents);
        setTextInteractionFlags(Qt::NoTextInteraction);
        setGeometry(titleBar.rect());
        titleBar.installEventFilter(this);
        connect(titleBar.window(), &QWidget::windowTitleChanged, this, &Title::showTitle);
        showTitle();
    }

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override {
        if (watched == parentWidget() && event->type() == QEvent::Resize)
            setGeometry(parentWidget()->rect());
        return QLabel::eventFilter(watched, event);
    }
    void resizeEvent(QResizeEvent* event) override {
        QLabel::resizeEvent(event);
        showTitle();
    }

 private:
    void showTitle() { setText(fontMetrics().elidedText(window()->windowTitle(), Qt::ElideMiddle, width())); }
};

}  // namespace

void setTitlebarColor(QWidget& titleBar, const QColor& color) {
    setBackgroundColor(titleBar, color);
}

void setTitleColor(QWidget& titleBar, const QColor& color) {
    delete titleBar.findChild<QLabel*>(kTitleName, Qt::FindDirectChildrenOnly);
    auto* const title = new Title(titleBar);
    QPalette palette = title->palette();
    palette.setColor(QPalette::WindowText, color);
    title->setPalette(palette);
    title->show();
}

}  // namespace trimora::util
