#pragma once

#include <string>

namespace trimora::editor {

/// Where the flows of the editor speak to the person; one line at a time, a new one replaces the one
/// before. Main thread only. A line begins with a capital and has no full stop.
class Messages {
 public:
    virtual ~Messages() = default;
    Messages(const Messages&) = delete;
    Messages& operator=(const Messages&) = delete;

    /// Work has begun that takes a moment; the line stays until the next.
    virtual void progress(const std::string& line) = 0;

    /// Something is done, or is to be known; the line may go by itself after a while.
    virtual void note(const std::string& line) = 0;

    /// Something could not be done; the line stays until the next.
    virtual void trouble(const std::string& line) = 0;

 protected:
    Messages() = default;
};

}  // namespace trimora::editor
