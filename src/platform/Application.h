#pragma once

#include <QApplication>

namespace trimora::platform {

/// The toolkit's application object, which outlives missing memory: an event whose handling ends in
/// std::bad_alloc counts as not handled, and the program goes on with the next one.
///
/// The innermost event that is being handled is the one that ends, so that the toolkit finishes those around
/// it. Whatever else is thrown goes on. Main thread only.
class Application final : public QApplication {
    Q_OBJECT

 public:
    using QApplication::QApplication;

    /// The one of this process; none where it has another.
    [[nodiscard]] static Application* running() { return qobject_cast<Application*>(instance()); }

    bool notify(QObject* receiver, QEvent* event) override;

 signals:
    /// An event was not handled. Once for all events within one that the system brought, when that is over;
    /// where there is no memory even for what is connected here, after a later one.
    void memoryMissing();

 private:
    bool notifyAsFarAsMemoryGoes(QObject* receiver, QEvent* event);

    int depth_ = 0;  // of events within events
    bool isUntold_ = false;
};

}  // namespace trimora::platform
