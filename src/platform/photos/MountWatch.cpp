#include "platform/photos/MountWatch_p.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <fcntl.h>
#include <iterator>
#include <sstream>
#include <unistd.h>
#include <utility>

namespace lamina {

namespace {

/// Spaces and the like are written as a backslash and three octal digits.
std::string unescaped(const std::string& text)
{
    constexpr std::size_t kDigits = 3;
    std::string result;
    for (std::size_t i = 0; i < text.size(); ++i) {
        if (text[i] == '\\' && i + kDigits < text.size()) {
            result += static_cast<char>(((text[i + 1] - '0') << 6) | ((text[i + 2] - '0') << 3) | (text[i + 3] - '0'));
            i += kDigits;
        } else {
            result += text[i];
        }
    }
    return result;
}

} // namespace

MountWatch::MountWatch()
    : m_table(open("/proc/self/mountinfo", O_RDONLY | O_CLOEXEC))
    , m_mounts(read())
{
}

std::multiset<std::string> MountWatch::read() const
{
    std::string text;
    std::array<char, 16384> buffer;
    ssize_t length = 0;
    lseek(m_table.get(), 0, SEEK_SET);
    while ((length = ::read(m_table.get(), buffer.data(), buffer.size())) > 0)
        text.append(buffer.data(), static_cast<std::size_t>(length));
    std::multiset<std::string> mounts;
    std::istringstream lines(text);
    for (std::string line; std::getline(lines, line);) {
        std::istringstream fields(line);
        std::string id, parent, device, within, point;
        if (fields >> id >> parent >> device >> within >> point)
            mounts.insert(unescaped(point));
    }
    return mounts;
}

std::vector<std::string> MountWatch::takeChanges()
{
    const std::multiset<std::string> former = std::exchange(m_mounts, read());
    std::vector<std::string> changes;
    std::ranges::set_symmetric_difference(former, m_mounts, std::back_inserter(changes));
    return changes;
}

} // namespace lamina
