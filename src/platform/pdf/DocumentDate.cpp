#include "platform/pdf/DocumentDate_p.h"

#include <charconv>
#include <cstdint>
#include <cstdlib>
#include <ctime>
#include <string_view>

namespace lamina {

namespace {

constexpr std::int64_t kFixedMoment = 1'704'067'200;  // 1 January 2024
constexpr std::int64_t kLastMoment = 253'402'300'799; // of the year 9999

std::int64_t moment()
{
    const char* const variable = std::getenv("SOURCE_DATE_EPOCH");
    const std::string_view text = variable ? variable : "";
    std::int64_t seconds = 0;
    const auto [end, error] = std::from_chars(text.data(), text.data() + text.size(), seconds);
    const bool valid = !text.empty() && error == std::errc() && end == text.data() + text.size();
    return valid && seconds >= 0 && seconds <= kLastMoment ? seconds : kFixedMoment;
}

std::string digits(int value, std::size_t count)
{
    const std::string text = std::to_string(value);
    return std::string(count > text.size() ? count - text.size() : 0, '0') + text;
}

} // namespace

std::string documentDate()
{
    const auto seconds = static_cast<std::time_t>(moment());
    std::tm time{};
    ::gmtime_r(&seconds, &time);
    std::string date = "D:" + digits(time.tm_year + 1900, 4);
    for (const int part : {time.tm_mon + 1, time.tm_mday, time.tm_hour, time.tm_min, time.tm_sec})
        date += digits(part, 2);
    return date + "Z";
}

} // namespace lamina
