#include "BadNetwork.h"

#include <algorithm>
#include <utility>

namespace trimora::reliability {

using analytics::HttpRequest;
using analytics::TelemetrixError;

namespace {

std::vector<NetworkFault> madeFaults() {
    std::vector<NetworkFault> faults = {
        {6, "no such host", false, 0.1},         {7, "connection refused", false, 0.01},
        {28, "no answer in time", false, 30},    {28, "answer too late", true, 30},
        {55, "cut off while sending", false, 3}, {56, "cut off before the answer", true, 2},
        {18, "answer cut short", true, 1},       {60, "certificate not trusted", false, 0.5},
        {97, "proxy refuses", false, 0.5}};
    // 400 is missing: it is the service's word that the data is worth nothing.
    for (const int status : {100, 201, 202, 204, 206, 301, 302, 303, 307, 308, 401, 403,
                             404, 405, 407, 408, 413, 429, 500, 502, 503, 504, 511})
        faults.push_back({status, nullptr, status < 300, 0.2});
    return faults;
}

std::string sessionOf(const HttpRequest& request) {
    const std::string& cookie = request.headers.front().second;
    return cookie.substr(4, cookie.find(';') - 4);
}

}  // namespace

const std::vector<NetworkFault>& networkFaults() {
    static const std::vector<NetworkFault> faults = madeFaults();
    return faults;
}

NetworkFault BadNetwork::fateOf(const HttpRequest& request) {
    for (const auto& [text, fault] : poison_) {
        if (request.body.find(text) != std::string::npos)
            return fault;
    }
    if (percent_ > 0 && static_cast<int>((*random_)() % 100) < percent_)
        return networkFaults()[(*random_)() % networkFaults().size()];
    return {200, nullptr, true, 0.2};
}

void BadNetwork::send(HttpRequest request, Completion completion) {
    const std::string session = sessionOf(request);
    twice_ += std::any_of(underWay_.begin(), underWay_.end(),
                          [&](const auto& one) { return one.second.session == session; })
                  ? 1
                  : 0;
    const NetworkFault fate = fateOf(request);
    wire_ += request.url + request.body;
    for (const auto& [name, value] : request.headers)
        wire_ += name + value;
    if (clock_ != nullptr)
        posts_[session].push_back(clock_->seconds());
    if (fate.arrives)
        arrived_[session].push_back(request.body);
    const int number = ++number_;
    underWay_[number] = {session, std::move(completion), nullptr};
    underWay_[number].timer = scheduler_.after(fate.seconds, queue_, [this, number, fate] {
        answer(number, fate.error != nullptr
                           ? Outcome(TelemetrixError{"TestTransport", fate.answer, fate.error})
                           : Outcome(fate.answer));
    });
}

void BadNetwork::answer(int number, const Outcome& outcome) {
    auto node = underWay_.extract(number);
    if (node.empty())
        return;
    if (const int* const status = std::get_if<int>(&outcome); status != nullptr && *status == 200)
        accepted_.insert(node.mapped().session);
    node.mapped().completion(outcome);
}

void BadNetwork::cancelAll() {
    while (!underWay_.empty())
        answer(underWay_.begin()->first, TelemetrixError{"TestTransport", 42, "cancelled"});
}

}  // namespace trimora::reliability
