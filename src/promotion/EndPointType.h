#pragma once

#include <optional>
#include <string>
#include <string_view>

namespace lamina {

/// How something is asked for.
enum class HTTPMethods { get, post };

/// As it is written.
constexpr std::string_view rawValue(HTTPMethods method)
{
    return method == HTTPMethods::get ? "GET" : "Post";
}

/// Where a feed comes from.
class EndPointType {
public:
    virtual ~EndPointType() = default;
    /// Below `baseURL`.
    virtual std::string path() const = 0;
    /// What follows the path.
    virtual std::string suffix() const = 0;
    /// The server's root, with a "/" at its end; empty: there is no server.
    virtual std::string baseURL() const = 0;
    /// `baseURL` and `path`; nothing without a server.
    virtual std::optional<std::string> url() const = 0;
    /// How it is to be asked for.
    virtual HTTPMethods method() const = 0;
};

} // namespace lamina
