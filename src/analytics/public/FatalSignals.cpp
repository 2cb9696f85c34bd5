#include "analytics/public/FatalSignals.h"

#include <fcntl.h>
#include <poll.h>
#include <pthread.h>
#include <sys/uio.h>
#include <ucontext.h>
#include <unistd.h>

#include <algorithm>
#include <array>
#include <atomic>
#include <cerrno>
#include <csignal>
#include <cstdint>
#include <cstring>
#include <mutex>

// Everything from recordCrash() down to what it calls runs inside a signal handler: no allocation, no
// lock, no library call that POSIX does not name async-signal-safe (process_vm_readv is a bare system
// call).
namespace trimora::analytics {
namespace {

constexpr std::array kSignals = {SIGSEGV, SIGBUS, SIGFPE, SIGILL, SIGABRT, SIGTRAP, SIGSYS};
constexpr std::size_t kStackSize = 64 * 1024;
constexpr std::size_t kSessionSize = 64;
constexpr int kMostFrames = 64;

// Where the record goes, or one of these.
constexpr int kNoRecord = -1;
constexpr int kBeingWritten = -2;
std::atomic<int> recordFile = kNoRecord;
std::array<struct sigaction, kSignals.size()> before;
alignas(16) std::array<char, kStackSize> handlerStack;

// The text in use is never written to: a handler that interrupts setSession() reads the other one.
std::mutex sessionMutex;
std::array<std::array<char, kSessionSize>, 2> sessionTexts;
std::atomic<int> sessionInUse = 0;

void writeBytes(int file, const char* bytes, std::size_t size) {
    while (size > 0) {
        const ssize_t written = ::write(file, bytes, size);
        if (written < 0 && errno == EINTR)
            continue;
        if (written <= 0)
            return;
        bytes += written;
        size -= static_cast<std::size_t>(written);
    }
}

void writeText(int file, const char* text) {
    writeBytes(file, text, std::strlen(text));
}

void writeLine(int file, const char* word, const char* value) {
    writeText(file, word);
    writeText(file, " ");
    writeText(file, value);
    writeText(file, "\n");
}

void writeLine(int file, const char* word, std::uint64_t value, unsigned base) {
    char digits[2 + 64 + 1];
    char* at = digits + sizeof digits - 1;
    *at = '\0';
    do {
        *--at = "0123456789abcdef"[value % base];
        value /= base;
    } while (value != 0);
    if (base == 16) {
        *--at = 'x';
        *--at = '0';
    }
    writeLine(file, word, at);
}

/// Where the interrupted code was, and the innermost frame of its stack; zeros on an unknown processor.
struct Frame {
    std::uintptr_t next = 0;
    std::uintptr_t address = 0;
};

Frame interruptedFrame(const void* context) {
    const auto& machine = static_cast<const ucontext_t*>(context)->uc_mcontext;
#if defined(__x86_64__)
    return {static_cast<std::uintptr_t>(machine.gregs[REG_RBP]),
            static_cast<std::uintptr_t>(machine.gregs[REG_RIP])};
#elif defined(__aarch64__)
    return {machine.regs[29], machine.pc};
#else
    (void)machine;
    return {};
#endif
}

/// Reads memory that may not be there.
bool readMemory(std::uintptr_t from, void* to, std::size_t size) {
    struct iovec local = {to, size};
    // NOLINTNEXTLINE(performance-no-int-to-ptr): an address that was worked out, not one that was taken
    struct iovec remote = {reinterpret_cast<void*>(from), size};
    return ::process_vm_readv(::getpid(), &local, 1, &remote, 1, 0) == static_cast<ssize_t>(size);
}

/// Follows the chain of frame pointers as far as there is one.
void writeFrames(int file, Frame frame) {
    for (int count = 0; count < kMostFrames && frame.address != 0; ++count) {
        writeLine(file, "frame", frame.address, 16);
        const std::uintptr_t at = frame.next;
        if (at == 0 || at % sizeof(void*) != 0 || !readMemory(at, &frame, sizeof frame) || frame.next <= at)
            return;
    }
}

/// Where code lies in memory, by the map's own lines, but with the names of files alone: their folders may
/// bear a person's name.
class MemoryMap {
 public:
    void copyTo(int file) {
        writeText(file, "maps\n");
        const int maps = ::open("/proc/self/maps", O_RDONLY | O_CLOEXEC);
        if (maps < 0)
            return;
        char part[1024];
        for (ssize_t size = 1; size > 0;) {
            size = ::read(maps, part, sizeof part);
            for (ssize_t i = 0; i < size; ++i)
                take(file, part[i]);
        }
        ::close(maps);
    }

