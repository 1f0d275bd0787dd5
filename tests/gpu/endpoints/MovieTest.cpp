#include "GraphFixture.h"
#include "LogCapture.h"
#include "MovieEnding.h"
#include "TestClips.h"
#include "gpu/endpoints/GPUImageMovie.h"
#include "platform/base/Clock.h"
#include "platform/media/AVPlayerItem.h"

#include <array>
#include <cstdint>
#include <cstring>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <thread>

namespace lamina::test {
namespace {

using testing::ElementsAre;
using testing::HasSubstr;
using Words = std::vector<std::string>;

const Words kEncoded = {"-c:v", "libx264", "-bf", "2", "-pix_fmt", "yuv420p"};

class MovieTest : public GraphFixture {
protected:
    /// Ten frames a second of four colours.
    std::string clip(const std::string& frames = "10", const Words& options = kEncoded)
    {
        const std::string path = m_folder.path("clip.mov");
        makeQuartersClip(path, {64, 48}, "scale=out_color_matrix=bt709,setparams=colorspace=bt709", options, frames);
        return path;
    }
    std::string clipWithSound()
    {
        const std::string path = m_folder.path("sound.mov");
        makeClip(
            {"-f", "lavfi", "-i", "testsrc=s=64x48:r=10:d=1", "-f", "lavfi", "-i", "sine=d=1", "-pix_fmt", "yuv420p"},
            path);
        return path;
    }

    const TemporaryFolder m_folder;
};

/// A target of frames' sound, and a writer that is pulled from outside.
class PullingWriter : public GPUImageSynchronizedWriter, public GPUImageAudioEncodingTarget {
public:
    void setVideoInputReadyCallback(InputReadyCallback callback) override { video = std::move(callback); }
    void setAudioInputReadyCallback(InputReadyCallback callback) override { audio = std::move(callback); }
    void enableSynchronizationCallbacks() override { isEnabled = true; }
    bool hasAudioTrack() const override { return true; }
    void setHasAudioTrack(bool) override {}
    bool shouldPassthroughAudio() const override { return false; }
    void setShouldInvalidateAudioSampleWhenDone(bool should) override { invalidates = should; }
    void processAudioBuffer(const CMSampleBuffer& piece) override { moments += piece.audio->sampleCount(); }

    /// Asks until there is nothing; how often there was something.
    static int pulled(const InputReadyCallback& callback)
    {
        int count = 0;
        while (InputReadyCallback(callback)())
            ++count;
        return count;
    }

