#pragma once

#include <cstdint>
#include <optional>
#include <string>
#include <vector>

#include "files/FileDescriptor.h"

/// Questions to the kernel's routing tables.
namespace trimora::host {

/// An address in network byte order.
struct NetworkAddress {
    unsigned char family = 0;  ///< AF_INET or AF_INET6
    std::vector<unsigned char> bytes;

    /// Reads a numeric address; nothing for any other text.
    [[nodiscard]] static std::optional<NetworkAddress> parse(const std::string& text);
};

/// How the kernel would send to this address, as flags of namespace analytics::reachability; 0 where it
/// would not. Nothing where the kernel does not answer.
[[nodiscard]] std::optional<std::uint32_t> routeFlags(const NetworkAddress& address);

/// A socket that becomes readable when links, addresses or routes change; empty on failure.
[[nodiscard]] files::FileDescriptor openRouteChanges();

/// Takes everything that waits in such a socket.
void discardRouteChanges(const files::FileDescriptor& changes);

}  // namespace trimora::host
