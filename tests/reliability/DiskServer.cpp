#define FUSE_USE_VERSION 35
#include "DiskServer.h"

#include <fcntl.h>
#include <fuse.h>
#include <linux/loop.h>
#include <sched.h>
#include <sys/ioctl.h>
#include <sys/mount.h>
#include <sys/prctl.h>
#include <sys/wait.h>
#include <unistd.h>

#include <algorithm>
#include <cerrno>
#include <csignal>
#include <cstring>
#include <string>

#include "files/FileDescriptor.h"

namespace trimora::reliability {
namespace {

using files::FileDescriptor;
using Stat = struct stat;

constexpr const char* kName = "/disk";

DiskRecord& record() {
    return *static_cast<DiskRecord*>(::fuse_get_context()->private_data);
}

int getAttributes(const char* path, Stat* status, fuse_file_info*) {
    *status = {};
    if (std::strcmp(path, "/") == 0) {
        status->st_mode = S_IFDIR | 0700;
        status->st_nlink = 2;
        return 0;
    }
    if (std::strcmp(path, kName) != 0)
        return -ENOENT;
    status->st_mode = S_IFREG | 0600;
    status->st_nlink = 1;
    status->st_size = static_cast<off_t>(record().bytes());
    return 0;
}

int openDisk(const char*, fuse_file_info* file) {
    file->direct_io = 1;  // a disk's writes are noted when they are made
    return 0;
}

int readDisk(const char*, char* to, std::size_t size, off_t at, fuse_file_info*) {
    const auto from = std::min(static_cast<std::size_t>(at), record().bytes());
    const auto bytes = record().now(from, std::min(size, record().bytes() - from));
    std::copy(bytes.begin(), bytes.end(), to);
    return static_cast<int>(bytes.size());
}

int writeDisk(const char*, const char* from, std::size_t size, off_t at, fuse_file_info*) {
    return record().write(static_cast<std::size_t>(at), {from, size}) ? static_cast<int>(size) : -EIO;
}

int flushDisk(const char*, int, fuse_file_info*) {
    return record().flush() ? 0 : -EIO;
}

/// Serves until it is killed; `ready` is told once the folder is mounted.
[[noreturn]] void serve(DiskRecord& served, const std::filesystem::path& folder, FileDescriptor ready) {
    ::prctl(PR_SET_PDEATHSIG, SIGKILL);
    fuse_operations operations = {};
    operations.getattr = getAttributes;
    operations.open = openDisk;
    operations.read = readDisk;
    operations.write = writeDisk;
    operations.fsync = flushDisk;
    std::string name = "disk";
    char* words[] = {name.data(), nullptr};
    fuse_args arguments = FUSE_ARGS_INIT(1, words);
    fuse* const server = ::fuse_new(&arguments, &operations, sizeof operations, &served);
    if (server == nullptr || ::fuse_mount(server, folder.c_str()) != 0)
        ::_exit(1);
    // Whoever ends last in the test's mounts unmounts what is on the disk, and this process would wait for
    // itself.
    const bool told = ::unshare(CLONE_NEWNS) == 0 && ::write(ready.number(), "", 1) == 1;
    ready = {};
    ::_exit(told && ::fuse_loop(server) == 0 ? 0 : 1);
}

/// A loop device on the file, which is given back once nobody uses it.
FileDescriptor loopOn(const FileDescriptor& file) {
    constexpr int kTries = 20;  // another process may take the free one first
    const FileDescriptor control(::open("/dev/loop-control", O_RDWR | O_CLOEXEC));
    loop_config settings = {};
    settings.fd = static_cast<unsigned>(file.number());
    settings.info.lo_flags = LO_FLAGS_AUTOCLEAR;
    for (int i = 0; i < kTries; ++i) {
        const int number = ::ioctl(control.number(), LOOP_CTL_GET_FREE);
        if (number < 0)
            break;
        FileDescriptor loop(::open(("/dev/loop" + std::to_string(number)).c_str(), O_RDWR | O_CLOEXEC));
        if (::ioctl(loop.number(), LOOP_CONFIGURE, &settings) == 0)
            return loop;
        if (errno != EBUSY)
            break;
    }
    return {};
}

}  // namespace

std::unique_ptr<MountedDisk> MountedDisk::create(const std::filesystem::path& disk,
                                                 const std::filesystem::path& folder) {
    const FileDescriptor file(::open(disk.c_str(), O_RDWR | O_CLOEXEC));
    const FileDescriptor loop = loopOn(file);
    if (!loop)
        return nullptr;
    const std::string device =
        std::filesystem::read_symlink("/proc/self/fd/" + std::to_string(loop.number()));
    // A replaced file's bytes are not brought to the disk unless the program does: the hardest choice there
    // is.
    if (::mount(device.c_str(), folder.c_str(), "ext4", MS_NOSUID | MS_NODEV, "noauto_da_alloc") != 0)
        return nullptr;
    return std::unique_ptr<MountedDisk>(new MountedDisk(folder));
}

MountedDisk::~MountedDisk() {
    ::umount(folder_.c_str());
}

void MountedDisk::bringToDisk() const {
    const FileDescriptor folder(::open(folder_.c_str(), O_RDONLY | O_DIRECTORY | O_CLOEXEC));
    (void)::syncfs(folder.number());
}

std::unique_ptr<DiskServer> DiskServer::create(DiskRecord& record, const std::filesystem::path& folder) {
    int pipe[2] = {-1, -1};
    if (::pipe2(pipe, O_CLOEXEC) != 0)
        return nullptr;
    FileDescriptor heard(pipe[0]);
    FileDescriptor ready(pipe[1]);
    const pid_t process = ::fork();
    if (process == 0)
        serve(record, folder, std::move(ready));
    ready = {};
    char told = 0;
    if (::read(heard.number(), &told, 1) == 1)
        return std::unique_ptr<DiskServer>(new DiskServer(process, folder));
    ::waitpid(process, nullptr, 0);
    return nullptr;
}

DiskServer::~DiskServer() {
    ::umount2(folder_.c_str(), MNT_DETACH);
    ::kill(process_, SIGKILL);  // a loop device that nobody uses any more may hold the disk a moment longer
    ::waitpid(process_, nullptr, 0);
}

}  // namespace trimora::reliability
