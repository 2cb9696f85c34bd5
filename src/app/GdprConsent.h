#pragma once

#include <cstdint>

#include "analytics/info/UserDefaults.h"
#include "app/UsageRecording.h"

namespace trimora::app {

/// The person's answer to the question whether usage data may be sent, and what follows from it:
///
/// | answer | recorded on this machine | sent |
/// |---|---|---|
/// | none yet | yes | no |
/// | yes | yes | yes |
/// | no | no; what was recorded is erased | no |
///
/// The answer is kept in the user defaults ("usage_data_consent") and can change at any time. Main thread
/// only; what is referred to outlives the object.
class GdprConsent {
 public:
    enum class Answer : std::uint8_t { none, yes, no };

    GdprConsent(analytics::UserDefaults& defaults, UsageRecording& recording)
        : defaults_(defaults), recording_(recording) {}

    /// Does what follows from the answer of an earlier run; once, when the program starts.
    void begin();

    /// Keeps the person's answer, yes or no, and does what follows from it.
    void give(Answer answer);

    [[nodiscard]] Answer answer() const;

    /// Whether the person is to be asked: something could be sent and there is no answer yet.
    [[nodiscard]] bool isQuestionOpen() const;

    [[nodiscard]] UsageRecording& recording() const { return recording_; }

 private:
    analytics::UserDefaults& defaults_;
    UsageRecording& recording_;
};

}  // namespace trimora::app
