#pragma once

#include "platform/application/UNNotification.h"
#include "platform/base/Result.h"

#include <cstddef>
#include <cstdint>
#include <span>
#include <string>

namespace lamina {

/// How long a message from a server may be, in bytes.
inline constexpr std::size_t kMostMessageBytes = 4096;
/// How deep its objects and lists may be nested, itself included.
inline constexpr int kDeepestMessage = 8;

/// A message as a server sends it: one JSON object (RFC 8259) in UTF-8, neither encrypted nor compressed. Of its keys
///
/// - "title" and "body", strings, are what is shown, each in one line; control characters and those that turn the
///   direction of others become U+FFFD, ends of lines and tabs spaces;
/// - "id", a string, identifies it: one of the same takes the place of the former. Without it `identifier` does;
/// - "badge" and all others are for the application and stay in `userInfo`.
///
/// A known key with a value of another type counts as missing. Of a key that stands twice the last one counts. What is
/// no such object is an error, in a few words without anything from the message. Any thread.
Result<UNNotification> notificationOfMessage(std::span<const std::uint8_t> bytes, const std::string& identifier);

} // namespace lamina
