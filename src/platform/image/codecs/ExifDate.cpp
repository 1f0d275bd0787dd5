#include "platform/image/codecs/ExifDate_p.h"

#include <array>
#include <charconv>
#include <chrono>
#include <cstddef>
#include <ctime>

namespace lamina {

namespace {

/// A number that fills its place with digits; -1 where something else stands.
int digits(std::string_view text, std::size_t at, std::size_t count)
{
    if (text.size() < at + count)
        return -1;
    const char* end = text.data() + at + count;
    int value = -1;
    const auto read = std::from_chars(text.data() + at, end, value);
    return read.ec == std::errc() && read.ptr == end && value >= 0 ? value : -1;
}

struct Moment {
    std::chrono::year_month_day day;
    int hour = 0;
    int minute = 0;
    int second = 0;
};

std::optional<Moment> parseMoment(std::string_view text)
{
    constexpr std::string_view kSeparators[] = {":-/.", ":-/.", " T", ":", ":"};
    for (std::size_t i = 0; i < std::size(kSeparators); ++i) {
        const std::size_t at = 4 + 3 * i;
        if (text.size() <= at || kSeparators[i].find(text[at]) == std::string_view::npos)
            return std::nullopt;
    }
    const std::array numbers{digits(text, 0, 4),  digits(text, 5, 2),  digits(text, 8, 2),
                             digits(text, 11, 2), digits(text, 14, 2), digits(text, 17, 2)};
    for (const int number : numbers) {
        if (number < 0)
            return std::nullopt;
    }
    const Moment moment{std::chrono::year(numbers[0]) / numbers[1] / numbers[2], numbers[3], numbers[4], numbers[5]};
    const bool leapSecond = moment.second == 60;
    if (numbers[0] < 1900 || !moment.day.ok() || moment.hour > 23 || moment.minute > 59 ||
        (moment.second > 59 && !leapSecond))
        return std::nullopt;
    return moment;
}

/// Seconds that the clock was ahead of UTC.
std::optional<int> parseOffset(std::string_view text)
{
    constexpr int kFarthestHours = 14;
    if (text == "Z")
        return 0;
    const int hours = digits(text, 1, 2);
    const int minutes = digits(text, 4, 2);
    if (text.size() < 6 || text[3] != ':' || (text[0] != '+' && text[0] != '-') || hours < 0 ||
        hours > kFarthestHours || minutes < 0 || minutes > 59)
        return std::nullopt;
    return (text[0] == '-' ? -60 : 60) * (60 * hours + minutes);
}

double inUTC(const Moment& moment)
{
    const auto days = std::chrono::sys_days(moment.day).time_since_epoch().count();
    return 86400.0 * static_cast<double>(days) + 3600 * moment.hour + 60 * moment.minute + moment.second;
}

std::optional<double> inLocalTime(const Moment& moment)
{
    std::tm time{};
    time.tm_year = static_cast<int>(moment.day.year()) - 1900;
    time.tm_mon = static_cast<int>(static_cast<unsigned>(moment.day.month())) - 1;
    time.tm_mday = static_cast<int>(static_cast<unsigned>(moment.day.day()));
    time.tm_hour = moment.hour;
    time.tm_min = moment.minute;
    time.tm_sec = moment.second;
    time.tm_isdst = -1; // whichever held then
    time.tm_wday = -1;  // is set when it succeeds; what is returned may mean the last second of 1969 as well
    const std::time_t seconds = std::mktime(&time);
    return time.tm_wday >= 0 ? std::optional(static_cast<double>(seconds)) : std::nullopt;
}

} // namespace

std::optional<double> exifDate(std::string_view date, std::string_view offset)
{
    const std::optional<Moment> moment = parseMoment(date);
    if (!moment)
        return std::nullopt;
    if (const std::optional<int> ahead = parseOffset(offset))
        return inUTC(*moment) - *ahead;
    return inLocalTime(*moment);
}

} // namespace lamina
