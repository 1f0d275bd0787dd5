#include "GLCalls.h"
#include "GraphFixture.h"
#include "LogCapture.h"
#include "TestClips.h"
#include "gpu/endpoints/GPUImageMovieWriter.h"
#include "gpu/endpoints/RecordingTimes.h"
#include "platform/base/DispatchSemaphore.h"

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstddef>
#include <cstdint>
#include <future>
#include <numbers>
#include <span>
#include <sys/resource.h>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

using testing::DoubleNear;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::IsEmpty;
using testing::Pointwise;

constexpr int kRate = 48000;
constexpr double kFrame = 1.0 / 30;

CMTime frameTime(int number)
{
    return CMTime::make(number, 30);
}

GPUImageMovieWriterSettings unhurried()
{
    return {.crf = 10, .frameRate = 30, .encodingLiveVideo = false};
}

/// A grey that a frame's number can be read from again.
Rgba greyOf(int number)
{
    const auto level = static_cast<std::uint8_t>(40 + 3 * (number % 60));
    return {level, level, level, 255};
}

/// A tone of a frame's length.
CMSampleBuffer soundAt(const CMTime& time, float level)
{
    CMSampleBuffer sound;
    sound.presentationTime = time;
    sound.audio = std::make_shared<AudioBuffer>(AudioBuffer{kRate, 1, {}});
    for (int i = 0; i < kRate / 30; ++i)
        sound.audio->samples.push_back(level * static_cast<float>(std::sin(2 * std::numbers::pi * 1000 * i / kRate)));
    return sound;
}

/// Gives pictures that lie in our own memory alone.
class MemorySource : public GPUImageOutput {
public:
    void push(const CGImage& picture, const CMTime& time)
    {
        runSynchronouslyOnVideoProcessingQueue([&] {
            const CGSize size{static_cast<double>(picture.width()), static_cast<double>(picture.height())};
            auto framebuffer = GPUImageContext::sharedFramebufferCache().fetchFramebufferForSize(size, false);
            const std::span<const std::uint8_t> bytes = picture.bytes();
            std::ranges::copy(bytes, framebuffer->hostPixelsToWrite());
            pushToTargets({.framebuffer = framebuffer, .size = size, .time = time, .givesUpCount = true});
        });
    }
};

class MovieWriterTest : public GraphFixture {
protected:
    std::shared_ptr<GPUImageMovieWriter> makeWriter(CGSize size = {64, 48},
                                                    const GPUImageMovieWriterSettings& settings = unhurried())
    {
        auto writer = std::make_shared<GPUImageMovieWriter>(m_path, size, kAVFileTypeMPEG4, settings);
        m_source->addTarget(writer);
        return writer;
    }

    /// What the writer's end says, within a time that no test needs.
    void finish(GPUImageMovieWriter& writer)
    {
        DispatchSemaphore finished;
        writer.finishRecordingWithCompletionHandler([&] { finished.signal(); });
        ASSERT_TRUE(finished.wait(30));
        const std::optional<Error> error = writer.error();
        EXPECT_FALSE(error) << error->message();
    }

    static void expectNothingHeld()
    {
        onQueue([] {}); // counts that came from elsewhere
        EXPECT_EQ(idleFramebuffers(), GPUImageFramebufferCache::livingCount());
    }

    TemporaryFolder m_folder;
    std::string m_path = m_folder.path("movie.mp4");
};