 private:
    void take(int file, char next) {
        if (next == '/') {
            path_ = path_ == 0 ? length_ : path_;
            length_ = path_;
        } else if (next != '\n') {
            if (length_ < line_.size())
                line_[length_++] = next;
        } else {
            finish(file);
        }
    }
    /// "begin-end permissions offset device inode    file"
    void finish(int file) {
        const char* const begin = line_.data();
        const char* const end = begin + length_;
        const char* const permissions = std::find(begin, end, ' ');
        if (end - permissions > 3 && permissions[3] == 'x') {
            writeBytes(file, line_.data(), length_);
            writeText(file, "\n");
        }
        length_ = 0;
        path_ = 0;
    }

    std::array<char, 512> line_ = {};
    std::size_t length_ = 0;
    std::size_t path_ = 0;  // where the file begins in the line; 0 before it does
};

void giveBack(int number) {
    const auto place = std::find(kSignals.begin(), kSignals.end(), number);
    struct sigaction previous = before[static_cast<std::size_t>(place - kSignals.begin())];
    if (previous.sa_handler == SIG_IGN)
        previous.sa_handler = SIG_DFL;
    ::sigaction(number, &previous, nullptr);
}

/// The file to write to, for the first of several threads that crash at a time; nothing for the others.
int takeRecordFile() {
    int file = recordFile.load();
    while (file >= 0 && !recordFile.compare_exchange_weak(file, kBeingWritten)) {
    }
    return file;
}

/// A thread that crashes meanwhile would take the process with it, and the half of the record that is
/// missing.
void letOtherThreadFinish() {
    constexpr int kMilliseconds = 10;
    for (int waits = 100; waits > 0 && recordFile == kBeingWritten; --waits)
        ::poll(nullptr, 0, kMilliseconds);
}

void writeRecord(int file, int number, const siginfo_t& info, const void* context) {
    writeLine(file, "session", sessionTexts[static_cast<std::size_t>(sessionInUse.load())].data());
    writeLine(file, "signal", static_cast<std::uint64_t>(number), 10);
    writeLine(file, "code", static_cast<std::uint64_t>(std::max(info.si_code, 0)), 10);
    writeLine(file, "address", reinterpret_cast<std::uintptr_t>(info.si_addr), 16);
    writeFrames(file, interruptedFrame(context));
    MemoryMap().copyTo(file);
}

void recordCrash(int number, siginfo_t* info, void* context) {
    if (const int file = takeRecordFile(); file >= 0) {
        writeRecord(file, number, *info, context);
        recordFile = kNoRecord;
    } else {
        letOtherThreadFinish();
    }
    // A fault is raised again when the interrupted code goes on; what a process sent, and what the processor
    // raises behind the code, is sent again, to be delivered when this handler returns.
    giveBack(number);
    if (info->si_code <= 0 || number == SIGTRAP || number == SIGSYS)
        ::raise(number);
}

}  // namespace

void FatalSignals::handle() {
    stack_t stack = {};
    if (::sigaltstack(nullptr, &stack) == 0 && (stack.ss_flags & SS_DISABLE) != 0) {
        stack = {};
        stack.ss_sp = handlerStack.data();
        stack.ss_size = handlerStack.size();
        ::sigaltstack(&stack, nullptr);
    }
    struct sigaction action = {};
    action.sa_sigaction = recordCrash;
    action.sa_flags = SA_SIGINFO | SA_ONSTACK;
    // A crash within the handler ends the process there and then.
    ::sigemptyset(&action.sa_mask);
    for (const int number : kSignals)
        ::sigaddset(&action.sa_mask, number);
    for (std::size_t i = 0; i < kSignals.size(); ++i)
        ::sigaction(kSignals[i], &action, &before[i]);
}

void FatalSignals::writeTo(int file) {
    recordFile = file;
}

void FatalSignals::release() {
    recordFile = kNoRecord;
    for (std::size_t i = 0; i < kSignals.size(); ++i)
        ::sigaction(kSignals[i], &before[i], nullptr);
}

void FatalSignals::setSession(const std::string& session) {
    const std::scoped_lock lock(sessionMutex);
    const int other = 1 - sessionInUse;
    auto& text = sessionTexts[static_cast<std::size_t>(other)];
    text.fill('\0');
    std::copy_n(session.begin(), std::min(session.size(), kSessionSize - 1), text.begin());
    sessionInUse = other;
}

std::string FatalSignals::session() {
    const std::scoped_lock lock(sessionMutex);
    return sessionTexts[static_cast<std::size_t>(sessionInUse.load())].data();
}

void FatalSignals::endWithin(unsigned seconds) {
    struct sigaction action = {};
    action.sa_handler = [](int) { ::raise(SIGABRT); };
    ::sigemptyset(&action.sa_mask);
    ::sigaction(SIGALRM, &action, nullptr);
    sigset_t alarm;
    ::sigemptyset(&alarm);
    ::sigaddset(&alarm, SIGALRM);
    ::pthread_sigmask(SIG_UNBLOCK, &alarm, nullptr);
    ::alarm(seconds);
}

}  // namespace trimora::analytics
