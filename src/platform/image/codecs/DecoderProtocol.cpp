#include "platform/image/codecs/DecoderProtocol_p.h"

#include "platform/image/pixels/CGImage.h"

#include <algorithm>

namespace lamina::decoder {

Sentence::Sentence(std::string_view text)
{
    text.copy(m_characters.data(), m_characters.size() - 1);
}

std::optional<std::string> Sentence::text() const
{
    const auto end = std::ranges::find(m_characters, '\0');
    const bool isPrintable = std::all_of(m_characters.begin(), end, [](char c) { return c >= ' ' && c <= '~'; });
    return end != m_characters.end() && isPrintable ? std::optional(std::string(m_characters.begin(), end))
                                                    : std::nullopt;
}

std::uint64_t pixelBytes(const Answer& answer)
{
    return 4 * static_cast<std::uint64_t>(answer.width) * static_cast<std::uint64_t>(answer.height);
}

bool isPossible(const Answer& answer, const Request& request)
{
    const std::optional<std::string> cause = answer.cause.text();
    if (!cause || !answer.warning.text())
        return false;
    if (answer.isPicture == 0)
        return !cause->empty();
    if (answer.width <= 0 || answer.height <= 0 || answer.width > kMaximumClaimedSide ||
        answer.height > kMaximumClaimedSide || pixelBytes(answer) > request.pixelBytes)
        return false;
    const auto alpha = static_cast<CGImageAlphaInfo>(answer.alphaInfo);
    return (alpha == CGImageAlphaInfo::Last || alpha == CGImageAlphaInfo::NoneSkipLast) && answer.orientation >= 0 &&
           answer.orientation <= static_cast<std::int32_t>(UIImageOrientation::RightMirrored);
}

} // namespace lamina::decoder
