#pragma once

#include <filesystem>
#include <map>
#include <string>

namespace trimora::analytics {

/// Keeps what can be kept of a crash, so that the next start can record it.
///
/// An exception that nobody catches is written, with its call stack, to the user defaults under
/// "kTLCrashLogKey": one entry, the session id and the text. A fatal signal (SIGSEGV, SIGBUS, SIGFPE,
/// SIGILL, SIGABRT, SIGTRAP, SIGSYS) is written as bare numbers to a file that was opened beforehand
/// ("telemetrix-<process id>.crash" beside the store), by async-signal-safe calls alone and, on the
/// thread that called install(), on a stack of its own. A later process turns such files into entries of
/// "kTLCrashLogKey". Either way the process then dies as it would have without this class, a second later at
/// the latest.
///
/// A text names no folder, person or machine: paths in what an exception says are marked out, and of the
/// files that code lies in only the names are kept.
///
/// One for the process. install() and uninstall() belong to the main thread; install() costs
/// microseconds, and what touches the disk is in prepareRecord().
class CrashCapture {
 public:
    /// What "kTLCrashLogKey" holds: session id to text.
    using Crashes = std::map<std::string, std::string>;

    /// Begins to watch this process. Does nothing where that was done before.
    static void install();

    /// Collects what crashed processes left in `folder`, and opens this one's file there. Until then a
    /// fatal signal leaves no record. Any thread, between install() and uninstall().
    static void prepareRecord(const std::filesystem::path& folder);

    /// Puts everything back as it was. Does nothing where nothing is installed.
    static void uninstall();

    /// The session that a crash from now on belongs to. Any thread; never waits for the disk.
    static void setSession(const std::string& session);

    /// The crashes that wait in the user defaults to be stored, and what is to wait there from now on. While
    /// 32 wait no more are added.
    [[nodiscard]] static Crashes pendingCrashes();
    static void setPendingCrashes(const Crashes& crashes);
};

}  // namespace trimora::analytics
