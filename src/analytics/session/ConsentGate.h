#pragma once

#include <atomic>

#include "analytics/session/HttpTransport.h"

namespace trimora::analytics {

/// Lets nothing leave the machine before the person has agreed: a transport in front of the real one.
///
/// The application hands this to the library in place of the real transport and tells it the person's
/// answer. Until the person agrees every post is answered with an error of the domain kDomain, so
/// sessions wait in the store. Agreeing sends nothing by itself; the library's next try goes through.
/// Any thread.
class ConsentGate final : public HttpTransport {
 public:
    static constexpr const char* kDomain = "TelemetrixConsentErrorDomain";

    /// `transport` must outlive the gate. The gate is closed.
    explicit ConsentGate(HttpTransport& transport) : transport_(transport) {}

    /// The person agreed.
    void open() { isOpen_ = true; }

    /// The person refused, or takes an agreement back: closes the gate, calls off what is under way,
    /// stops all recording (Telemetrix::resetInnerId()) and empties the store. Recording begins anew
    /// with the next Telemetrix::startSession(). Only while the library is installed; returns before
    /// the store is emptied.
    void refuse();

    /// Empties the store at the person's wish, calling off what is under way. A recording that runs goes on
    /// in a new session. Only while the library is installed; returns before the store is emptied.
    void erase();

    [[nodiscard]] bool isOpen() const { return isOpen_; }

    void send(HttpRequest request, Completion completion) override;
    void cancelAll() override { transport_.cancelAll(); }

 private:
    void emptyStore();

    HttpTransport& transport_;
    std::atomic<bool> isOpen_ = false;
};

}  // namespace trimora::analytics
