#include "CommandRunner.h"
#include "TestClips.h"

#include "platform/media/Clip.h"

#include <gtest/gtest.h>

#include <atomic>
#include <chrono>
#include <cmath>
#include <utility>

namespace lamina::test {
namespace {

const std::vector<std::string> kLossless = {"-c:v", "ffv1"};

struct Stored {
    std::string name;
    IntSize size;
    std::string filters; ///< how RGB becomes what is stored
    std::string rotation = {};
    std::string container = ".mkv";
};

std::string nameOf(const testing::TestParamInfo<Stored>& tested)
{
    return tested.param.name;
}

class StoredClip : public testing::TestWithParam<Stored> {};

TEST_P(StoredClip, ComesUprightInItsColours)
{
    const Stored& stored = GetParam();
    const TemporaryFolder folder;
    const std::string path = folder.path("clip" + stored.container);
    makeQuartersClip(path, stored.size, stored.filters, kLossless);
    CGImage wanted = quarters(stored.size.width, stored.size.height);
    if (!stored.rotation.empty()) {
        const std::string turned = folder.path("turned.mov");
        makeClip({"-i", path, "-c", "copy", "-metadata:s:v", "rotate=" + stored.rotation}, turned);
        const auto orientation = stored.rotation == "90" ? UIImageOrientation::Left : UIImageOrientation::Down;
        wanted = UIImage(wanted, 1, orientation).upright().cgImage();
        std::filesystem::rename(turned, path);
    }
    const Result<ClipFrame> frame = loadClipFrame(path, CMTime::make(1, 30));
    ASSERT_TRUE(frame) << frame.error().message();
    const CGImage& got = frame->picture.cgImage();
    ASSERT_EQ(got.size(), wanted.size());
    EXPECT_EQ(frame->clip.size, wanted.size());
    EXPECT_NEAR(frame->clip.frameRate, 10, 0.01);
    EXPECT_NEAR(frame->clip.duration, 1, 0.01);
    EXPECT_FALSE(frame->clip.hasSound);
    EXPECT_EQ(got.alphaInfo(), CGImageAlphaInfo::NoneSkipLast);
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_LE(difference(quarterColors(got)[i], quarterColors(wanted)[i]), 2) << "quarter " << i;
}

const std::string kUntagged = "setparams=colorspace=unknown:color_primaries=unknown:color_trc=unknown";

INSTANTIATE_TEST_SUITE_P(
    , StoredClip,
    testing::Values(
        Stored{"Small", {64, 48}, "scale=out_color_matrix=bt601,format=yuv420p," + kUntagged},
        Stored{"HighDefinition", {96, 720}, "scale=out_color_matrix=bt709,format=yuv420p," + kUntagged},
        Stored{"JustBelow", {96, 718}, "scale=out_color_matrix=bt601,format=yuv420p," + kUntagged},
        Stored{"Tagged709", {64, 48}, "scale=out_color_matrix=bt709,format=yuv444p,setparams=colorspace=bt709"},
        Stored{"Tagged601", {96, 720}, "scale=out_color_matrix=bt601,format=yuv422p,setparams=colorspace=smpte170m"},
        Stored{"FullRange", {64, 48}, "scale=out_color_matrix=bt601:out_range=pc,format=yuv420p,setparams=range=pc"},
        Stored{"TenBits", {64, 48}, "scale=out_color_matrix=bt709,format=yuv420p10,setparams=colorspace=bt709"},
        Stored{"OddSides", {63, 47}, "scale=out_color_matrix=bt601,format=yuv420p"},
        Stored{"QuarterTurn", {64, 48}, "scale=out_color_matrix=bt601,format=yuv420p", "90"},
        Stored{"HalfTurn", {64, 48}, "scale=out_color_matrix=bt601,format=yuv420p", "180"},
        Stored{"RGB", {64, 48}, "format=gbrp"}),
    nameOf);

TEST(LoadClipFrame, StretchesPixelsThatAreNotSquare)
{
    const TemporaryFolder folder;
    makeQuartersClip(folder.path("clip.mkv"), {64, 48}, "format=yuv420p,setsar=3/2", kLossless);
    const Result<ClipFrame> frame = loadClipFrame(folder.path("clip.mkv"), kCMTimeZero);
    ASSERT_TRUE(frame) << frame.error().message();
    EXPECT_EQ(frame->picture.pixelSize(), (IntSize{96, 48}));
}

TEST(LoadClipFrame, FindsTheFrameThatIsShownAtATime)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("clip.mp4");
    // Luma tells a frame's number; B-frames and one key frame in 20 make the way to it long. It begins late.
    makeClip({"-f", "lavfi", "-i", "color=s=64x64:r=10:d=4,geq=lum='20+5*N':cb=128:cr=128", "-c:v", "libx264", "-g",
              "20", "-bf", "2", "-output_ts_offset", "5"},
             path);
    const std::vector<std::pair<double, int>> cases = {{-3, 0},    {0, 0},  {0.09, 0},  {0.1, 1}, {1.2, 12},
                                                       {1.95, 19}, {2, 20}, {3.25, 32}, {99, 39}};
    for (const auto& [seconds, number] : cases) {
        const Result<ClipFrame> frame = loadClipFrame(path, CMTime::makeWithSeconds(seconds, 1000));
        ASSERT_TRUE(frame) << frame.error().message();
        EXPECT_NEAR(frame->time, number / 10.0, 1e-6) << seconds;
        EXPECT_NEAR(pixelAt(frame->picture.cgImage(), 32, 32)[0], (4 + 5 * number) * 255 / 219.0, 3) << seconds;
    }
}

TEST(LoadClipFrame, SaysInOneLineWhyAFileIsNoClip)
{
    const TemporaryFolder folder;
    const auto path = [&](const std::string& name) { return folder.path(name); };
    makeQuartersClip(path("good.mp4"), {64, 48}, "format=yuv420p", {"-c:v", "libx264"});
    makeClip({"-f", "lavfi", "-i", "sine=d=0.2", "-c:a", "aac"}, path("sound.m4a"));
    const std::string whole = readFile(path("good.mp4"));
    writeFile(path("cut.mp4"), whole.substr(0, whole.size() / 2));
    writeFile(path("text.txt"), "Seven samurai\n");
    writeFile(path("empty.mp4"), "");
    writeFile(path("huge.y4m"), "YUV4MPEG2 W10000 H10000 F25:1 C420\nFRAME\n");
    writeFile(path("list.ffconcat"), "ffconcat version 1.0\nfile good.mp4\n");
    writeFile(path("list.m3u8"),
              "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\n" + path("good.mp4") + "\n#EXT-X-ENDLIST\n");
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"cut.mp4", "not a clip that can be read"},
        {"text.txt", "not a clip that can be read"},
        {"list.ffconcat", "not a clip that can be read"},
        {"list.m3u8", "not a clip that can be read"},
        {"sound.m4a", "the clip holds no picture"},
        {"huge.y4m", "the picture of the clip is too large"},
        {"empty.mp4", "the file is empty"},
        {"missing.mp4", "no such file"},
        {"", "is a folder"},
    };
    for (const auto& [name, cause] : cases) {
        const auto begin = std::chrono::steady_clock::now();
        const Result<ClipFrame> frame = loadClipFrame(path(name), kCMTimeZero);
        EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::seconds(1)) << name;
        ASSERT_FALSE(frame) << name;
        EXPECT_EQ(frame.error().message(), path(name) + ": " + cause);
    }
    const std::atomic<bool> cancelled = true;
    EXPECT_EQ(loadClipDetails(path("good.mp4"), {.cancelled = &cancelled}).error().cause, "cancelled");
    EXPECT_EQ(loadClipFrame(path("good.mp4"), kCMTimeZero, {.seconds = 1e-9}).error().cause,
              "the clip takes too long to be read");
}

/// Bytes changed anywhere end in a picture or an error, and in no time.
TEST(LoadClipFrame, LivesThroughDamage)
{
    const TemporaryFolder folder;
    for (const std::string name : {"a.mp4", "a.mkv", "a.avi", "a.ts"}) {
        makeQuartersClip(folder.path(name), {64, 48}, "format=yuv420p", {"-c:v", "libx264", "-bf", "2"});
        const std::string whole = readFile(folder.path(name));
        unsigned seed = 1;
        for (int round = 0; round < 25; ++round) {
            std::string damaged = whole;
            for (int i = 0; i < 40; ++i, seed = seed * 1664525u + 1013904223u)
                damaged[seed % (round % 2 == 0 ? 600 : damaged.size())] = static_cast<char>(seed >> 24);
            writeFile(folder.path("damaged"), damaged);
            const Result<ClipFrame> frame = loadClipFrame(folder.path("damaged"), CMTime::make(1, 2), {.seconds = 2});
            EXPECT_TRUE(frame ? static_cast<bool>(frame->picture) : !frame.error().cause.empty());
        }
    }
}

} // namespace
} // namespace lamina::test
