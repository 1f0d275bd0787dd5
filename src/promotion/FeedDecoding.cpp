#include "promotion/FeedDecoding.h"

#include <QByteArray>

#include <cmath>
#include <limits>
#include <nlohmann/json.hpp>
#include <string>
#include <utility>

namespace lamina {

namespace {

using nlohmann::json;

/// Of arrays and objects within each other; records need two, and keys that are passed over may have some more.
constexpr int kMostLevels = 32;

bool read(const json& value, std::string& text)
{
    if (value.is_string())
        text = value.get_ref<const std::string&>();
    return value.is_string();
}

bool read(const json& value, std::int64_t& number)
{
    if (value.is_number_unsigned() && value.get<std::uint64_t>() > std::numeric_limits<std::int64_t>::max())
        return false;
    if (value.is_number_integer()) {
        number = value.get<std::int64_t>();
        return true;
    }
    // The library has made a double also of integers beyond 64 bits, rounded: their limit itself may be one of them.
    constexpr double kLimit = 0x1p63;
    const double real = value.is_number_float() ? value.get<double>() : std::nan("");
    if (!(std::fabs(real) < kLimit) || real != std::trunc(real))
        return false;
    number = static_cast<std::int64_t>(real);
    return true;
}

bool read(const json& value, std::vector<std::uint8_t>& bytes)
{
    if (!value.is_string())
        return false;
    const auto& text = value.get_ref<const std::string&>();
    const auto decoded = QByteArray::fromBase64Encoding(QByteArray::fromRawData(text.data(), std::ssize(text)),
                                                        QByteArray::AbortOnBase64DecodingErrors);
    const QByteArray& whole = *decoded; // empty where it is no base64
    bytes.assign(whole.begin(), whole.end());
    return static_cast<bool>(decoded);
}

/// The value of a key, which must be there.
template <class Value>
bool read(const json& record, const char* key, Value& value)
{
    const auto found = record.find(key);
    return found != record.end() && read(*found, value);
}

bool read(const json& from, iOSAppList& app)
{
    return read(from, "appName", app.appName) && read(from, "accountName", app.accountName) &&
           read(from, "isCheck", app.isCheck);
}

bool read(const json& from, CustomInterstrial& promotion)
{
    return read(from, "appLink", promotion.appLink) && read(from, "interstialLink", promotion.interstialLink) &&
           read(from, "isCheck", promotion.isCheck);
}

bool read(const json& from, ImageDataResource& resource)
{
    return read(from, "interstialLink", resource.interstialLink) && read(from, "appLink", resource.appLink) &&
           read(from, "imagedata", resource.imagedata);
}

/// Null when it is no JSON, or deeper than anybody means it; what lies too deep is not kept while it is read.
json parsed(std::span<const std::uint8_t> body)
{
    bool tooDeep = false;
    const auto watch = [&tooDeep](int depth, json::parse_event_t, json&) {
        tooDeep = tooDeep || depth > kMostLevels;
        return !tooDeep;
    };
    json value = json::parse(body.begin(), body.end(), watch, false);
    return tooDeep || value.is_discarded() ? json() : value;
}

} // namespace

template <class Record>
std::optional<std::vector<Record>> decodeFeed(std::span<const std::uint8_t> body)
{
    const json feed = parsed(body);
    if (!feed.is_array())
        return std::nullopt;
    std::vector<Record> records;
    for (const json& value : feed) {
        Record record;
        if (!value.is_object() || !read(value, record))
            return std::nullopt;
        records.push_back(std::move(record));
    }
    return records;
}

template std::optional<std::vector<iOSAppList>> decodeFeed(std::span<const std::uint8_t>);
template std::optional<std::vector<CustomInterstrial>> decodeFeed(std::span<const std::uint8_t>);
template std::optional<std::vector<ImageDataResource>> decodeFeed(std::span<const std::uint8_t>);

} // namespace lamina
