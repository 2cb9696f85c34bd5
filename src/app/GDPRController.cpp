#include "app/GDPRController.h"

#include <QWidget>
#include <utility>

#include "app/FirstPaint.h"
#include "app/GdprSheet.h"
#include "app/UsageDataDialog.h"

namespace trimora::app {

GDPRController::GDPRController(Services services) : services_(std::move(services)) {}

GDPRController::~GDPRController() {
    delete sheet_;
    delete usageData_;
}

void GDPRController::start() {
    QWidget* const over = services_.over();
    if (over == nullptr || !services_.consent.isQuestionOpen())
        return;
    afterFirstPaint(*over, receiver_, [this] { ask(); });
}

void GDPRController::ask() {
    QWidget* const over = services_.over();
    if (over == nullptr || sheet_ != nullptr || !services_.consent.isQuestionOpen())
        return;
    sheet_ =
        new GdprSheet({*over, services_.top}, services_.consent.recording().destination().value_or(""),
                      [&consent = services_.consent](GdprConsent::Answer answer) { consent.give(answer); });
}

void GDPRController::showUsageData() {
    if (usageData_ == nullptr) {
        usageData_ = new UsageDataDialog(
            services_.consent, [this] { delete sheet_; }, services_.over());
        usageData_->setAttribute(Qt::WA_DeleteOnClose);
        usageData_->show();
    }
    usageData_->activateWindow();
}

GdprSheet* GDPRController::sheet() const {
    return sheet_;
}

UsageDataDialog* GDPRController::usageData() const {
    return usageData_;
}

}  // namespace trimora::app
