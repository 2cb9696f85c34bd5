#include "Mounts.h"

#include <sched.h>
#include <sys/mount.h>
#include <unistd.h>

#include <thread>

#include "Processes.h"

namespace trimora::reliability {

bool onOwnMounts(const std::function<void()>& test) {
    bool allowed = false;
    std::thread thread([&] {
        allowed =
            ::unshare(CLONE_NEWNS) == 0 && ::mount("none", "/", nullptr, MS_REC | MS_PRIVATE, nullptr) == 0;
        if (allowed)
            test();
    });
    thread.join();
    return allowed;
}

bool onSmallFileSystem(const std::filesystem::path& folder, const std::string& size,
                       const std::function<void()>& test) {
    bool allowed = false;
    const bool mine = onOwnMounts([&] {
        const std::string options = "size=" + size;
        allowed = ::mount("tmpfs", folder.c_str(), "tmpfs", MS_NOSUID | MS_NODEV, options.c_str()) == 0;
        if (allowed)
            test();
    });
    return mine && allowed;
}

int asPlainAccount(const std::function<int()>& work) {
    constexpr unsigned kNobody = 65534;
    constexpr int kNotChanged = 249;
    const Ended ended = inOwnProcess([&] {
        if (::geteuid() == 0 && (::setgid(kNobody) != 0 || ::setuid(kNobody) != 0))
            return kNotChanged;
        return work();
    });
    return ended.exited && ended.status != kNotChanged ? ended.status : -1;
}

}  // namespace trimora::reliability
