#pragma once

#include <cstdint>
#include <functional>
#include <string>
#include <vector>

/// The calls for files that this program and its libraries make, watched and made to fail.
///
/// The program that links IoFaults.cpp defines open(), write(), fsync() and their like itself, so that
/// every library in it calls these first. They hand on to the system's unless an IoFaults object of the
/// calling thread says otherwise.
namespace trimora::reliability {

enum class IoFault : std::uint8_t {
    diskFull,     ///< what needs room on the disk answers ENOSPC
    ioError,      ///< EIO
    interrupted,  ///< what may be interrupted answers EINTR
    partly,       ///< reads and writes do half of what was asked
    kill,         ///< the process is killed right before the call
};

enum class Lasting : std::uint8_t { once, forEver };

/// Which call is to fail, and how.
struct IoPlan {
    int call = 0;  ///< the number of the call, from 1; 0: none
    IoFault fault = IoFault::ioError;
    Lasting lasting = Lasting::once;
    /// Whether the file system has files without a name; not all have.
    bool hasUnnamedFiles = true;
    /// Called before the call of that number, for what somebody else does meanwhile.
    std::function<void()> before;
};

/// One call as it went.
struct IoCall {
    std::string name;  ///< of the function, without "at" and "64": "open", "rename"
    bool needsRoom = false;
    bool ok = false;
};

/// Whether a call of that kind can fail so.
[[nodiscard]] bool canMeet(const IoCall& call, IoFault fault);

/// Watches the calls of its thread while it lives, and lets them fail as planned. One at a time.
class IoFaults {
 public:
    explicit IoFaults(IoPlan plan = {});
    ~IoFaults();
    IoFaults(const IoFaults&) = delete;
    IoFaults& operator=(const IoFaults&) = delete;

    [[nodiscard]] const std::vector<IoCall>& calls() const { return calls_; }

    /// Notes the call; returns whether it is to fail.
    [[nodiscard]] bool strikes(const IoCall& call);
    void ended(bool ok) { calls_.back().ok = ok; }
    [[nodiscard]] const IoPlan& plan() const { return plan_; }

 private:
    IoPlan plan_;
    std::vector<IoCall> calls_;
};

/// Every pairing of call, fault and duration that can come up in a run that made these calls.
[[nodiscard]] std::vector<IoPlan> plansFor(const std::vector<IoCall>& calls);

/// "ioError for ever from call 7 (fsync)".
[[nodiscard]] std::string describe(const IoPlan& plan, const std::vector<IoCall>& calls);

}  // namespace trimora::reliability
