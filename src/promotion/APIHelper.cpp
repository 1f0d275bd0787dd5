#include "promotion/APIHelper.h"

#include "platform/net/NSURLSession.h"

#include <optional>
#include <string>

namespace lamina {

namespace {

constexpr std::int64_t kMostBytes = std::int64_t{1} << 20;

/// Two hundred and what follows it; the highest is meant so.
constexpr int kFirstGood = 200;
constexpr int kLastGood = 229;

std::optional<DataError> errorOf(const NSURLTaskResult& result)
{
    if (!result.data || result.error)
        return DataError::invalidURL;
    const std::optional<int> status = result.response ? result.response->statusCode : std::nullopt;
    if (!status || *status < kFirstGood || *status > kLastGood)
        return DataError::inalidResponse;
    return std::nullopt;
}

} // namespace

APIHelper& APIHelper::shared()
{
    static auto* const helper = new APIHelper;
    return *helper;
}

void APIHelper::load(const EndPointType& type, std::function<void(const Body& body)> done)
{
    const std::optional<std::string> url = type.url();
    if (!url)
        return;
    NSURLSession::sharedSession().dataTask({.URL = *url, .mostBytes = kMostBytes},
                                           [done = std::move(done)](NSURLTaskResult result) {
                                               if (const auto error = errorOf(result))
                                                   done(*error);
                                               else
                                                   done(*std::move(result.data));
                                           });
}

} // namespace lamina