TEST_F(MovieWriterTest, FramesStandAtTheirTimesAndAreGivenBack)
{
    std::vector<double> wanted;
    {
        const auto writer = makeWriter();
        writer->startRecording();
        for (int i = 0; i < 60; ++i) {
            const CMTime time = frameTime(i < 30 ? 7 + i : 9 + i); // two are missing in the middle
            wanted.push_back((time - frameTime(7)).seconds());
            for (int twice = 0; twice < 2; ++twice)
                m_source->push({64, 48}, greyOf(i + twice), time);
        }
        m_source->push({64, 48}, greyOf(0), kCMTimeIndefinite);
        m_source->push({64, 48}, greyOf(0), {});
        finish(*writer);
        EXPECT_DOUBLE_EQ(writer->duration().seconds(), wanted.back());
        expectNothingHeld();
        m_source->removeAllTargets();
    }
    EXPECT_THAT(frameTimes(m_path), Pointwise(DoubleNear(1e-4), wanted));
    for (const int frame : {0, 29, 59})
        EXPECT_TRUE(pixelMatches(decodedFrame(m_path, frame), 20, 20, greyOf(frame), 3)) << frame;
}

TEST_F(MovieWriterTest, FramesOfOtherSizesAndTurnedOnesFillTheMovie)
{
    const CGImage upright = quarters(96, 64);
    const CGImage turned = makePicture(64, 96, [&](int x, int y) { return pixelAt(upright, y, 63 - x); });
    const auto writer = makeWriter({96, 64});
    writer->startRecording();
    m_source->push(upright, frameTime(0));
    m_source->push(quarters(192, 32), frameTime(1));
    m_source->setRotation(kGPUImageRotateLeft);
    m_source->push(turned, frameTime(2));
    writer->setInputRotation(kGPUImageNoRotation, 0);
    const auto memory = std::make_shared<MemorySource>();
    memory->addTarget(writer);
    memory->push(upright, frameTime(3));
    finish(*writer);
    const std::vector<Rgba> wanted = quarterColors(upright);
    for (int frame = 0; frame < 4; ++frame) {
        const std::vector<Rgba> got = quarterColors(decodedFrame(m_path, frame));
        for (std::size_t i = 0; i < wanted.size(); ++i)
            EXPECT_LE(difference(got[i], wanted[i]), 4) << "frame " << frame << ", quarter " << i;
    }
}

TEST_F(MovieWriterTest, ManyFramesMakeNoGLObject)
{
    const auto writer = makeWriter();
    writer->startRecording();
    GLCalls before;
    for (int i = 0; i < 104; ++i) {
        if (i == 4)
            onQueue([&] { before = glCallsSoFar(); });
        m_source->push(i % 2 == 0 ? IntSize{64, 48} : IntSize{32, 32}, greyOf(i), frameTime(i));
    }
    finish(*writer);
    onQueue([&] { EXPECT_EQ((glCallsSoFar() - before).objects, 0); });
    expectNothingHeld();
}

/// A flash and a bang after two pauses, made at the same moment.
TEST_F(MovieWriterTest, PausesLeaveNoGapAndKeepPictureAndSoundTogether)
{
    const auto writer = makeWriter();
    writer->setHasAudioTrack(true, AVAudioSettings{.sampleRate = kRate});
    int heard = 0;
    writer->setAudioProcessingCallback([&](AudioBuffer& buffer, int count) {
        heard += count;
        for (float& sample : buffer.samples)
            sample *= 0.5F;
    });
    writer->setPaused(true); // before there is anything to pause
    writer->setPaused(false);
    writer->startRecording();
    const auto sound = [&](int i) { writer->processAudioBuffer(soundAt(frameTime(i), i == 170 ? 1.0F : 0.0F)); };
    const auto frame = [&](int i) { m_source->push({64, 48}, i == 170 ? greyOf(59) : greyOf(0), frameTime(i)); };
    for (int i = 0; i < 200; ++i) {
        writer->setPaused((i >= 20 && i < 80) || (i >= 100 && i < 160));
        // After the first pause the picture comes first, after the second the sound.
        if (i < 100)
            frame(i);
        sound(i);
        if (i >= 100)
            frame(i);
    }
    finish(*writer);
    EXPECT_EQ(heard, 80 * kRate / 30);

    const std::vector<double> all = frameTimes(m_path);
    ASSERT_EQ(all.size(), 79U) << "a frame that ends a pause takes the place of the last one before";
    for (std::size_t i = 1; i < all.size(); ++i)
        EXPECT_NEAR(all[i] - all[i - 1], kFrame, 1e-3) << i;
    const std::vector<float> samples = decodedSound(m_path);
    const auto bang = std::ranges::find_if(samples, [](float sample) { return std::abs(sample) > 0.2F; });
    const double bangTime = static_cast<double>(bang - samples.begin()) / 8000;
    const std::size_t flash = 49; // 20 + 20 + 10 frames less one
    EXPECT_TRUE(pixelMatches(decodedFrame(m_path, static_cast<int>(flash)), 20, 20, greyOf(59), 6));
    EXPECT_NEAR(bangTime, all[flash], kFrame);
    EXPECT_LT(*std::ranges::max_element(samples), 0.8F) << "as the callback has changed it";
}

