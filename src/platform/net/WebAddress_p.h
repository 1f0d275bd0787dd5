#pragma once

#include <QLatin1String>
#include <QUrl>

namespace lamina {

inline constexpr QLatin1String kOpenScheme("http");
inline constexpr QLatin1String kSecureScheme("https");

/// Whether it leads to a host of the web.
bool isWebAddress(const QUrl& address);

} // namespace lamina
