#pragma once

#include <QFrame>
#include <functional>
#include <optional>
#include <string>

#include "app/GdprConsent.h"

class QPushButton;

namespace trimora::app {

/// The consent question, as a sheet at the upper edge of a widget: what is recorded, where it would go, and
/// Yes and No side by side, alike, neither of them chosen beforehand. The widget under it stays usable, and
/// Escape takes the sheet away without an answer.
///
/// Belongs to the widget that it lies on and removes itself when it is answered or taken away.
class GdprSheet final : public QFrame {
 public:
    /// `destination` is the address to which usage data would be sent. `answered` hears yes or no, once.
    GdprSheet(QWidget& under, const std::string& destination,
              std::function<void(GdprConsent::Answer)> answered);

    [[nodiscard]] QPushButton& yes() { return *yes_; }
    [[nodiscard]] QPushButton& no() { return *no_; }

    /// What is recorded and what never is, in a few sentences.
    [[nodiscard]] static QString whatIsRecorded();
    /// The host in the address, which is what a person can know.
    [[nodiscard]] static QString hostOf(const std::string& destination);

 protected:
    bool eventFilter(QObject* watched, QEvent* event) override;
    void keyPressEvent(QKeyEvent* event) override;

 private:
    QPushButton* makeButton(const QString& text, GdprConsent::Answer answer);
    void place();

    std::function<void(GdprConsent::Answer)> answered_;
    QPushButton* yes_;
    QPushButton* no_;
};

}  // namespace trimora::app
