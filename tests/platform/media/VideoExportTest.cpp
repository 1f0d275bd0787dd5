#include "CommandRunner.h"
#include "Surroundings.h"
#include "TestClips.h"

#include "platform/media/Clip.h"
#include "platform/media/VideoExport.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <atomic>
#include <chrono>
#include <cmath>
#include <cstdio>
#include <cstdlib>
#include <ctime>
#include <filesystem>
#include <numeric>
#include <optional>
#include <sys/resource.h>
#include <thread>
#include <utility>

namespace lamina::test {
namespace {

using Names = std::vector<std::string>;
using nlohmann::json;

json streamOf(const json& file, const std::string& type)
{
    for (const json& stream : file.value("streams", json::array()))
        if (stream["codec_type"] == type)
            return stream;
    return {};
}

double seconds(const json& stream)
{
    return std::stod(stream.value("duration", "0"));
}

/// What every video of ours has, whatever it was made from.
void expectOurKind(const std::string& path, IntSize size)
{
    const json video = streamOf(probe(path), "video");
    const std::vector<std::pair<std::string, json>> wanted = {
        {"codec_name", "h264"},
        {"profile", "High"},
        {"pix_fmt", "yuv420p"},
        {"has_b_frames", 0},
        {"color_space", "bt709"},
        {"color_primaries", "bt709"},
        {"color_transfer", "bt709"},
        {"color_range", "tv"},
        {"width", size.width + size.width % 2},
        {"height", size.height + size.height % 2},
    };
    for (const auto& [key, value] : wanted)
        EXPECT_EQ(video.value(key, json()), value) << key;
    const std::string bytes = readFile(path);
    EXPECT_LT(bytes.find("moov"), bytes.find("mdat"));
}

double loudness(const std::vector<float>& samples, double from, double to)
{
    const auto first = std::min(samples.size(), static_cast<std::size_t>(from * 8000));
    const auto last = std::min(samples.size(), static_cast<std::size_t>(to * 8000));
    double sum = 0;
    for (std::size_t i = first; i < last; ++i)
        sum += samples[i] * samples[i];
    return last > first ? std::sqrt(sum / static_cast<double>(last - first)) : 0;
}

TEST(VideoSize, KeepsTheShapeWithinWhatPlayersTake)
{
    struct Case {
        IntSize size;
        double scale;
        IntSize wanted;
    };
    const std::vector<Case> cases = {
        {{1125, 1125}, 1, {1125, 1125}}, {{1125, 750}, 0.5, {563, 375}},  {{3840, 2160}, 1, {3840, 2160}},
        {{3072, 3072}, 1, {3072, 3072}}, {{3000, 3000}, 2, {3072, 3072}}, {{1, 1}, 0.1, {1, 1}},
        {{1, 5000}, 1, {1, 5000}},       {{20000, 10}, 1, {8688, 4}},     {{640, 480}, NAN, {640, 480}},
    };
    for (const Case& each : cases)
        EXPECT_EQ(videoSize(each.size, each.scale), each.wanted) << each.size.width << " x " << each.size.height;
}

TEST(WriteStillVideo, ShowsThePictureForItsTimeWithSilence)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("ein Bild ü.mp4");
    writeFile(path, "an earlier export");
    const CGImage picture = quarters(125, 75);
    std::vector<double> told;
    VideoExportOptions options{.crf = 12};
    options.progress = [&](double share) { told.push_back(share); };
    // An orientation, so that it is upright that is meant.
    const UIImage turned(UIImage(picture, 1, UIImageOrientation::Left).upright().cgImage(), 2,
                         UIImageOrientation::Right);
    const Outcome outcome = writeStillVideo({turned, 3, blankAudioFile()}, path, options);
    ASSERT_TRUE(outcome) << outcome.error().message();

