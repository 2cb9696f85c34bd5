#pragma once

#include <functional>
#include <memory>
#include <string>

/// Where work runs. Nothing below the host starts a thread by itself: it is handed a QueueFactory, and
/// a test hands in queues that it pumps by hand (ManualQueues.h) while the program hands in real
/// threads (ThreadQueues.h).
namespace trimora::foundation {

using Task = std::function<void()>;

/// Something that runs tasks later. Any thread may call async(); tasks must not throw.
class TaskQueue {
 public:
    virtual ~TaskQueue() = default;
    TaskQueue(const TaskQueue&) = delete;
    TaskQueue& operator=(const TaskQueue&) = delete;

    /// Hands the task over and returns at once.
    virtual void async(Task task) = 0;

 protected:
    TaskQueue() = default;
};

/// Runs its tasks one at a time, in the order in which they were handed over.
///
/// The main queue of a program is a SerialQueue whose tasks run on the main thread. The destructor of
/// a queue finishes every task already handed over.
class SerialQueue : public TaskQueue {
 public:
    /// Returns when the task, and everything handed over before it, has run. Called on the queue
    /// itself it runs the task at once.
    virtual void sync(const Task& task) = 0;

    /// Whether the caller is a task of this queue.
    [[nodiscard]] virtual bool isCurrent() const = 0;

    [[nodiscard]] virtual const std::string& label() const = 0;
};

/// Splits one job over the processor's cores and waits for all parts.
class Workers {
 public:
    virtual ~Workers() = default;
    Workers(const Workers&) = delete;
    Workers& operator=(const Workers&) = delete;

    /// How many parts are worth making: the number of parts that can run at one time.
    [[nodiscard]] virtual int width() const = 0;

    /// Calls part(0) .. part(count - 1), each once, in any order and on any threads, the caller's
    /// among them; returns when all are done. May be called from several threads and from a part.
    virtual void run(int count, const std::function<void(int)>& part) = 0;

 protected:
    Workers() = default;
};

/// Everything on the calling thread, in order.
class InlineWorkers final : public Workers {
 public:
    [[nodiscard]] int width() const override { return 1; }
    void run(int count, const std::function<void(int)>& part) override {
        for (int i = 0; i < count; ++i)
            part(i);
    }
};

/// What a floor is given to run its work on. All references live longer than whoever is given them.
class QueueFactory {
 public:
    virtual ~QueueFactory() = default;
    QueueFactory(const QueueFactory&) = delete;
    QueueFactory& operator=(const QueueFactory&) = delete;

    /// A new serial queue of its own.
    [[nodiscard]] virtual std::unique_ptr<SerialQueue> makeSerialQueue(std::string label) = 0;

    /// The queue of the main thread.
    [[nodiscard]] virtual SerialQueue& mainQueue() = 0;

    /// A shared queue for long work that nobody waits for in order (blurring, saving). Its tasks may
    /// run at the same time as each other.
    [[nodiscard]] virtual TaskQueue& backgroundQueue() = 0;

    /// Shared helpers for work that is split in bands.
    [[nodiscard]] virtual Workers& workers() = 0;

 protected:
    QueueFactory() = default;
};

}  // namespace trimora::foundation
