#include "foundation/ThreadQueues.h"

#include <pthread.h>

#include <algorithm>
#include <memory>
#include <utility>

#include "foundation/SignalStack.h"

namespace trimora::foundation {
namespace {

constexpr int kBackgroundThreads = 2;
constexpr std::size_t kThreadNameLimit = 15;

void nameThisThread(const std::string& label) {
    pthread_setname_np(pthread_self(), label.substr(0, kThreadNameLimit).c_str());
}

/// Takes tasks until the queue is closing and empty.
void serve(std::mutex& mutex, std::condition_variable& wake, std::deque<Task>& tasks, const bool& closing) {
    std::unique_lock lock(mutex);
    for (;;) {
        wake.wait(lock, [&] { return closing || !tasks.empty(); });
        if (tasks.empty())
            return;
        Task task = std::move(tasks.front());
        tasks.pop_front();
        lock.unlock();
        task();
        task = nullptr;  // what it captured is released before the lock is taken again
        lock.lock();
    }
}

}  // namespace

ThreadQueue::ThreadQueue(std::string label) : label_(std::move(label)), thread_([this] { work(); }) {}

ThreadQueue::~ThreadQueue() {
    {
        const std::scoped_lock lock(mutex_);
        closing_ = true;
    }
    wake_.notify_all();
    thread_.join();
}

void ThreadQueue::work() {
    const SignalStack stack;
    nameThisThread(label_);
    serve(mutex_, wake_, tasks_, closing_);
}

void ThreadQueue::async(Task task) {
    {
        const std::scoped_lock lock(mutex_);
        tasks_.push_back(std::move(task));
    }
    wake_.notify_one();
}

void ThreadQueue::sync(const Task& task) {
    if (isCurrent()) {
        task();
        return;
    }
    std::mutex done;
    std::condition_variable doneWake;
    bool finished = false;
    async([&] {
        task();
        const std::scoped_lock lock(done);
        finished = true;
        doneWake.notify_one();
    });
    std::unique_lock lock(done);
    doneWake.wait(lock, [&] { return finished; });
}

bool ThreadQueue::isCurrent() const {
    return std::this_thread::get_id() == thread_.get_id();
}

ThreadPoolQueue::ThreadPoolQueue(std::string label, int threads) : label_(std::move(label)) {
    for (int i = 0; i < threads; ++i)
        threads_.emplace_back([this] { work(); });
}

ThreadPoolQueue::~ThreadPoolQueue() {
    {
        const std::scoped_lock lock(mutex_);
        closing_ = true;
    }
    wake_.notify_all();
    for (std::thread& thread : threads_)
        thread.join();
}

void ThreadPoolQueue::work() {
    const SignalStack stack;
    nameThisThread(label_);
    serve(mutex_, wake_, tasks_, closing_);
}

void ThreadPoolQueue::async(Task task) {
    {
        const std::scoped_lock lock(mutex_);
        tasks_.push_back(std::move(task));
    }
    wake_.notify_one();
}

ThreadWorkers::ThreadWorkers(int width)
    : width_(width > 0 ? width : std::max(1, static_cast<int>(std::thread::hardware_concurrency()))),
      pool_("workers", width_ - 1) {}

void ThreadWorkers::run(int count, const std::function<void(int)>& part) {
    // Shared by all helpers of one call; a helper that comes late finds no part left and touches
    // nothing but this record, so the caller need not wait for it.
    struct Job {
        std::function<void(int)> part;
        int count = 0;
        std::atomic<int> next = 0;
        std::mutex mutex;
        std::condition_variable allDone;
        int done = 0;

        void help() {
            int finishedHere = 0;
            for (int i = next.fetch_add(1); i < count; i = next.fetch_add(1)) {
                part(i);
                ++finishedHere;
            }
            const std::scoped_lock lock(mutex);
            done += finishedHere;
            if (done == count)
                allDone.notify_all();
        }
    };
    if (count <= 0)
        return;
    const auto job = std::make_shared<Job>();
    job->part = part;
    job->count = count;
    const int helpers = std::min(width_, count) - 1;
    for (int i = 0; i < helpers; ++i)
        pool_.async([job] { job->help(); });
    job->help();
    std::unique_lock lock(job->mutex);
    job->allDone.wait(lock, [&] { return job->done == job->count; });
}

ThreadQueueFactory::ThreadQueueFactory(SerialQueue& mainQueue)
    : mainQueue_(mainQueue), background_("background", kBackgroundThreads) {}

std::unique_ptr<SerialQueue> ThreadQueueFactory::makeSerialQueue(std::string label) {
    return std::make_unique<ThreadQueue>(std::move(label));
}

}  // namespace trimora::foundation