    expectOurKind(path, {125, 75});
    const json file = probe(path);
    EXPECT_EQ(streamOf(file, "video")["nb_read_packets"], "90");
    EXPECT_EQ(streamOf(file, "video")["r_frame_rate"], "30/1");
    EXPECT_NEAR(seconds(streamOf(file, "video")), 3, 1e-3);
    EXPECT_EQ(streamOf(file, "audio")["codec_name"], "aac");
    EXPECT_NEAR(seconds(streamOf(file, "audio")), 3, 1e-3);
    EXPECT_LT(loudness(decodedSound(path), 0, 3), 1e-4);
    EXPECT_GT(decodedSound(path).size(), 3u * 8000 - 10);
    for (const int index : {0, 89}) {
        const CGImage frame = decodedFrame(path, index);
        for (std::size_t i = 0; i < 4; ++i)
            EXPECT_LE(difference(quarterColors(frame)[i], quarterColors(picture)[i]), 4) << index << ' ' << i;
        EXPECT_LE(difference(pixelAt(frame, 125, 75), {150, 150, 150, 255}), 4); // the column and row that were added
    }
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_GT(told.size(), 80u);
    EXPECT_EQ(told.back(), 1);
    EXPECT_EQ(folder.names(), Names{"ein Bild ü.mp4"});
}

TEST(WriteStillVideo, PutsWhatIsTransparentOnWhite)
{
    const TemporaryFolder folder;
    const UIImage clear(solidPicture(32, 32, {200, 0, 0, 0}));
    ASSERT_TRUE(writeStillVideo({clear, 0.1, ""}, folder.path("a.mp4")));
    EXPECT_LE(difference(pixelAt(decodedFrame(folder.path("a.mp4"), 0), 16, 16), {255, 255, 255, 255}), 2);
    EXPECT_TRUE(streamOf(probe(folder.path("a.mp4")), "audio").is_null());
}

TEST(WriteStillVideo, TakesAPictureOfOurOwnSizeInLittleMemory)
{
    const TemporaryFolder folder;
    const UIImage noise(noisePicture(1125, 1125, CGImageAlphaInfo::NoneSkipLast));
    ASSERT_TRUE(writeStillVideo({noise, 3, blankAudioFile()}, folder.path("a.mp4"), {.crf = 18}));
    rusage usage{};
    getrusage(RUSAGE_SELF, &usage);
    RecordProperty("peak_kilobytes", static_cast<int>(usage.ru_maxrss));
#ifndef __SANITIZE_ADDRESS__
    EXPECT_LT(usage.ru_maxrss, 180'000);
#endif
}

struct Source {
    std::string name;
    IntSize size; ///< stored
    std::string filters;
    std::vector<std::string> options;
    std::string container;
    int frames = 10;
    double duration = 1;
};

std::string nameOf(const testing::TestParamInfo<Source>& tested)
{
    return tested.param.name;
}

class SourceClip : public testing::TestWithParam<Source> {};

TEST_P(SourceClip, BecomesOurKindOfFilm)
{
    const Source& source = GetParam();
    const TemporaryFolder folder;
    const std::string path = folder.path("clip." + source.container);
    makeQuartersClip(path, source.size, source.filters, source.options);
    const Outcome outcome = convertVideo(path, folder.path("out.mp4"), {.crf = 12});
    ASSERT_TRUE(outcome) << outcome.error().message();
    expectOurKind(folder.path("out.mp4"), source.size);
    const json video = streamOf(probe(folder.path("out.mp4")), "video");
    EXPECT_EQ(video["nb_read_packets"], std::to_string(source.frames));
    EXPECT_NEAR(seconds(video), source.duration, 0.01);
    EXPECT_NEAR(std::stod(video.value("start_time", "9")), 0, 1e-6);
    const CGImage frame = decodedFrame(folder.path("out.mp4"), source.frames - 1);
    const CGImage wanted = quarters(source.size.width, source.size.height);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_LE(difference(quarterColors(frame)[i], quarterColors(wanted)[i]), 6) << "quarter " << i;
}

INSTANTIATE_TEST_SUITE_P(
    , SourceClip,
    testing::Values(
        Source{"BFramesAndALateStart",
               {96, 64},
               "format=yuv420p",
               {"-c:v", "libx264", "-bf", "3", "-output_ts_offset", "7"},
               "mp4"},
        Source{"TransportStream", {96, 64}, "format=yuv420p", {"-c:v", "libx264", "-bf", "2"}, "ts"},
        Source{"NoTimes", {96, 64}, "format=yuv420p", {"-c:v", "mpeg4", "-q:v", "2"}, "avi"},
        Source{"TenBitsAndOddSides", {95, 63}, "format=yuv420p10", {"-c:v", "ffv1"}, "mkv"},
        Source{"FullRange", {96, 64}, "scale=out_range=pc,format=yuvj420p", {"-c:v", "mjpeg", "-q:v", "2"}, "mov"},
        Source{"VariableRate",
               {96, 64},
               "format=yuv420p,setpts='if(gte(N,5),N+10,N)/10/TB'",
               {"-vsync", "vfr", "-c:v", "libx264"},
               "mp4",
               10,
               2}),
    nameOf);

TEST(ConvertVideo, KeepsSoundAndPictureTogetherAndTurnsScaled)
{
    const TemporaryFolder folder;
    // The tone begins with the picture's second half; the clip was recorded upright, and stands on its side.
    makeQuartersClip(folder.path("a.mp4"), {96, 64}, "format=yuv420p", {"-c:v", "libx264"});
    makeClip({"-i", folder.path("a.mp4"), "-f", "lavfi", "-i",
              "aevalsrc=if(gte(t\\,0.5)\\,sin(2764*t)/2\\,0):d=1:s=22050:c=5.1", "-map", "0:v", "-map", "1:a", "-c:v",
              "copy", "-c:a", "ac3", "-metadata:s:v", "rotate=90"},
             folder.path("b.mov"));
    std::vector<double> told;
    VideoExportOptions options{.crf = 12, .scale = 0.5};
    options.progress = [&](double share) { told.push_back(share); };
    const Outcome outcome = convertVideo(folder.path("b.mov"), folder.path("out.mp4"), options);
    ASSERT_TRUE(outcome) << outcome.error().message();
    expectOurKind(folder.path("out.mp4"), {32, 48});
    const CGImage wanted = UIImage(quarters(96, 64), 1, UIImageOrientation::Left).upright().cgImage();
    const CGImage frame = decodedFrame(folder.path("out.mp4"), 3);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_LE(difference(quarterColors(frame)[i], quarterColors(wanted)[i]), 6) << "quarter " << i;
    const json sound = streamOf(probe(folder.path("out.mp4")), "audio");
    EXPECT_EQ(sound["codec_name"], "aac");
    EXPECT_EQ(sound["channels"], 2);
    const std::vector<float> samples = decodedSound(folder.path("out.mp4"));
    EXPECT_LT(loudness(samples, 0, 0.48), 0.02);
    EXPECT_GT(loudness(samples, 0.52, 1), 0.1);
    EXPECT_TRUE(std::is_sorted(told.begin(), told.end()));
    EXPECT_EQ(told.back(), 1);
}

TEST(ConvertVideo, KeepsAGapInTheSoundAsSilence)
{
    const TemporaryFolder folder;
    makeClip({"-f", "lavfi", "-i", "color=s=64x64:r=10:d=3", "-f", "lavfi", "-i", "sine=d=3", "-af",
              "volume=8,aselect='lt(t,0.5)+gte(t,2)'", "-c:v", "libx264", "-c:a", "aac"},
             folder.path("a.mkv"));
    const Outcome outcome = convertVideo(folder.path("a.mkv"), folder.path("b.mp4"));
    ASSERT_TRUE(outcome) << outcome.error().message();
    const std::vector<float> samples = decodedSound(folder.path("b.mp4"));
    EXPECT_NEAR(static_cast<double>(samples.size()) / 8000, 3, 0.06);
    const std::vector<std::pair<double, bool>> cases = {
        {0.1, true}, {0.7, false}, {1.8, false}, {2.2, true}, {2.8, true}};
    for (const auto& [time, loud] : cases)
        EXPECT_EQ(loudness(samples, time, time + 0.1) > 0.1, loud) << time;
}

TEST(ConvertVideo, NeverMakesPartOfAFilm)
{
    const TemporaryFolder folder;
    const std::string out = folder.path("out.mp4");
    for (const std::string name : {"a.mp4", "a.mkv"}) {
        makeQuartersClip(folder.path(name), {96, 64}, "format=yuv420p,noise=alls=40:allf=t",
                         {"-c:v", "libx264", "-movflags", "+faststart"}, "40");
        const std::string whole = readFile(folder.path(name));
        writeFile(folder.path(name), whole.substr(0, whole.size() * 2 / 3));
        writeFile(out, "an earlier export");
        const Outcome outcome = convertVideo(folder.path(name), out);
        ASSERT_FALSE(outcome) << name;
        EXPECT_EQ(outcome.error().message(), folder.path(name) + ": the file ends too early");
        EXPECT_EQ(readFile(out), "an earlier export");
    }
    EXPECT_EQ(folder.names(), (Names{"a.mkv", "a.mkv.png", "a.mp4", "a.mp4.png", "out.mp4"}));
}

double secondsSince(std::clock_t when)
{
    return static_cast<double>(std::clock() - when) / CLOCKS_PER_SEC;
}

/// It is the processor's time that is measured, so that other programs don't count.
TEST(VideoExport, CanBeCancelledAndLeavesNothing)
{
    const TemporaryFolder folder;
    makeQuartersClip(folder.path("a.mkv"), {640, 480}, "format=yuv420p", {"-c:v", "libx264"}, "60");
    std::atomic<bool> cancelled = false;
    std::clock_t when = 0;
    int steps = 0;
    VideoExportOptions options{.cancelled = &cancelled};
    options.progress = [&](double) {
        cancelled = ++steps == 5;
        when = std::clock();
    };
    const Outcome outcome = convertVideo(folder.path("a.mkv"), folder.path("b.mp4"), options);
    EXPECT_LT(secondsSince(when), 0.1);
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().cause, "cancelled");
    EXPECT_EQ(folder.names(), (Names{"a.mkv", "a.mkv.png"}));
}

/// The first picture of a film of this size takes half a second; whoever cancels meanwhile doesn't wait for it.
TEST(VideoExport, CanBeCancelledWhileALargePictureIsEncoded)
{
    const TemporaryFolder folder;
    const UIImage noise(noisePicture(2000, 2000, CGImageAlphaInfo::NoneSkipLast));
    std::atomic<bool> cancelled = false;
    std::atomic<bool> over = false;
    std::atomic<long> steps = 0;
    std::clock_t when = 0;
    std::thread impatient([&] {
        for (long seen = 0; !over && !cancelled; seen = steps) {
            std::this_thread::sleep_for(std::chrono::milliseconds(50));
            when = std::clock();
            cancelled = seen > 0 && seen == steps;
        }
    });
    VideoExportOptions options{.crf = 18, .cancelled = &cancelled};
    options.progress = [&](double) { ++steps; };
    const Outcome outcome = writeStillVideo({noise, 3, blankAudioFile()}, folder.path("a.mp4"), options);
    over = true;
    EXPECT_LT(secondsSince(when), 0.1);
    impatient.join();
    ASSERT_FALSE(outcome);
    EXPECT_EQ(outcome.error().message(), folder.path("a.mp4") + ": cancelled");
    EXPECT_TRUE(folder.names().empty());
}

TEST(VideoExport, NamesWhatStandsInItsWay)
{
    const TemporaryFolder folder;
    const UIImage picture(noisePicture(300, 300, CGImageAlphaInfo::NoneSkipLast));
    const auto message = [&](const StillVideo& still, const std::string& path) {
        const Outcome outcome = writeStillVideo(still, path);
        return outcome ? std::string() : outcome.error().message();
    };
    const std::string path = folder.path("a.mp4");
    const std::string sound = folder.path("sound.mp3");
    EXPECT_EQ(message({picture, 1, sound}, path), sound + ": no such file");
    writeFile(sound, "no sound at all");
    EXPECT_EQ(message({picture, 1, sound}, path), sound + ": not a clip that can be read");
    EXPECT_EQ(message({{}, 1, ""}, path), path + ": there is no picture");
    EXPECT_EQ(message({picture, 1, ""}, folder.path("x/a.mp4")), folder.path("x/a.mp4") + ": no such folder");
    EXPECT_EQ(message({picture, 1, ""}, "/dev/null"), "/dev/null: not a regular file");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    const rlimit small{20'000, before.rlim_max};
    setrlimit(RLIMIT_FSIZE, &small);
    const std::string full = message({picture, 1, ""}, path);
    setrlimit(RLIMIT_FSIZE, &before);
    EXPECT_EQ(full, path + ": the file is too large for the device");
    EXPECT_EQ(folder.names(), Names{"sound.mp3"});
}

/// Small sides are the least multiple of what vector code takes at once, and old memory the least like new.
TEST(VideoExport, MakesTheSameBytesOfTheSameInput)
{
    const TemporaryFolder folder;
    const UIImage picture(quarters(64, 48));
    const std::string still = folder.path("still.mp4");
    const std::string clip = folder.path("clip.mp4");
    std::optional<OneProcessor> one;
    std::string bytes[2];
    for (int i = 0; i < 40; ++i) {
        if (i == 20)
            one.emplace();
        ASSERT_TRUE(writeStillVideo({picture, 0.5, blankAudioFile()}, still));
        ASSERT_TRUE(convertVideo(still, clip, {.scale = 0.5}));
        const std::string got[2] = {readFile(still), readFile(clip)};
        if (i == 0)
            std::copy_n(got, 2, bytes);
        ASSERT_TRUE(got[0] == bytes[0] && got[1] == bytes[1]) << i;
    }
}

TEST(VideoExport, SaysWhenItsModuleIsMissingOrBroken)
{
    GTEST_FLAG_SET(death_test_style, "threadsafe"); // a fresh process each, which has loaded nothing yet
    const TemporaryFolder folder;
    writeFile(folder.path("lamina-media.so"), "no library");
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"/nowhere", "^/proc/self/exe: support for videos is not installed$"},
        {folder.path(), "lamina-media.so: [^\n]*\n/proc/self/exe: support for videos can't be loaded$"},
    };
    for (const auto& [modules, message] : cases)
        EXPECT_EXIT(
            {
                ::setenv("LAMINA_MODULES", modules.c_str(), 1);
                const Outcome outcome = convertVideo("/proc/self/exe", "/tmp/a.mp4");
                std::fprintf(stderr, "%s", outcome ? "written" : outcome.error().message().c_str());
                std::_Exit(0);
            },
            testing::ExitedWithCode(0), message);
}

} // namespace
} // namespace lamina::test
