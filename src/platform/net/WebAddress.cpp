#include "platform/net/WebAddress.h"

#include "platform/net/WebAddress_p.h"

#include <cstddef>

namespace lamina {

namespace {

constexpr std::size_t kLongest = 2048;
constexpr qsizetype kLongestShown = 200;

} // namespace

bool isWebAddress(const QUrl& address)
{
    const bool isWeb = address.scheme() == kOpenScheme || address.scheme() == kSecureScheme;
    return isWeb && address.isValid() && !address.host().isEmpty();
}

bool isWebAddress(const std::string& url)
{
    return !webHost(url).empty();
}

std::string webHost(const std::string& url)
{
    if (url.size() > kLongest)
        return {};
    const QUrl address(QString::fromStdString(url), QUrl::StrictMode);
    return isWebAddress(address) ? address.host(QUrl::FullyEncoded).toStdString() : std::string();
}

std::string shownAddress(const std::string& url)
{
    const QUrl address(QString::fromStdString(url));
    const QString text = address.toDisplayString(QUrl::RemoveUserInfo | QUrl::RemoveQuery | QUrl::RemoveFragment);
    return text.left(kLongestShown).toStdString();
}

} // namespace lamina
