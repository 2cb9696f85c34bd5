#include "analytics/store/StoreLocks.h"

#include <fcntl.h>
#include <sys/stat.h>

#include <cerrno>
#include <random>

#include "files/SystemError.h"

namespace trimora::analytics {

using foundation::Result;

namespace {

constexpr mode_t kOwnerOnly = 0600;
constexpr std::int64_t kSendingByte = 0;
constexpr std::int64_t kRecoveryByte = 1;
constexpr std::int64_t kFirstOwner = 1 << 16;
constexpr std::int64_t kLastOwner = (std::int64_t{1} << 62) - 1;

struct flock lockOf(std::int64_t byte, short type) {
    struct flock lock = {};
    lock.l_type = type;
    lock.l_whence = SEEK_SET;
    lock.l_start = byte;
    lock.l_len = 1;
    return lock;
}

bool setLock(int file, std::int64_t byte, short type, int command) {
    struct flock lock = lockOf(byte, type);
    int done = -1;
    do {
        done = ::fcntl(file, command, &lock);
    } while (done != 0 && errno == EINTR);
    return done == 0;
}

std::int64_t randomOwner() {
    std::random_device source;
    std::uniform_int_distribution<std::int64_t> any(kFirstOwner, kLastOwner);
    return any(source);
}

}  // namespace

Result<std::shared_ptr<StoreLocks>> StoreLocks::create(const std::filesystem::path& file) {
    files::FileDescriptor opened =
        files::openAt(AT_FDCWD, file.c_str(), O_RDWR | O_CREAT | O_NOFOLLOW, kOwnerOnly);
    if (!opened)
        return files::systemError("the lock file cannot be opened", errno);
    std::int64_t owner = randomOwner();
    while (!setLock(opened.number(), owner, F_WRLCK, F_OFD_SETLK)) {
        if (errno != EAGAIN && errno != EACCES)
            return files::systemError("the lock file cannot be locked", errno);
        owner = randomOwner();
    }
    return std::shared_ptr<StoreLocks>(new StoreLocks(std::move(opened), owner));
}

bool StoreLocks::isAlive(std::int64_t owner) const {
    if (owner == owner_)
        return true;
    if (owner < kFirstOwner || owner > kLastOwner)
        return false;
    struct flock lock = lockOf(owner, F_WRLCK);
    return ::fcntl(file_.number(), F_OFD_GETLK, &lock) == 0 && lock.l_type != F_UNLCK;
}

std::shared_ptr<void> StoreLocks::holdSending() {
    const std::scoped_lock lock(mutex_);
    if (auto held = sending_.lock())
        return held;
    if (!setLock(file_.number(), kSendingByte, F_WRLCK, F_OFD_SETLK))
        return nullptr;
    auto held = released(kSendingByte);
    sending_ = held;
    return held;
}

std::shared_ptr<void> StoreLocks::holdRecovery() {
    setLock(file_.number(), kRecoveryByte, F_WRLCK, F_OFD_SETLKW);
    return released(kRecoveryByte);
}

std::shared_ptr<void> StoreLocks::released(std::int64_t byte) {
    return {static_cast<void*>(this), [self = shared_from_this(), byte](void*) mutable {
                {
                    const std::scoped_lock lock(self->mutex_);
                    // Somebody may have taken it anew between the last token's end and this call.
                    if (byte != kSendingByte || self->sending_.expired())
                        setLock(self->file_.number(), byte, F_UNLCK, F_OFD_SETLK);
                }
                self.reset();  // this function lives as long as sending_ does, which self holds
            }};
}

}  // namespace trimora::analytics
