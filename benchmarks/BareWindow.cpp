// The least that a program with a window can be: what starting ours is held against.
#include <QApplication>
#include <QPainter>
#include <QWidget>

namespace {

class Window final : public QWidget {
 protected:
    void paintEvent(QPaintEvent* /*event*/) override { QPainter(this).fillRect(rect(), Qt::darkRed); }
};

}  // namespace

int main(int argc, char** argv) {
    const QApplication application(argc, argv);
    Window window;
    window.resize(1400, 900);
    window.show();
    return QApplication::exec();
}
