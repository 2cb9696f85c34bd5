#include "app/GdprConsent.h"

namespace trimora::app {
namespace {

constexpr const char* kAnswerKey = "usage_data_consent";
constexpr const char* kYes = "yes";
constexpr const char* kNo = "no";

}  // namespace

GdprConsent::Answer GdprConsent::answer() const {
    const auto kept = defaults_.objectForKey(kAnswerKey);
    if (kept == kYes)
        return Answer::yes;
    return kept == kNo ? Answer::no : Answer::none;
}

bool GdprConsent::isQuestionOpen() const {
    return answer() == Answer::none && recording_.destination().has_value();
}

void GdprConsent::begin() {
    if (answer() == Answer::no)
        return;
    recording_.record();
    if (answer() == Answer::yes)
        recording_.allowSending();
}

void GdprConsent::give(Answer answer) {
    if (answer == Answer::none)
        return;
    defaults_.setObject(kAnswerKey, answer == Answer::yes ? kYes : kNo);
    defaults_.synchronize();
    if (answer == Answer::yes) {
        recording_.record();
        recording_.allowSending();
    } else {
        recording_.stopAndErase();
    }
}

}  // namespace trimora::app
