#include "Surroundings.h"
#include "TestClips.h"
#include "TestPictures.h"

#include "platform/media/AVAssetWriter.h"

#include <gtest/gtest.h>

#include <chrono>
#include <cmath>
#include <csignal>
#include <cstring>
#include <filesystem>
#include <functional>
#include <future>
#include <sys/resource.h>
#include <sys/wait.h>
#include <thread>
#include <unistd.h>

namespace lamina::test {
namespace {

using Names = std::vector<std::string>;
using nlohmann::json;
using Input = std::shared_ptr<AVAssetWriterInput>;
using Writer = std::unique_ptr<AVAssetWriter>;

std::shared_ptr<CVPixelBuffer> quartersIn(IntSize size)
{
    const CGImage picture = quarters(size.width, size.height);
    auto pixels = CVPixelBuffer::make(size, CVPixelFormat::BGRA);
    const CVPixelBuffer::Plane& plane = pixels->planes()[0];
    for (int y = 0; y < size.height; ++y)
        for (int x = 0; x < size.width; ++x) {
            const Rgba color = pixelAt(picture, x, y);
            const std::uint8_t bytes[4] = {color[2], color[1], color[0], 255};
            std::memcpy(plane.bytes + static_cast<std::size_t>(y) * plane.bytesPerRow + 4 * x, bytes, 4);
        }
    return pixels;
}

CMSampleBuffer frameAt(const std::shared_ptr<CVPixelBuffer>& pixels, const CMTime& time)
{
    CMSampleBuffer frame;
    frame.presentationTime = time;
    frame.imageBuffer = pixels;
    return frame;
}

/// A tone of 440 Hz of one channel at 22,050 Hz: samples [first, first + count), at a time that is `late`.
CMSampleBuffer tone(std::int64_t first, int count, const CMTime& late = kCMTimeZero)
{
    constexpr int kRate = 22'050;
    auto audio = std::make_shared<AudioBuffer>();
    audio->sampleRate = kRate;
    audio->channels = 1;
    for (int i = 0; i < count; ++i)
        audio->samples.push_back(
            static_cast<float>(0.5 * std::sin(2 * M_PI * 440 * static_cast<double>(first + i) / kRate)));
    CMSampleBuffer piece;
    piece.presentationTime = CMTime::make(first, kRate) + late;
    piece.audio = audio;
    return piece;
}

Writer writerOf(const std::string& path, const char* type = kAVFileTypeMPEG4)
{
    Result<Writer> writer = AVAssetWriter::make(path, type);
    EXPECT_TRUE(writer);
    return std::move(*writer);
}

void put(const Input& input, const CMSampleBuffer& piece)
{
    ASSERT_TRUE(input->waitUntilReady(20));
    ASSERT_TRUE(input->appendSampleBuffer(piece));
}

void finish(AVAssetWriter& writer)
{
    std::promise<void> done;
    writer.finishWriting([&] { done.set_value(); });
    done.get_future().wait();
}

/// The times of a track's frames or packets, sorted, as ffprobe reads them.
std::vector<double> timesOf(const std::string& path, const std::string& track)
{
    std::vector<double> times;
    for (const json& packet : probePackets(path, track)) {
        times.push_back(std::stod(packet.value("pts_time", "-99")));
    }
    std::sort(times.begin(), times.end());
    return times;
}

double loudness(const std::vector<float>& samples, double from, double to)
{
    double sum = 0;
    const auto first = static_cast<std::size_t>(from * 8000);
    const auto last = std::min(samples.size(), static_cast<std::size_t>(to * 8000));
    for (std::size_t i = first; i < last; ++i)
        sum += samples[i] * samples[i];
    return last > first ? std::sqrt(sum / static_cast<double>(last - first)) : 0;
}

struct Container {
    const char* name;
    const char* type;
    double precision; ///< of times, in seconds
};

class MovieContainer : public testing::TestWithParam<Container> {};

/// Frames at uneven times, the session from a late one on; sound that begins later, with a gap.
TEST_P(MovieContainer, HoldsFramesAndSoundAtTheirTimes)
{
    const TemporaryFolder folder;
    const std::string path = folder.path(std::string("a.") + GetParam().name);
    const auto pixels = quartersIn({95, 63});
    const std::vector<int> times = {0, 1001, 2002, 9009, 10'010, 11'011, 12'012, 24'024, 25'025, 48'048};
    const CMTime start = CMTime::make(7'200'000, 24'000);
    for (const double fragments : {0.0, 0.5}) {
        const Writer writer = writerOf(path, GetParam().type);
        writer->setMovieFragmentInterval(CMTime::makeWithSeconds(fragments, 1000));
        writer->setMetadata({{"title", "Ein Tag"}});
        const Input video = *writer->addVideoInput({.size = {95, 63}, .crf = 12, .frameRate = 24});
        const Input audio = *writer->addAudioInput({});
        ASSERT_TRUE(writer->startWriting());
        writer->startSessionAtSourceTime(start);
        put(audio, tone(-441, 882, start)); // half of it before the beginning
        std::thread sound([&] {
            for (int i = 0; i < 40; ++i) // until 0.5 seconds, then from 1 second on
                put(audio, tone((i < 20 ? 441 : 11'466) + i * 529, 529, start));
            audio->markAsFinished();
        });
        for (const int time : times)
            put(video, frameAt(pixels, start + CMTime::make(time, 24'000)));
        sound.join();
        finish(*writer);
        ASSERT_EQ(writer->status(), AVAssetWriterStatus::Completed) << writer->error()->message();

        const std::vector<double> got = timesOf(path, "v");
        ASSERT_EQ(got.size(), times.size());
        for (std::size_t i = 0; i < got.size(); ++i)
            EXPECT_NEAR(got[i], times[i] / 24'000.0, GetParam().precision) << i;
        const json file = probe(path);
        EXPECT_EQ(file["format"]["tags"].value("title", file["format"]["tags"].value("TITLE", "")), "Ein Tag");
        EXPECT_EQ(file["streams"][0]["pix_fmt"], "yuv420p");
        EXPECT_EQ(file["streams"][0]["width"], 96);
        EXPECT_EQ(file["streams"][0]["height"], 64);
        EXPECT_EQ(file["streams"][0]["color_space"], "bt709");
        EXPECT_EQ(file["streams"][0]["color_range"], "tv");
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_LE(difference(quarterColors(decodedFrame(path, 8))[i], quarterColors(quarters(96, 64))[i]), 4) << i;
        const std::vector<float> samples = decodedSound(path);
        EXPECT_GT(loudness(samples, 0.01, 0.49), 0.3);
        EXPECT_LT(loudness(samples, 0.52, 0.98), 0.01);
        EXPECT_GT(loudness(samples, 1.01, 1.45), 0.3);
        EXPECT_EQ(folder.names(), Names{std::filesystem::path(path).filename()});
    }
}

INSTANTIATE_TEST_SUITE_P(, MovieContainer,
                         testing::Values(Container{"mp4", kAVFileTypeMPEG4, 1e-6},
                                         Container{"mov", kAVFileTypeQuickTimeMovie, 1e-6},
                                         Container{"mkv", kAVFileTypeMatroska, 6e-4}),
                         [](const auto& tested) { return tested.param.name; });

} // namespace
} // namespace lamina::test
