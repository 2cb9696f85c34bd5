#pragma once

#include <QFrame>
#include <QTimer>

#include "editor/Messages.h"

class QLabel;
class QProgressBar;

namespace trimora::app {

/// The window's bottom line: what the program has to say, a bar that moves while it works, and the
/// size of the picture. Notes go by themselves after some seconds; trouble stays, in the accent colour,
/// and is announced to assistive technology.
class StatusLine final : public QFrame, public editor::Messages {
 public:
    explicit StatusLine(QWidget* parent = nullptr);

    void progress(const std::string& line) override;
    void note(const std::string& line) override;
    void trouble(const std::string& line) override;

    /// Shown at the right end.
    void setNumbers(const QString& text);

    [[nodiscard]] QString text() const;

 private:
    enum class Kind { progress, note, trouble };
    void show(const std::string& line, Kind kind);

    QLabel* text_;
    QLabel* numbers_;
    QProgressBar* busy_;
    QTimer fade_;
};

}  // namespace trimora::app
