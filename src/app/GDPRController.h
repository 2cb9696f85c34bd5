#pragma once

#include <QObject>
#include <QPointer>
#include <functional>
#include <string>

#include "app/GdprConsent.h"

class QWidget;

namespace trimora::app {

class GdprSheet;
class UsageDataDialog;

/// The privacy component as the application's delegate knows it: asks the person at the start, knows the
/// privacy policy's address, and shows what is recorded. Main thread only.
class GDPRController {
 public:
    struct Services {
        GdprConsent& consent;            ///< outlives the controller
        std::function<QWidget*()> over;  ///< what the question lies on; null as long as there is no window
        std::string privacyUrl;
        std::function<int()> top = {};  ///< how many points below its upper edge; none: 0
    };

    explicit GDPRController(Services services);
    ~GDPRController();
    GDPRController(const GDPRController&) = delete;
    GDPRController& operator=(const GDPRController&) = delete;

    /// Once at launch. Where the person has not answered yet and something could be sent, the question comes
    /// when the window has been painted; otherwise nothing happens. Never waits.
    void start();

    /// The address of the privacy policy.
    [[nodiscard]] std::string getPrivacyUrl() const { return services_.privacyUrl; }

    /// Brings up the dialog with the answer and the record, or the one that is open already.
    void showUsageData();

    [[nodiscard]] GdprSheet* sheet() const;
    [[nodiscard]] UsageDataDialog* usageData() const;

 private:
    void ask();

    const Services services_;
    QObject receiver_;  // of what comes back from the event loop
    QPointer<GdprSheet> sheet_;
    QPointer<UsageDataDialog> usageData_;
};

}  // namespace trimora::app
