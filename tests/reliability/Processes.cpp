#include "Processes.h"

#include <malloc.h>
#include <sys/wait.h>
#include <unistd.h>

#include <csignal>
#include <cstdio>
#include <cstdlib>
#include <cstring>
#include <exception>
#include <filesystem>
#include <fstream>

namespace trimora::reliability {
namespace {

constexpr int kThrown = 250;

int statusOf(const std::function<int()>& work) {
    try {
        return work();
    } catch (const std::exception& thrown) {
        std::fprintf(stderr, "thrown: %s\n", thrown.what());
        return kThrown;
    }
}

[[noreturn]] void run(const std::function<int()>& work, int cpuSeconds, int result) {
    const auto limit = static_cast<rlim_t>(cpuSeconds);
    const struct rlimit processor = {limit, limit + 1};
    ::setrlimit(RLIMIT_CPU, &processor);
    const struct rlimit core = {0, 0};
    ::setrlimit(RLIMIT_CORE, &core);
    ::malloc_trim(0);  // what the heap keeps in store would hide what the work takes
    forgetPeak();
    const long before = peakKibibytes();
    const int status = statusOf(work);
    const long grown = peakKibibytes() - before;
    (void)!::write(result, &grown, sizeof grown);
    std::fflush(nullptr);
    ::_exit(status);
}

}  // namespace

long peakKibibytes() {
    std::ifstream status("/proc/self/status");
    for (std::string line; std::getline(status, line);) {
        if (line.starts_with("VmHWM:"))
            return std::stol(line.substr(6));
    }
    return 0;
}

void forgetPeak() {
    std::ofstream("/proc/self/clear_refs") << "5";
}

bool Ended::wasKilled() const {
    return !exited && status == SIGKILL;
}

std::string Ended::text() const {
    if (exited)
        return "exit " + std::to_string(status);
    return "signal " + std::to_string(status) + " (" + ::strsignal(status) + ")";
}

Ended inOwnProcess(const std::function<int()>& work, int cpuSeconds) {
    int pipe[2] = {-1, -1};
    if (::pipe(pipe) != 0)
        std::abort();
    std::fflush(nullptr);
    const pid_t child = ::fork();
    if (child == 0) {
        constexpr unsigned kStuckAfter = 1800;  // seconds; a busy machine gives it a few in a hundred
        ::alarm(kStuckAfter);
        run(work, cpuSeconds, pipe[1]);
    }
    ::close(pipe[1]);
    Ended ended;
    if (::read(pipe[0], &ended.grownKibibytes, sizeof ended.grownKibibytes) <= 0)
        ended.grownKibibytes = 0;
    ::close(pipe[0]);
    int status = 0;
    struct rusage usage {};
    ::wait4(child, &status, 0, &usage);
    ended.exited = WIFEXITED(status);
    ended.status = ended.exited ? WEXITSTATUS(status) : WTERMSIG(status);
    ended.cpuSeconds = static_cast<double>(usage.ru_utime.tv_sec + usage.ru_stime.tv_sec) +
                       static_cast<double>(usage.ru_utime.tv_usec + usage.ru_stime.tv_usec) / 1e6;
    return ended;
}

int openFiles() {
    int count = 0;
    for ([[maybe_unused]] const auto& entry : std::filesystem::directory_iterator("/proc/self/fd"))
        ++count;
    return count;
}

}  // namespace trimora::reliability
