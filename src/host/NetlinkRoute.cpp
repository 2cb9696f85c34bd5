#include "host/NetlinkRoute.h"

#include <arpa/inet.h>
#include <linux/netlink.h>
#include <linux/rtnetlink.h>
#include <sys/socket.h>

#include <algorithm>
#include <array>
#include <cerrno>
#include <cstring>

#include "analytics/reachability/ReachabilitySource.h"

namespace trimora::host {

namespace reachability = analytics::reachability;

namespace {

struct RouteQuestion {
    nlmsghdr header = {};
    rtmsg route = {};
    std::array<unsigned char, RTA_SPACE(sizeof(in6_addr))> target = {};
};

files::FileDescriptor openNetlink(int flags, unsigned groups) {
    files::FileDescriptor socket(::socket(AF_NETLINK, SOCK_RAW | SOCK_CLOEXEC | flags, NETLINK_ROUTE));
    sockaddr_nl self = {};
    self.nl_family = AF_NETLINK;
    self.nl_groups = groups;
    if (!socket || ::bind(socket.number(), reinterpret_cast<const sockaddr*>(&self), sizeof self) != 0)
        return {};
    return socket;
}

RouteQuestion questionAbout(const NetworkAddress& address) {
    RouteQuestion question;
    rtattr attribute = {};
    attribute.rta_type = RTA_DST;
    attribute.rta_len = static_cast<unsigned short>(RTA_LENGTH(address.bytes.size()));
    std::memcpy(question.target.data(), &attribute, sizeof attribute);
    std::memcpy(question.target.data() + RTA_LENGTH(0), address.bytes.data(), address.bytes.size());
    question.route.rtm_family = address.family;
    question.route.rtm_dst_len = static_cast<unsigned char>(address.bytes.size() * 8);
    question.header.nlmsg_type = RTM_GETROUTE;
    question.header.nlmsg_flags = NLM_F_REQUEST;
    question.header.nlmsg_len = static_cast<std::uint32_t>(NLMSG_LENGTH(sizeof(rtmsg)) + attribute.rta_len);
    return question;
}

/// The attributes of a route: all that is asked of them is whether there is a router.
bool hasGateway(const unsigned char* attributes, std::size_t size) {
    while (size >= sizeof(rtattr)) {
        rtattr attribute;
        std::memcpy(&attribute, attributes, sizeof attribute);
        if (attribute.rta_len < sizeof attribute || attribute.rta_len > size)
            return false;
        if (attribute.rta_type == RTA_GATEWAY || attribute.rta_type == RTA_VIA)
            return true;
        const std::size_t step = std::min<std::size_t>(RTA_ALIGN(attribute.rta_len), size);
        attributes += step;
        size -= step;
    }
    return false;
}

std::uint32_t flagsOf(const rtmsg& route, bool routed) {
    if ((route.rtm_flags & (RTNH_F_DEAD | RTNH_F_LINKDOWN)) != 0)
        return 0;
    if (route.rtm_type == RTN_LOCAL)
        return reachability::kReachable | reachability::kIsLocalAddress | reachability::kIsDirect;
    if (route.rtm_type != RTN_UNICAST)
        return 0;
    return routed ? reachability::kReachable : reachability::kReachable | reachability::kIsDirect;
}

std::optional<std::uint32_t> readAnswer(const unsigned char* bytes, std::size_t size) {
    nlmsghdr header;
    if (size < sizeof header)
        return std::nullopt;
    std::memcpy(&header, bytes, sizeof header);
    if (header.nlmsg_type == NLMSG_ERROR)
        return 0;  // the kernel knows no way
    constexpr std::size_t kAttributes = NLMSG_LENGTH(NLMSG_ALIGN(sizeof(rtmsg)));
    if (header.nlmsg_type != RTM_NEWROUTE || header.nlmsg_len < kAttributes || header.nlmsg_len > size)
        return std::nullopt;
    rtmsg route;
    std::memcpy(&route, bytes + NLMSG_LENGTH(0), sizeof route);
    return flagsOf(route, hasGateway(bytes + kAttributes, header.nlmsg_len - kAttributes));
}

}  // namespace

std::optional<NetworkAddress> NetworkAddress::parse(const std::string& text) {
    NetworkAddress address{AF_INET, std::vector<unsigned char>(sizeof(in_addr))};
    if (::inet_pton(AF_INET, text.c_str(), address.bytes.data()) == 1)
        return address;
    address = {AF_INET6, std::vector<unsigned char>(sizeof(in6_addr))};
    if (::inet_pton(AF_INET6, text.c_str(), address.bytes.data()) == 1)
        return address;
    return std::nullopt;
}

std::optional<std::uint32_t> routeFlags(const NetworkAddress& address) {
    const files::FileDescriptor socket = openNetlink(0, 0);
    const RouteQuestion question = questionAbout(address);
    if (!socket || ::send(socket.number(), &question, question.header.nlmsg_len, 0) < 0)
        return std::nullopt;
    std::array<unsigned char, 8192> answer = {};
    ssize_t size = -1;
    do {
        size = ::recv(socket.number(), answer.data(), answer.size(), 0);
    } while (size < 0 && errno == EINTR);
    return size < 0 ? std::nullopt : readAnswer(answer.data(), static_cast<std::size_t>(size));
}

files::FileDescriptor openRouteChanges() {
    return openNetlink(SOCK_NONBLOCK, RTMGRP_LINK | RTMGRP_IPV4_IFADDR | RTMGRP_IPV4_ROUTE |
                                          RTMGRP_IPV6_IFADDR | RTMGRP_IPV6_ROUTE);
}

void discardRouteChanges(const files::FileDescriptor& changes) {
    std::array<unsigned char, 8192> message;
    // An overflow (ENOBUFS) means that changes were missed, and a look at the routes follows anyway.
    while (::recv(changes.number(), message.data(), message.size(), 0) > 0 || errno == EINTR ||
           errno == ENOBUFS) {
    }
}

}  // namespace trimora::host
