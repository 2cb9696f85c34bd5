#pragma once

#include <map>
#include <memory>
#include <optional>
#include <random>
#include <set>
#include <string>
#include <vector>

#include "analytics/session/HttpTransport.h"
#include "foundation/Clock.h"
#include "foundation/Queues.h"

namespace trimora::reliability {

/// One way in which a request can end.
struct NetworkFault {
    int answer;         ///< a status, or the number of the error that `error` names
    const char* error;  ///< null where there was an answer
    bool arrives;       ///< whether the service has got all of the request
    double seconds;     ///< until the answer, or until it is clear that there is none
};

/// Thirty-two of them; none counts as delivered.
[[nodiscard]] const std::vector<NetworkFault>& networkFaults();

/// A service and the network before it, on a clock that the test moves. Answers as the test wants, keeps
/// what has come in, and notices where one session is under way twice at a time.
class BadNetwork final : public analytics::HttpTransport {
 public:
    BadNetwork(foundation::Scheduler& scheduler, foundation::TaskQueue& queue)
        : scheduler_(scheduler), queue_(queue) {}

    void send(analytics::HttpRequest request, Completion completion) override;
    void cancelAll() override;

    /// How many of a hundred requests fail, by chance from `random`.
    void failBy(int percent, std::mt19937_64& random) {
        percent_ = percent;
        random_ = &random;
    }
    void becomeSane() { percent_ = 0; }
    /// The fault that requests with this text in their body always meet, whatever the weather.
    void poison(const std::string& text, const NetworkFault& fault) { poison_.insert_or_assign(text, fault); }

    /// Bodies that the service answered 200, or took and could not say so, by session.
    [[nodiscard]] const std::map<std::string, std::vector<std::string>>& arrived() const { return arrived_; }
    /// Sessions whose requests were answered 200.
    [[nodiscard]] const std::set<std::string>& accepted() const { return accepted_; }
    [[nodiscard]] int timesTwiceInFlight() const { return twice_; }
    /// When the session was posted, in seconds of the clock.
    [[nodiscard]] const std::map<std::string, std::vector<double>>& posts() const { return posts_; }
    /// All that went over the wire.
    [[nodiscard]] const std::string& wire() const { return wire_; }
    void setClock(const foundation::Clock& clock) { clock_ = &clock; }

 private:
    struct UnderWay {
        std::string session;
        Completion completion;
        std::unique_ptr<foundation::Timer> timer;
    };
    [[nodiscard]] NetworkFault fateOf(const analytics::HttpRequest& request);
    void answer(int number, const Outcome& outcome);

    foundation::Scheduler& scheduler_;
    foundation::TaskQueue& queue_;
    const foundation::Clock* clock_ = nullptr;
    std::mt19937_64* random_ = nullptr;
    int percent_ = 0;
    std::map<std::string, NetworkFault> poison_;
    std::map<int, UnderWay> underWay_;
    int number_ = 0;
    int twice_ = 0;
    std::map<std::string, std::vector<std::string>> arrived_;
    std::map<std::string, std::vector<double>> posts_;
    std::set<std::string> accepted_;
    std::string wire_;
};

}  // namespace trimora::reliability
