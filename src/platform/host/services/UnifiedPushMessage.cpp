#include "platform/host/services/UnifiedPushMessage.h"

#include "platform/base/ShownText.h"

#include <algorithm>
#include <utility>

namespace lamina {

namespace {

using Json = nlohmann::json;

/// Of an identifier, in bytes.
constexpr std::size_t kLongestIdentifier = 128;

/// Empty where there is no such text.
std::string lineOf(const Json& object, const char* key)
{
    const auto found = object.find(key);
    if (found == object.end() || !found->is_string())
        return {};
    auto text = found->get<std::string>();
    std::ranges::replace_if(
        text, [](char sign) { return sign == '\n' || sign == '\r' || sign == '\t'; }, ' ');
    return shownText(text, kReplacementSign);
}

} // namespace

Result<UNNotification> notificationOfMessage(std::span<const std::uint8_t> bytes, const std::string& identifier)
{
    if (bytes.size() > kMostMessageBytes)
        return Error{"", "longer than " + std::to_string(kMostMessageBytes) + " bytes"};
    if (std::ranges::find(bytes, 0) != bytes.end()) // the parser takes it for the end
        return Error{"", "not JSON"};
    bool tooDeep = false;
    Json object = Json::parse(
        bytes.begin(), bytes.end(),
        [&](int depth, Json::parse_event_t event, const Json&) {
            const bool opens = event == Json::parse_event_t::object_start || event == Json::parse_event_t::array_start;
            tooDeep = tooDeep || (opens && depth >= kDeepestMessage);
            return !tooDeep;
        },
        false);
    if (tooDeep)
        return Error{"", "nested too deep"};
    if (object.is_discarded())
        return Error{"", "not JSON"};
    if (!object.is_object())
        return Error{"", "not a JSON object"};
    UNNotification notification;
    const std::string own = lineOf(object, "id");
    notification.identifier = beginningOf(own.empty() ? shownText(identifier) : own, kLongestIdentifier);
    notification.title = lineOf(object, "title");
    notification.body = lineOf(object, "body");
    notification.userInfo = std::move(object);
    return notification;
}

} // namespace lamina
