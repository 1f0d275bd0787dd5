#include "platform/files/FileURL.h"

#include "platform/files/ASCIICase.h"
#include "platform/files/FileCauses.h"

#include <cstddef>
#include <cstdint>
#include <optional>

namespace lamina {

namespace {

std::optional<std::uint8_t> hexDigit(char digit)
{
    if (digit >= '0' && digit <= '9')
        return static_cast<std::uint8_t>(digit - '0');
    const char lower = lowercased(digit);
    if (lower >= 'a' && lower <= 'f')
        return static_cast<std::uint8_t>(lower - 'a' + 10);
    return std::nullopt;
}

std::string percentDecoded(std::string_view text)
{
    std::string decoded;
    decoded.reserve(text.size());
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '%' && i + 2 < text.size()) {
            const auto high = hexDigit(text[i + 1]);
            const auto low = hexDigit(text[i + 2]);
            if (high && low) {
                decoded.push_back(static_cast<char>(*high << 4 | *low));
                i += 2;
                continue;
            }
        }
        decoded.push_back(text[i]);
    }
    return decoded;
}

/// Takes `prefix`, in any case, from the beginning of the text.
bool take(std::string_view& text, std::string_view prefix)
{
    if (!equalIgnoringCase(text.substr(0, prefix.size()), prefix))
        return false;
    text.remove_prefix(prefix.size());
    return true;
}

/// Takes the part between "//" and the path from the beginning of the text, and gives its host.
std::string_view takeHost(std::string_view& text)
{
    if (!take(text, "//"))
        return {};
    std::string_view authority = text.substr(0, text.find('/'));
    text.remove_prefix(authority.size());
    return authority.substr(authority.find('@') + 1); // from the beginning where there is none
}

std::string shownName(std::string_view url, std::string_view path)
{
    if (const std::string_view last = path.substr(path.find_last_of('/') + 1); !last.empty())
        return percentDecoded(last);
    const std::size_t authority = url.find("//");
    const std::size_t user = url.find('@');
    if (authority == std::string_view::npos || user == std::string_view::npos || user < authority)
        return std::string(url);
    return std::string(url.substr(0, authority + 2)) + std::string(url.substr(user + 1));
}

} // namespace

Result<std::string> pathOfFileURL(std::string_view url)
{
    std::string_view rest = url.substr(0, url.find_first_of("?#"));
    const bool isFile = take(rest, "file:");
    if (!isFile)
        rest.remove_prefix(rest.find(':') + 1);
    const std::string_view host = takeHost(rest);
    if (!isFile || !(host.empty() || equalIgnoringCase(host, "localhost")))
        return Error{shownName(url, rest), "the file is not on this device"};
    std::string path = percentDecoded(rest);
    if (path.empty() || path.front() != '/' || path.find('\0') != std::string::npos)
        return Error{shownName(url, rest), cause::kNoFileName};
    return path;
}

std::string fileURLOfPath(std::string_view path)
{
    constexpr std::string_view kPlain = "/-._~!$&'()*+,:=@"; // and not the semicolon
    constexpr std::string_view kDigits = "0123456789ABCDEF";
    std::string url = "file://";
    for (const char c : path) {
        const auto byte = static_cast<unsigned char>(c);
        if ((c >= '0' && c <= '9') || (lowercased(c) >= 'a' && lowercased(c) <= 'z') ||
            kPlain.find(c) != std::string_view::npos)
            url += c;
        else
            (url += '%') += {kDigits[byte >> 4], kDigits[byte & 15]};
    }
    return url;
}

} // namespace lamina