TEST_F(MovieWriterTest, ALiveRecordingDropsWhatItHasNoRoomForAndSaysSo)
{
    const auto writer = makeWriter({640, 480}, {});
    writer->startRecording();
    const LogCapture log;
    const CGImage noise = noisePicture(640, 480, CGImageAlphaInfo::Last);
    for (int i = 0; i < 60; ++i)
        m_source->push(noise, frameTime(i));
    finish(*writer);
    EXPECT_THAT(log.text(), HasSubstr(": Had to drop a video frame: {"));
    expectNothingHeld();
}

TEST_F(MovieWriterTest, WhatIsNotFinishedLeavesNothing)
{
    bool handled = false;
    makeWriter()->finishRecordingWithCompletionHandler([&] { handled = true; });
    EXPECT_TRUE(handled) << "at once: it was never started";
    for (const bool cancels : {true, false}) {
        m_source->removeAllTargets();
        const auto writer = makeWriter();
        m_source->push({64, 48}, greyOf(0), frameTime(0)); // too early
        writer->startRecording();
        m_source->push({64, 48}, greyOf(1), frameTime(1));
        m_source->push({64, 48}, greyOf(2), frameTime(2));
        EXPECT_EQ(writer->duration(), frameTime(1));
        if (cancels)
            writer->cancelRecording();
    }
    m_source->removeAllTargets(); // the last one is destroyed while it records
    EXPECT_THAT(m_folder.names(), IsEmpty());
    expectNothingHeld();
}

TEST_F(MovieWriterTest, TheEndOfEverySourceReachesTheWriterAndIsToldOnce)
{
    const auto filter = multiplying(1);
    const auto writer = std::make_shared<GPUImageMovieWriter>(m_path, CGSize{64, 48}, kAVFileTypeMPEG4, unhurried());
    m_source->addTarget(filter);
    filter->addTarget(writer);
    DispatchSemaphore finished;
    int completions = 0;
    writer->setCompletionBlock([&] {
        ++completions;
        writer->finishRecordingWithCompletionHandler([&] { finished.signal(); });
    });
    writer->startRecording();
    for (int i = 0; i < 5; ++i)
        m_source->push({64, 48}, greyOf(i), frameTime(i));
    onQueue([&] {
        filter->endProcessing();
        writer->endProcessing();
    });
    ASSERT_TRUE(finished.wait(30));
    EXPECT_EQ(completions, 1);
    EXPECT_EQ(frameTimes(m_path).size(), 5U);
    finish(*writer); // again
}

TEST_F(MovieWriterTest, AFailureIsToldOnceAndNothingIsWritten)
{
    m_path = m_folder.path("missing/movie.mp4");
    const LogCapture log;
    const auto writer = makeWriter();
    std::vector<std::string> causes;
    writer->setFailureBlock([&](const Error& error) { causes.push_back(error.message()); });
    writer->startRecording();
    m_source->push({64, 48}, greyOf(0), frameTime(0));
    onQueue([] {});
    EXPECT_THAT(causes, ElementsAre(HasSubstr("missing/movie.mp4: ")));
    EXPECT_FALSE(writer->isRecording());
    ASSERT_TRUE(writer->error());
}

