#include "cli/movie/MovieJob.h"

#include "platform/base/DispatchQueue.h"

#include <algorithm>
#include <array>

namespace lamina {

IntSize uprightSize(const AVVideoTrack& picture)
{
    const IntSize stored = picture.naturalSize;
    return picture.preferredTransform.swapsSides() ? IntSize{stored.height, stored.width} : stored;
}

void MovieProgress::finish()
{
    m_isOver = true;
    DispatchQueue::main().async([] {}); // wakes who waits
}

void MovieProgress::wait(const std::function<void()>& meanwhile) const
{
    constexpr double kPause = 0.1;
    while (!DispatchQueue::main().runUntil([this] { return isOver(); }, kPause)) {
        if (meanwhile)
            meanwhile();
    }
}

void MovieProgress::waitFor(const MovieJob& job, const std::function<void(double)>& tell) const
{
    wait([&] { tell(share(job)); });
}

double MovieProgress::share(const MovieJob& job) const
{
    const double start = job.range.start.seconds();
    const double whole = job.asset->duration().seconds() - start;
    const double length = std::min(whole > 0 ? whole : 0, job.range.duration.seconds());
    return m_frames > 0 && length > 0 ? std::clamp((m_seconds - start) / length, 0.0, 1.0) : 0;
}

AVAudioSettings soundSettings(const AVAudioTrack& sound)
{
    constexpr std::array kRates{7350,  8000,  11025, 12000, 16000, 22050, 24000,
                                32000, 44100, 48000, 64000, 88200, 96000};
    constexpr int kMostChannels = 6;
    constexpr int kBitsAChannel = 64000;
    const auto* const rate = std::ranges::lower_bound(kRates, sound.sampleRate);
    const int channels = std::clamp(sound.channels, 1, kMostChannels);
    return {rate == kRates.end() ? kRates.back() : *rate, channels, kBitsAChannel * channels};
}

MovieEnd endOf(const std::string& input, const std::optional<Error>& reading, const WriterControl& writing,
               const MovieProgress& progress, const std::function<void()>& meanwhile)
{
    if (const std::optional<Error> failed = writing.error()) {
        writing.cancel();
        return MovieEnd::failed(*failed, ExitCode::Output);
    }
    if (reading || progress.frames() == 0) {
        writing.cancel();
        return MovieEnd::failed(reading.value_or(Error{input, "holds no frame there"}), ExitCode::Input);
    }
    MovieProgress finishing;
    writing.finish([&finishing] { finishing.finish(); });
    finishing.wait(meanwhile);
    if (const std::optional<Error> failed = writing.error())
        return MovieEnd::failed(*failed, ExitCode::Output);
    MovieEnd end;
    end.frames = progress.frames();
    return end;
}

} // namespace lamina
