#pragma once

#include <memory>
#include <mutex>

#include "analytics/Installation.h"

namespace trimora::analytics {

/// The place of one shared object of the process: made on first use, kept as long as the Installation.
/// Any thread. Hold it as a function-local static.
template <typename T>
class ProcessWide {
 public:
    /// The object; `make()` returns a new one and is called when there is none.
    template <typename Make>
    T& get(Make make) {
        const std::scoped_lock lock(mutex_);
        if (object_ == nullptr) {
            std::unique_ptr<T> made(make());
            atUninstallation([this] { release(); });
            object_ = made.release();
        }
        return *object_;
    }

 private:
    void release() {
        const std::scoped_lock lock(mutex_);
        delete object_;
        object_ = nullptr;
    }

    std::mutex mutex_;
    T* object_ = nullptr;  // never released when the process ends without an uninstallation
};

}  // namespace trimora::analytics
