#include "platform/image/codecs/WindowedSource_p.h"

#include <algorithm>
#include <cstring>

namespace lamina {

std::size_t WindowedSource::read(std::uint64_t offset, std::span<std::uint8_t> target)
{
    const auto isInside = [&] { return offset >= m_start && offset - m_start < m_filled; };
    if (target.size() > m_window.size())
        return fetch(offset, target);
    const bool reachesOut = !isInside() || m_filled - (offset - m_start) < target.size();
    const bool endsFile = m_start + m_filled >= m_source.size(); // nothing would follow what the window holds
    if (reachesOut && !(isInside() && endsFile)) {
        m_filled = fetch(offset, m_window);
        m_start = offset;
    }
    if (!isInside())
        return 0;
    const auto skipped = static_cast<std::size_t>(offset - m_start);
    const std::size_t count = std::min(target.size(), m_filled - skipped);
    std::memcpy(target.data(), m_window.data() + skipped, count);
    return count;
}

std::size_t WindowedSource::fetch(std::uint64_t offset, std::span<std::uint8_t> target)
{
    if (offset >= m_source.size())
        return 0;
    if (m_bytesLeft < target.size()) {
        m_exhausted = true;
        return 0;
    }
    // Counted in full also at the file's end, where a loop of reads that find little would else go on for long.
    m_bytesLeft -= target.size();
    return m_source.read(offset, target);
}

} // namespace lamina
