#pragma once

#include "platform/application/UNNotification.h"
#include "platform/base/Result.h"
#include "platform/base/ShownText.h"
#include "platform/host/services/UnifiedPushMessage.h"

#include <algorithm>
#include <cstddef>
#include <cstdint>
#include <nlohmann/json.hpp>
#include <span>
#include <string>

namespace lamina {

inline int depthOf(const nlohmann::json& json)
{
    int deepest = 0;
    for (const nlohmann::json& inner : json)
        if (inner.is_structured())
            deepest = std::max(deepest, depthOf(inner));
    return deepest + 1;
}

/// What is wrong with the outcome of reading this message, whatever it is; empty when nothing is: texts may be shown as
/// they are and are as long as the message may make them (three bytes stand for one that can't be shown), and what is
/// kept with them reads as the same message again.
inline std::string faultOfMessage(std::span<const std::uint8_t> bytes)
{
    const Result<UNNotification> message = notificationOfMessage(bytes, "given");
    if (!message)
        return message.error().cause.empty() ? "a failure without a cause" : "";
    for (const std::string& text : {message->title, message->body, message->identifier})
        if (shownText(text) != text || text.size() > std::max<std::size_t>(3 * bytes.size(), 5))
            return "a text that is not fit to be shown";
    if (bytes.size() > kMostMessageBytes || !message->userInfo.is_object() ||
        depthOf(message->userInfo) > kDeepestMessage)
        return "more than a message may hold";
    const std::string kept = message->userInfo.dump();
    if (kept.size() > kMostMessageBytes)
        return "";
    const auto* const keptBytes = reinterpret_cast<const std::uint8_t*>(kept.data());
    const auto again = notificationOfMessage({keptBytes, kept.size()}, message->identifier);
    const bool isSame = again && again->title == message->title && again->body == message->body &&
                        again->identifier == message->identifier && again->userInfo == message->userInfo;
    return isSame ? "" : "what is kept is another message";
}

} // namespace lamina
