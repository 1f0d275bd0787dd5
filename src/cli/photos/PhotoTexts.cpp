#include "cli/photos/PhotoTexts.h"

#include "cli/common/JsonText.h"
#include "platform/base/ShownText.h"
#include "platform/files/FileURL.h"
#include "platform/photos/PHCollection.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <string_view>

namespace lamina {

namespace {

using Json = nlohmann::ordered_json;

/// What no shell gives a meaning to.
bool isPlain(char c)
{
    return c < 0 || std::isalnum(static_cast<unsigned char>(c)) != 0 ||
           std::string_view("/._-+,:@%").find(c) != std::string_view::npos;
}

/// Whether a terminal would take what the text begins with for an order. A pipe is given names that are no UTF-8 as
/// they are, but for the bytes that some terminals obey.
bool isOrder(const FirstSign& first, std::string_view text, PathForm form)
{
    const auto byte = static_cast<unsigned char>(text.front());
    return !first.isShown && (first.isUTF8 || form == PathForm::Terminal || byte < 0xA0);
}

bool holdsOrder(std::string_view text, PathForm form)
{
    for (FirstSign first; !text.empty(); text.remove_prefix(first.length)) {
        first = firstSign(text);
        if (isOrder(first, text, form))
            return true;
    }
    return false;
}

/// Every byte is three octal digits, after which no other digit can be taken for one of them.
std::string escaped(std::string_view bytes)
{
    std::string text;
    for (const char c : bytes) {
        const auto digit = [c](int shift) {
            return static_cast<char>('0' + (static_cast<unsigned char>(c) >> shift & 7));
        };
        text.append({'\\', digit(6), digit(3), digit(0)});
    }
    return text;
}

/// As what prints it: not every shell has a quotation with escapes.
std::string quotedWithEscapes(std::string_view path, PathForm form)
{
    std::string text = "\"$(printf '";
    for (FirstSign first; !path.empty(); path.remove_prefix(first.length)) {
        first = firstSign(path);
        const std::string_view sign = path.substr(0, first.length);
        if (sign == "'" || isOrder(first, path, form))
            text += escaped(sign);
        else
            text.append(sign == "\\" ? "\\" : sign == "%" ? "%" : "").append(sign);
    }
    return text + "')\"";
}

std::string quoted(const std::string& path)
{
    std::string text = "'";
    for (const char c : path)
        c == '\'' ? text.append("'\\''") : text.append(1, c);
    return text + '\'';
}

std::string padded(unsigned number, std::size_t digits)
{
    const std::string text = std::to_string(number);
    return std::string(digits - std::min(digits, text.size()), '0') + text;
}

/// In characters, for columns.
std::size_t widthOf(const std::string& text)
{
    return static_cast<std::size_t>(
        std::count_if(text.begin(), text.end(), [](char c) { return (static_cast<unsigned char>(c) & 0xC0) != 0x80; }));
}

const char* kindOf(const PHAssetCollection& album)
{
    return album.assetCollectionType == PHAssetCollectionType::SmartAlbum ? "smart" : "user";
}

} // namespace

std::string pathText(const std::string& path, PathForm form)
{
    if (form == PathForm::Null)
        return path + '\0';
    if (holdsOrder(path, form))
        return quotedWithEscapes(path, form) + '\n';
    if (form == PathForm::Terminal && !std::all_of(path.begin(), path.end(), isPlain))
        return quoted(path) + '\n';
    return path + '\n';
}

Json placeAsJSON(const PHAsset& asset)
{
    Json json{{"identifier", asset.localIdentifier}, {"path", asset.path}};
    if (!isUTF8(asset.path))
        json["url"] = fileURLOfPath(asset.path);
    return json;
}

Json assetAsJSON(const PHAsset& asset)
{
    Json json = placeAsJSON(asset);
    json["width"] = asset.pixelWidth;
    json["height"] = asset.pixelHeight;
    json["date"] = isoDate(asset.creationDate);
    return json;
}

std::string isoDate(double seconds)
{
    using namespace std::chrono;
    constexpr auto kFirst = sys_days{year{0} / January / 1}.time_since_epoch();
    constexpr auto kEnd = sys_days{year{10000} / January / 1}.time_since_epoch();
    const double clamped =
        std::clamp(std::floor(seconds), static_cast<double>(duration_cast<std::chrono::seconds>(kFirst).count()),
                   static_cast<double>(duration_cast<std::chrono::seconds>(kEnd).count() - 1));
    const sys_seconds time{std::chrono::seconds(static_cast<std::int64_t>(clamped))};
    const auto midnight = floor<days>(time);
    const year_month_day day(midnight);
    const hh_mm_ss clock(time - midnight);
    const auto two = [](auto part) { return padded(static_cast<unsigned>(part), 2); };
    return padded(static_cast<unsigned>(static_cast<int>(day.year())), 4) + '-' +
           two(static_cast<unsigned>(day.month())) + '-' + two(static_cast<unsigned>(day.day())) + 'T' +
           two(clock.hours().count()) + ':' + two(clock.minutes().count()) + ':' + two(clock.seconds().count()) + 'Z';
}

std::string albumsAsText(const std::vector<CollectionItem>& albums)
{
    std::size_t countWidth = 0;
    std::size_t titleWidth = 0;
    for (const CollectionItem& item : albums) {
        countWidth = std::max(countWidth, std::to_string(item.assets.count()).size());
        titleWidth = std::max(titleWidth, widthOf(shownText(item.collection.localizedTitle)));
    }
    std::string text;
    for (const auto& [collection, assets] : albums) {
        const std::string count = std::to_string(assets.count());
        const std::string title = shownText(collection.localizedTitle);
        std::string kind = kindOf(collection);
        kind.resize(5, ' ');
        std::string line = std::string(countWidth - count.size(), ' ') + count + "  " + kind + "  " + title;
        if (!collection.path.empty())
            line += std::string(titleWidth - widthOf(title) + 2, ' ') + shownText(collection.path);
        text += line + '\n';
    }
    return text;
}

std::string albumsAsJSON(const std::vector<CollectionItem>& albums)
{
    Json list = Json::array();
    for (const auto& [collection, assets] : albums)
        list.push_back({{"title", collection.localizedTitle},
                        {"count", assets.count()},
                        {"kind", kindOf(collection)},
                        {"path", collection.path.empty() ? Json() : Json(collection.path)}});
    return jsonText(list);
}

} // namespace lamina
