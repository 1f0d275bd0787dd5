#include "promotion/WebAddress.h"

#include <QUrl>

#include <cstddef>

namespace lamina {

namespace {

constexpr std::size_t kLongest = 2048;

} // namespace

bool isWebAddress(const std::string& url)
{
    return !webHost(url).empty();
}

std::string webHost(const std::string& url)
{
    if (url.size() > kLongest)
        return {};
    const QUrl parsed(QString::fromStdString(url), QUrl::StrictMode);
    const bool isWeb = parsed.scheme() == QLatin1String("http") || parsed.scheme() == QLatin1String("https");
    return parsed.isValid() && isWeb ? parsed.host(QUrl::FullyEncoded).toStdString() : std::string();
}

} // namespace lamina
