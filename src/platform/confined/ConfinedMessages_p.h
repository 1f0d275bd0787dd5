#pragma once

#include "platform/files/FileReading.h"

#include <array>
#include <cstddef>
#include <cstdint>
#include <optional>
#include <span>
#include <vector>

/// What a confined program and the one that has started it say to each other, over a socket that keeps messages apart.
namespace lamina::confined {

/// The descriptor under which the program finds the socket.
inline constexpr int kConnection = 3;
inline constexpr std::size_t kLongestMessage = 2048;
inline constexpr std::size_t kMostDescriptors = 4;

/// The program's last word where memory has run short, instead of an answer: how it left may be lost.
inline constexpr std::byte kOutOfMemory{90};

/// The program's first message, once it is confined and before it has seen anything foreign.
struct Greeting {
    std::array<char, 24> version{}; ///< of Lamina, with a 0 at its end
    std::uint32_t confined = 0;     ///< 0: the system can't confine it
    std::uint64_t dataBytes = 0;    ///< memory of its own that it has by now
    std::uint64_t addressBytes = 0; ///< all that is mapped
};

/// This program's version, as greetings have it.
std::array<char, 24> ownVersion();

/// False where the other side is gone, or errno says why.
bool sendMessage(int connection, std::span<const std::byte> message, std::span<const int> descriptors = {});

struct Message {
    std::size_t size = 0; ///< 0: the other side is gone
    std::vector<FileDescriptor> descriptors;
};
/// Waits for a message; nothing where it is longer than `target`, or reading fails.
std::optional<Message> receiveMessage(int connection, std::span<std::byte> target);

} // namespace lamina::confined
