#include "platform/LocalSocket.h"

#include <sys/socket.h>
#include <sys/stat.h>
#include <sys/un.h>
#include <unistd.h>

#include <cerrno>
#include <string>

#include "files/SystemError.h"

namespace trimora::platform {

using files::FileDescriptor;
using files::systemError;
using foundation::Result;
using std::filesystem::path;

namespace {

constexpr int kWaiting = 30;  // connections that may wait to be accepted

struct Place {
    FileDescriptor socket;
    sockaddr_un address{};

    [[nodiscard]] const sockaddr* pointer() const { return reinterpret_cast<const sockaddr*>(&address); }
};

Result<Place> socketFor(const path& file) {
    Place place{FileDescriptor(::socket(AF_UNIX, SOCK_STREAM | SOCK_CLOEXEC | SOCK_NONBLOCK, 0))};
    if (!place.socket)
        return systemError("no socket can be made", errno);
    constexpr std::size_t kLongest = sizeof place.address.sun_path - 1;
    const std::string& name = file.native();
    if (name.size() > kLongest)
        return systemError("the socket has no room for its name", ENAMETOOLONG);
    place.address.sun_family = AF_UNIX;
    name.copy(static_cast<char*>(place.address.sun_path), kLongest);
    return place;
}

}  // namespace

Result<FileDescriptor> listenAt(const path& file) {
    auto place = socketFor(file);
    if (!place)
        return place.error();
    ::unlink(file.c_str());
    // The file will have the mode of the socket that is bound to it.
    if (::fchmod(place->socket.number(), S_IRUSR | S_IWUSR) != 0 ||
        ::bind(place->socket.number(), place->pointer(), sizeof place->address) != 0 ||
        ::listen(place->socket.number(), kWaiting) != 0)
        return systemError("the socket cannot be listened at", errno);
    return std::move(place->socket);
}

Result<FileDescriptor> connectTo(const path& file) {
    auto place = socketFor(file);
    if (!place)
        return place.error();
    if (::connect(place->socket.number(), place->pointer(), sizeof place->address) != 0)
        return systemError("nobody can be reached at the socket", errno);
    return std::move(place->socket);
}

FileDescriptor acceptAt(const FileDescriptor& listener) {
    return FileDescriptor(::accept4(listener.number(), nullptr, nullptr, SOCK_CLOEXEC | SOCK_NONBLOCK));
}

}  // namespace trimora::platform