    InputReadyCallback video;
    InputReadyCallback audio;
    bool isEnabled = false;
    bool invalidates = false;
    int moments = 0;
};

TEST_F(MovieTest, GivesEveryFrameAtItsTimeAndThenTheEnd)
{
    const auto movie = std::make_shared<GPUImageMovie>(clip());
    const auto ending = MovieEnding::of(*movie);
    const auto filter = multiplying(1);
    movie->addTarget(filter);
    const auto consumer = consumerOf(*filter);
    EXPECT_EQ(movie->progress(), 0);
    movie->processAsset();
    ASSERT_EQ(consumer->frames().size(), 10U);
    for (int i = 0; i < 10; ++i)
        EXPECT_EQ(consumer->frames()[static_cast<std::size_t>(i)].time, CMTime::make(i, 10));
    const auto wanted = quarterColors(decodedFrame(movie->url(), 4));
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_LE(difference(quarterColors(consumer->frames()[4].pixels)[i], wanted[i]), 2) << i;
    EXPECT_EQ(consumer->endings(), 1);
    EXPECT_THAT(ending->calls(), ElementsAre("completed"));
    EXPECT_TRUE(movie->audioEncodingIsFinished());
    EXPECT_EQ(movie->progress(), 1);
    movie->endProcessing();
    EXPECT_EQ(consumer->endings(), 1);
}

TEST_F(MovieTest, PlanesThatAreConvertedOnTheDeviceLookAsFFmpegShowsThem)
{
    for (const bool full : {false, true}) {
        const std::string range = full ? "pc" : "tv";
        const std::string path = m_folder.path("planes.mov");
        makeQuartersClip(path, {64, 48},
                         "scale=out_color_matrix=bt709:out_range=" + range +
                             ",format=yuv420p,setparams=range=" + range + ":colorspace=bt709",
                         {"-c:v", "libx264", "-crf", "8"}, "1");
        const auto movie = std::make_shared<GPUImageMovie>(path);
        movie->setConvertsOnDevice(true);
        const auto consumer = consumerOf(*movie);
        movie->processAsset();
        ASSERT_EQ(consumer->frames().size(), 1U);
        EXPECT_EQ(movie->isFullYUVRange(), full);
        const auto wanted = quarterColors(decodedFrame(path, 0));
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_LE(difference(quarterColors(consumer->last().pixels)[i], wanted[i]), 2) << range << " quarter " << i;
    }
}

TEST_F(MovieTest, EveryTransformStandsUprightBehindTheFirstFilter)
{
    // a, b, c and d of the track's matrix: quarter turns, and mirrored ones.
    const std::array<int, 4> matrices[] = {{1, 0, 0, 1},  {0, 1, -1, 0},  {-1, 0, 0, -1}, {0, -1, 1, 0},
                                           {-1, 0, 0, 1}, {0, -1, -1, 0}, {1, 0, 0, -1},  {0, 1, 1, 0}};
    std::ifstream stored(clip("1"), std::ios::binary);
    std::string bytes{std::istreambuf_iterator<char>(stored), {}};
    const std::size_t matrix = bytes.find("tkhd") + 44;
    for (const auto& [a, b, c, d] : matrices) {
        const int values[] = {a, b, c, d};
        const std::size_t places[] = {0, 4, 12, 16};
        for (std::size_t i = 0; i < 4; ++i) {
            const auto high = static_cast<std::uint16_t>(values[i]); // of a number with 16 bits behind the point
            bytes.replace(matrix + places[i], 4, {char(high >> 8), char(high & 0xFF), 0, 0});
        }
        const std::string path = m_folder.path("turned.mov");
        std::ofstream(path, std::ios::binary) << bytes;
        const auto movie = std::make_shared<GPUImageMovie>(path);
        const auto filter = multiplying(1);
        movie->addTarget(filter);
        const auto consumer = consumerOf(*filter);
        movie->processAsset();
        ASSERT_EQ(consumer->frames().size(), 1U);
        const CGImage wanted = decodedFrame(path, 0);
        ASSERT_EQ(consumer->last().pixels.size(), wanted.size()) << a << b << c << d;
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_LE(difference(quarterColors(consumer->last().pixels)[i], quarterColors(wanted)[i]), 2)
                << a << b << c << d << " quarter " << i;
    }
}

TEST_F(MovieTest, RepeatsWithoutAnEndInBetweenUntilItIsTold)
{
    auto movie = std::make_shared<GPUImageMovie>(clip("3"));
    movie->setShouldRepeat(true);
    const auto ending = MovieEnding::of(*movie);
    const auto consumer = consumerOf(*movie);
    movie->startProcessing();
    const std::weak_ptr<GPUImageMovie> running = std::exchange(movie, nullptr);
    const auto frames = [&] { return valueFromVideoProcessingQueue([&] { return consumer->frames().size(); }); };
    while (frames() < 8)
        DispatchQueue::main().drain();
    EXPECT_EQ(consumer->endings(), 0);
    ASSERT_TRUE(running.lock());
    running.lock()->cancelProcessing();
    EXPECT_EQ(consumer->endings(), 1);
    EXPECT_THAT(ending->calls(), ElementsAre("completed"));
    EXPECT_EQ(consumer->frames()[3].time, kCMTimeZero);
    const std::size_t seen = consumer->frames().size();
    DispatchQueue::main().drain();
    EXPECT_EQ(frames(), seen);
}

TEST_F(MovieTest, ARepeatOfAStretchWithoutFramesEnds)
{
    const auto movie = std::make_shared<GPUImageMovie>(clip("3"));
    movie->setShouldRepeat(true);
    movie->setTimeRange({CMTime::make(5, 1), CMTime::make(1, 1)});
    const auto consumer = consumerOf(*movie);
    movie->processAsset();
    EXPECT_EQ(consumer->endings(), 1);
}

TEST_F(MovieTest, PacesByOneClockAndEndsItsSleepWhenCancelled)
{
    // A clock that stands still makes every frame early: the movie sleeps before its second until it is cancelled.
    const auto standing = std::make_shared<ManualClock>(5);
    Clock::setShared(standing);
    auto movie = std::make_shared<GPUImageMovie>(clip("1000", {"-c:v", "mjpeg"}));
    movie->setPlayAtActualSpeed(true);
    const auto consumer = consumerOf(*movie);
    movie->startProcessing();
    while (valueFromVideoProcessingQueue([&] { return consumer->frames().empty(); }))
        std::this_thread::yield();
    movie->cancelProcessing();
    EXPECT_LT(consumer->frames().size(), 5U);

    // One that runs ahead with each frame makes all of them late, and none is waited for.
    const auto filter = multiplying(1);
    filter->setFrameProcessingCompletionBlock([&](GPUImageOutput&, const CMTime&) { standing->advance(1); });
    movie = std::make_shared<GPUImageMovie>(movie->url());
    movie->setPlayAtActualSpeed(true);
    movie->addTarget(filter);
    const auto late = consumerOf(*filter);
    movie->processAsset();
    EXPECT_EQ(late->frames().size(), 1000U);
    Clock::setShared(nullptr);
}

TEST_F(MovieTest, TellsWhatEndsItInTheMiddleAndWhatKeepsItFromStarting)
{
    const std::string whole = clip("50", {"-c:v", "mjpeg", "-movflags", "+faststart"});
    std::filesystem::resize_file(whole, std::filesystem::file_size(whole) / 2);
    auto movie = std::make_shared<GPUImageMovie>(whole);
    auto ending = MovieEnding::of(*movie);
    auto consumer = consumerOf(*movie);
    movie->processAsset();
    EXPECT_GT(consumer->frames().size(), 10U);
    EXPECT_LT(consumer->frames().size(), 50U);
    EXPECT_EQ(consumer->endings(), 1);
    ASSERT_TRUE(movie->error());
    EXPECT_EQ(movie->error()->subject, whole);
    EXPECT_THAT(ending->calls(), ElementsAre("failed: " + movie->error()->message(), "completed"));

    LogCapture log;
    movie = std::make_shared<GPUImageMovie>(m_folder.path("missing.mp4"));
    ending = MovieEnding::of(*movie);
    consumer = consumerOf(*movie);
    movie->processAsset();
    EXPECT_THAT(log.text(), HasSubstr("Error reading from file at URL: " + movie->url()));
    EXPECT_EQ(consumer->endings(), 0);
    ASSERT_TRUE(movie->error());
    EXPECT_THAT(ending->calls(), ElementsAre("failed: " + movie->error()->message()));
}

TEST_F(MovieTest, AWriterInLockstepPullsPictureAndSound)
{
    const auto movie = std::make_shared<GPUImageMovie>(clipWithSound());
    const auto writer = std::make_shared<PullingWriter>();
    const auto ending = MovieEnding::of(*movie);
    const auto consumer = consumerOf(*movie);
    movie->setAudioEncodingTarget(writer);
    movie->enableSynchronizedEncodingUsingMovieWriter(writer);
    movie->processAsset();
    ASSERT_TRUE(writer->isEnabled && writer->invalidates);
    const GPUImageSynchronizedWriter::InputReadyCallback audio = writer->audio;
    const GPUImageSynchronizedWriter::InputReadyCallback video = writer->video;
    std::thread sound([&] { PullingWriter::pulled(audio); });
    EXPECT_EQ(PullingWriter::pulled(video), 10);
    sound.join();
    EXPECT_NEAR(writer->moments, 44100, 2048);
    EXPECT_EQ(consumer->frames().size(), 10U);
    EXPECT_EQ(consumer->endings(), 1);
    EXPECT_THAT(ending->calls(), ElementsAre("completed"));
    EXPECT_FALSE(writer->video());
}

TEST_F(MovieTest, FollowsAPlayerThroughPausesAndSeeks)
{
    const auto clock = std::make_shared<ManualClock>(100);
    Clock::setShared(clock);
    const auto asset = AVURLAsset::make(clip());
    ASSERT_TRUE(asset) << asset.error().message();
    const auto item = std::make_shared<AVPlayerItem>(*asset);
    const auto movie = std::make_shared<GPUImageMovie>(item);
    const auto ending = MovieEnding::of(*movie);
    const auto consumer = consumerOf(*movie);
    const auto waitForFrames = [&](std::size_t count) {
        while (valueFromVideoProcessingQueue([&] { return consumer->frames().size(); }) < count)
            std::this_thread::yield();
    };
    movie->startProcessing();
    waitForFrames(1); // standing still it shows the frame on which it stands
    item->play();
    clock->advance(0.25);
    item->pause();
    clock->advance(3);
    EXPECT_NEAR(item->currentTime().seconds(), 0.25, 1e-4);
    const std::size_t shown = valueFromVideoProcessingQueue([&] { return consumer->frames().size(); });
    item->seekToTime(CMTime::make(75, 100));
    waitForFrames(shown + 1);
    EXPECT_EQ(consumer->last().time, CMTime::make(7, 10));
    item->play();
    while (ending->calls().empty())
        clock->advance(1.0 / 60);
    EXPECT_THAT(ending->calls(), ElementsAre("completed"));
    EXPECT_EQ(consumer->last().time, CMTime::make(9, 10));
    EXPECT_EQ(consumer->endings(), 1);
    Clock::setShared(nullptr);
}

} // namespace
} // namespace lamina::test
