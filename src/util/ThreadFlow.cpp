#include "util/ThreadFlow.h"

#include <algorithm>
#include <utility>

namespace trimora::util {

namespace {

// The watch begins shortly before the delay is over and then looks often, in shares of the delay.
constexpr double kFirstLook = 0.95;
constexpr double kLookAgain = 0.01;
constexpr double kShortestWait = 0.001;  // seconds; a runner without delay must not spin

}  // namespace

ThreadFlow::ThreadFlow(std::string name, float delay, foundation::Task completion,
                       foundation::QueueFactory& queues, foundation::Scheduler& scheduler,
                       const foundation::Clock& clock)
    : name_(std::move(name)),
      delay_(delay),
      completion_(std::move(completion)),
      main_(queues.mainQueue()),
      scheduler_(scheduler),
      clock_(clock),
      operQueue_(OperationQueue::widthOfThisMachine()),
      serialQueue_(queues.makeSerialQueue({})) {}

ThreadFlow::~ThreadFlow() {
    serialQueue_->sync([this] {
        closed_ = true;
        timer_.reset();
    });
}

void ThreadFlow::execute(foundation::Task work) {
    serialQueue_->sync([this] { timer_.reset(); });
    operQueue_.addOperation([this, work = std::move(work)](OperationQueue::Finished finished) {
        main_.async([weak = weak_from_this(), work, finished = std::move(finished)] {
            const auto self = weak.lock();
            if (!self)
                return;
            if (work)
                work();
            self->serialQueue_->async([flow = self.get(), finished] {
                flow->settle();
                finished();
            });
        });
    });
}

/// After each work: only the last one of those that are queued starts the wait for quiet.
void ThreadFlow::settle() {
    if (closed_)
        return;
    if (operQueue_.operationCount() > 1) {
        timer_.reset();
        return;
    }
    lastDate_ = clock_.seconds();
    if (!timer_)
        watch();
}

void ThreadFlow::watch() {
    const double first = std::max(kFirstLook * static_cast<double>(delay_), kShortestWait);
    timer_ = scheduler_.after(first, *serialQueue_, [this] {
        const double again = std::max(kLookAgain * static_cast<double>(delay_), kShortestWait);
        timer_ = scheduler_.every(again, *serialQueue_, [this] { completeIfQuiet(); });
        completeIfQuiet();
    });
}

void ThreadFlow::completeIfQuiet() {
    const bool quiet = clock_.seconds() - lastDate_ > static_cast<double>(delay_);
    if (!quiet || operQueue_.operationCount() > 0)
        return;
    timer_.reset();
    main_.async([weak = weak_from_this()] {
        const auto self = weak.lock();
        if (self && self->completion_)
            self->completion_();
    });
}

ThreadFlow& ThreadFlowRegistry::flowNamed(std::string_view name, float delay, foundation::Task completion) {
    const std::scoped_lock lock(mutex_);
    const auto found = flows_.find(name);
    if (found != flows_.end())
        return *found->second;
    auto made = std::make_shared<ThreadFlow>(std::string(name), delay, std::move(completion), queues_,
                                             scheduler_, clock_);
    return *flows_.emplace(name, std::move(made)).first->second;
}

}  // namespace trimora::util
