#pragma once

#include <mutex>
#include <string>
#include <string_view>
#include <vector>

#include "foundation/Log.h"

namespace trimora::testing {

/// Listens to the whole log, every level, while it lives; lines are kept for the test to read.
///
/// Every test has one around it (TestMain.cpp), and a line at error level fails the test unless the
/// test says beforehand that it expects errors. A test that wants to read lines makes its own inside:
/// the inner one hears first and hands on to the outer. Any thread may log.
class CapturedLog {
 public:
    struct Line {
        foundation::log::Level level;
        std::string text;
    };

    CapturedLog();
    ~CapturedLog();
    CapturedLog(const CapturedLog&) = delete;
    CapturedLog& operator=(const CapturedLog&) = delete;

    [[nodiscard]] std::vector<Line> lines() const;
    /// The texts alone, of one level or of all.
    [[nodiscard]] std::vector<std::string> texts() const;
    [[nodiscard]] std::vector<std::string> texts(foundation::log::Level level) const;
    [[nodiscard]] bool contains(std::string_view text) const;
    void clear();

 private:
    void hear(foundation::log::Level level, std::string_view text);

    mutable std::mutex mutex_;
    std::vector<Line> lines_;
    foundation::log::Sink outer_;
    foundation::log::Level outerThreshold_;
};

/// The test that calls this may log at error level from here on.
void expectErrorLines();

}  // namespace trimora::testing
