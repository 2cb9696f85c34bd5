#pragma once

#include <QFrame>
#include <functional>
#include <memory>

#include "controls/ControlContext.h"
#include "editor/Messages.h"

class QLabel;
class QPushButton;

namespace trimora::util {
class SpinningProgress;
}

namespace trimora::app {

/// What the program has to say, in one line over the lower edge of the picture, with a wheel that turns
/// while work goes on.
///
/// It disturbs nobody: it takes no room, no keyboard, and no presses but those on a line of trouble,
/// which send it away, and on the button of an offer. Notes and offers go by themselves after some
/// seconds; trouble stays, in the accent colour, and is announced to assistive technology. Lies over its
/// parent, of which it keeps to the lower edge. Main thread only.
class MessageLine final : public QFrame, public editor::Messages {
 public:
    MessageLine(const controls::ControlContext& context, QWidget* parent);
    ~MessageLine() override;

    void progress(const std::string& line) override;
    void note(const std::string& line) override;
    void trouble(const std::string& line) override;

    /// A note with a button of this title, which does `action` and sends the line away.
    void offer(const std::string& line, const std::string& title, std::function<void()> action);

    enum class Kind { progress, note, offer, trouble };
    /// Called with every line when it is shown.
    void onLine(std::function<void(Kind, const std::string&)> handler) { lineShown_ = std::move(handler); }

    /// What is shown, in full; empty while nothing is.
    [[nodiscard]] QString text() const;

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void mousePressEvent(QMouseEvent* event) override;

 private:
    void show(const std::string& line, Kind kind);
    void dismiss();
    void place();

    foundation::Scheduler& scheduler_;
    foundation::SerialQueue& mainQueue_;
    util::SpinningProgress* busy_;
    QLabel* label_;
    QPushButton* button_;
    std::function<void()> action_;  // of the button
    std::function<void(Kind, const std::string&)> lineShown_;
    QString text_;
    std::unique_ptr<foundation::Timer> fade_;
};

}  // namespace trimora::app