/// As a movie drives it: the inputs ask for what comes next until there is no more.
TEST_F(MovieWriterTest, InLockstepTheInputsAskForWhatIsWritten)
{
    const auto writer = makeWriter();
    writer->setHasAudioTrack(true);
    std::promise<void> ended[2];
    // Gives so many pieces, and says once that there are no more.
    const auto pieces = [](int most, std::promise<void>& end, const std::function<void(int)>& give) {
        return [most, &end, give, given = std::make_shared<int>(0)] {
            if (*given < most)
                give(*given);
            else if (*given == most)
                end.set_value();
            return (*given)++ < most;
        };
    };
    writer->setVideoInputReadyCallback(pieces(20, ended[0], [&](int i) {
        m_source->push({64, 48}, greyOf(i), frameTime(i));
    }));
    writer->setAudioInputReadyCallback(
        pieces(30, ended[1], [&](int i) { writer->processAudioBuffer(soundAt(frameTime(i), 0)); }));
    writer->startRecording();
    writer->enableSynchronizationCallbacks();
    for (std::promise<void>& end : ended)
        ASSERT_EQ(end.get_future().wait_for(std::chrono::seconds(30)), std::future_status::ready);
    finish(*writer);
    EXPECT_EQ(frameTimes(m_path).size(), 20U);
    EXPECT_NEAR(static_cast<double>(decodedSound(m_path).size()) / 8000, 1, 0.05);
}

TEST_F(MovieWriterTest, InLockstepAFullDeviceIsToldToo)
{
    const auto writer = makeWriter({320, 240});
    writer->assetWriter()->setMovieFragmentInterval(kCMTimeZero);
    DispatchSemaphore failed;
    writer->setFailureBlock([&](const Error&) { failed.signal(); });
    const CGImage noise = noisePicture(320, 240, CGImageAlphaInfo::Last);
    int next = 0;
    writer->setVideoInputReadyCallback([&] {
        m_source->push(noise, frameTime(next++));
        return true;
    });
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{100'000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    writer->startRecording();
    writer->enableSynchronizationCallbacks();
    EXPECT_TRUE(failed.wait(30));
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_FALSE(writer->isRecording());
}

TEST(RecordingTimesTest, OnePauseIsTakenOutOnceWhicheverComesFirst)
{
    const auto at = [](int value) { return CMTime::make(value, 10); };
    RecordingTimes times;
    const auto pause = [&] {
        times.setPaused(true);
        times.setPaused(false);
    };
    pause();
    EXPECT_EQ(times.takeFrame(at(5)), at(5)) << "nothing came before";
    times.start(at(5));
    EXPECT_EQ(times.takeSound(at(7), CMTime::make(1, 10)), kCMTimeZero);
    times.setPaused(true);
    EXPECT_FALSE(times.takeFrame(at(8))) << "one that was on its way";
    times.setPaused(false);
    pause();
    EXPECT_EQ(times.takeSound(at(27)), at(19)) << "behind the sound before";
    EXPECT_EQ(times.takeFrame(at(28)), at(9));
    EXPECT_FALSE(times.takeFrame(at(28)));
    EXPECT_FALSE(times.takeFrame(at(26))) << "earlier";
    pause();
    EXPECT_FALSE(times.takeFrame(at(48))) << "in the place of the last one";
    EXPECT_EQ(times.offsetTime(), at(39));
    EXPECT_FALSE(times.takeSound(at(47), kCMTimeZero, true)) << "a packet can't be cut where it overlaps the last one";
    EXPECT_EQ(times.takeSound(at(49), kCMTimeZero, true), at(39));
    EXPECT_EQ(times.duration(), at(4));
}

} // namespace
} // namespace lamina::test
