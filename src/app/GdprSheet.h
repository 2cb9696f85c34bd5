#pragma once

#include <QWidget>
#include <functional>
#include <optional>
#include <string>

#include "app/GdprConsent.h"

class QPushButton;

namespace trimora::app {

/// The consent question, as a sheet that hangs in a widget: what is recorded, where it would go, and
/// Yes and No side by side, alike, neither of them chosen beforehand. The widget under it stays usable, and
/// Escape takes the sheet away without an answer.
///
/// Belongs to the widget that it lies on and removes itself when it is answered or taken away.
class GdprSheet final : public QWidget {
 public:
    /// What the sheet lies on, and how many points below its upper edge it hangs; no function: 0.
    struct Place {
        QWidget& over;
        std::function<int()> top;
    };

    /// `destination` is the address to which usage data would be sent. `answered` hears yes or no, once.
    GdprSheet(const Place& place, const std::string& destination,
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
    void paintEvent(QPaintEvent* event) override;

 private:
    QPushButton* makeButton(const QString& text, GdprConsent::Answer answer);
    void hang();

    std::function<int()> top_;
    std::function<void(GdprConsent::Answer)> answered_;
    QPushButton* yes_;
    QPushButton* no_;
};

}  // namespace trimora::app
