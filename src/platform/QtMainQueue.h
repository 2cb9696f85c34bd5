#pragma once

#include <QObject>
#include <string>

#include "foundation/Queues.h"

namespace trimora::platform {

/// The main queue of a Qt program: tasks run on the main thread, between the events of its loop, in
/// the order in which they were handed over.
///
/// Made and destroyed on the main thread, after the QCoreApplication and before it goes. sync() from
/// another thread needs a running event loop. The destructor runs what was handed over before.
class QtMainQueue final : public foundation::SerialQueue {
 public:
    QtMainQueue() = default;
    ~QtMainQueue() override;

    void async(foundation::Task task) override;
    void sync(const foundation::Task& task) override;
    [[nodiscard]] bool isCurrent() const override;
    [[nodiscard]] const std::string& label() const override { return label_; }

 private:
    const std::string label_ = "main";
    QObject receiver_;
};

}  // namespace trimora::platform
