#pragma once

#include <array>
#include <csignal>

namespace trimora::foundation {

/// A stack for the signal handlers of one thread, so that they can run, and tell of it, where the thread's
/// own stack has overflowed. Lies at the beginning of the thread that it is for and lives as long as that
/// works. Where the thread has such a stack already, that one stays.
class SignalStack {
 public:
    SignalStack() {
        stack_t before = {};
        if (::sigaltstack(nullptr, &before) != 0 || (before.ss_flags & SS_DISABLE) == 0)
            return;
        stack_t ours = {};
        ours.ss_sp = room_.data();
        ours.ss_size = room_.size();
        isInUse_ = ::sigaltstack(&ours, nullptr) == 0;
    }
    ~SignalStack() {
        stack_t none = {};
        none.ss_flags = SS_DISABLE;
        if (isInUse_)
            ::sigaltstack(&none, nullptr);
    }
    SignalStack(const SignalStack&) = delete;
    SignalStack& operator=(const SignalStack&) = delete;

 private:
    alignas(16) std::array<char, 64 * 1024> room_;  // not filled: pages that nobody touches cost nothing
    bool isInUse_ = false;
};

}  // namespace trimora::foundation
