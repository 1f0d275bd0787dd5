#include "platform/confined/ConfinedMessages_p.h"

#include <algorithm>
#include <cerrno>
#include <cstring>
#include <string_view>
#include <sys/socket.h>

namespace lamina::confined {

namespace {

union Ancillary {
    cmsghdr header; // for its alignment
    std::array<char, CMSG_SPACE(kMostDescriptors * sizeof(int))> bytes;
};

void attach(msghdr& message, Ancillary& room, std::span<const int> descriptors)
{
    if (descriptors.empty())
        return;
    message.msg_control = room.bytes.data();
    message.msg_controllen = CMSG_SPACE(descriptors.size_bytes());
    cmsghdr* const header = CMSG_FIRSTHDR(&message);
    header->cmsg_level = SOL_SOCKET;
    header->cmsg_type = SCM_RIGHTS;
    header->cmsg_len = CMSG_LEN(descriptors.size_bytes());
    std::memcpy(CMSG_DATA(header), descriptors.data(), descriptors.size_bytes());
}

std::vector<FileDescriptor> descriptorsOf(msghdr& message)
{
    std::vector<FileDescriptor> found;
    for (cmsghdr* header = CMSG_FIRSTHDR(&message); header; header = CMSG_NXTHDR(&message, header)) {
        if (header->cmsg_level != SOL_SOCKET || header->cmsg_type != SCM_RIGHTS)
            continue;
        const std::size_t count = (header->cmsg_len - CMSG_LEN(0)) / sizeof(int);
        for (std::size_t i = 0; i < count; ++i) {
            int descriptor = -1;
            std::memcpy(&descriptor, CMSG_DATA(header) + i * sizeof(int), sizeof(int));
            found.emplace_back(descriptor);
        }
    }
    return found;
}

} // namespace

std::array<char, 24> ownVersion()
{
    constexpr std::string_view kVersion = LAMINA_VERSION;
    std::array<char, 24> version{};
    kVersion.copy(version.data(), version.size() - 1);
    return version;
}

bool sendMessage(int connection, std::span<const std::byte> message, std::span<const int> descriptors)
{
    iovec piece{const_cast<std::byte*>(message.data()), message.size()};
    msghdr header{};
    header.msg_iov = &piece;
    header.msg_iovlen = 1;
    Ancillary room{};
    attach(header, room, descriptors.first(std::min(descriptors.size(), kMostDescriptors)));
    ssize_t sent = -1;
    do
        sent = ::sendmsg(connection, &header, MSG_NOSIGNAL);
    while (sent < 0 && errno == EINTR);
    return sent == static_cast<ssize_t>(message.size());
}

std::optional<Message> receiveMessage(int connection, std::span<std::byte> target)
{
    iovec piece{target.data(), target.size()};
    msghdr header{};
    header.msg_iov = &piece;
    header.msg_iovlen = 1;
    Ancillary room{};
    header.msg_control = room.bytes.data();
    header.msg_controllen = room.bytes.size();
    ssize_t got = -1;
    do
        got = ::recvmsg(connection, &header, MSG_CMSG_CLOEXEC);
    while (got < 0 && errno == EINTR);
    if (got < 0)
        return std::nullopt;
    Message message{static_cast<std::size_t>(got), descriptorsOf(header)};
    const bool whole = (header.msg_flags & (MSG_TRUNC | MSG_CTRUNC)) == 0;
    if (!whole)
        errno = EMSGSIZE;
    return whole ? std::optional(std::move(message)) : std::nullopt;
}

} // namespace lamina::confined
