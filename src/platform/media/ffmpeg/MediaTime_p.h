#pragma once

#include "platform/base/CMTime.h"
#include "platform/media/ffmpeg/FFmpegHandles_p.h"

#include <algorithm>
#include <cstdint>

namespace lamina {

/// So many ticks of a stream's clock, exactly; invalid where they aren't told.
inline CMTime mediaTime(std::int64_t ticks, AVRational unit)
{
    if (ticks == AV_NOPTS_VALUE || unit.num <= 0 || unit.den <= 0)
        return kCMTimeInvalid;
    const std::int64_t most = INT64_MAX / 4 / unit.num;
    return CMTime::make(std::clamp(ticks, -most, most) * unit.num, unit.den);
}

/// The duration of a packet or frame; invalid where it isn't told.
inline CMTime mediaDuration(std::int64_t ticks, AVRational unit)
{
    return ticks > 0 ? mediaTime(ticks, unit) : kCMTimeInvalid;
}

} // namespace lamina
