#pragma once

#include <QStringList>
#include <QWidget>

namespace trimora::util {

class SpinningProgress;

/// Covers the widget that it is put into with a veil and swallows mouse clicks while work runs, with a
/// turning wheel in the middle.
///
/// It stays for as long as anybody blocks: each who does names a key, and when the last key has been
/// unblocked it leaves its parent and deletes itself. So it is made with `new`, and a pointer to it is
/// not kept past unblock(). Main thread only.
class RKBlocker final : public QWidget {
 public:
    explicit RKBlocker(QWidget* parent = nullptr);

    /// Adds the key; one that is there already counts once.
    void block(const QString& key);
    void unblock(const QString& key);

    [[nodiscard]] const QStringList& blockers() const { return blockers_; }

 protected:
    bool event(QEvent* event) override;
    bool eventFilter(QObject* watched, QEvent* event) override;
    void paintEvent(QPaintEvent* event) override;
    void resizeEvent(QResizeEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;
    void mouseMoveEvent(QMouseEvent* event) override;
    void mouseReleaseEvent(QMouseEvent* event) override;

 private:
    void coverParent();
    void removeFromParent();

    QStringList blockers_;
    SpinningProgress* prog_;
};

}  // namespace trimora::util
