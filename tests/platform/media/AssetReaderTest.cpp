#include "CommandRunner.h"
#include "TestClips.h"

#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetReader.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <cmath>
#include <cstdlib>
#include <thread>

namespace lamina::test {
namespace {

using Asset = std::shared_ptr<const AVURLAsset>;
using Pieces = std::vector<CMSampleBuffer>;

Asset openMovie(const std::string& path)
{
    const Result<Asset> asset = AVURLAsset::make(path);
    EXPECT_TRUE(asset) << (asset ? "" : asset.error().message());
    return asset ? *asset : nullptr;
}

Pieces readAll(AVAssetReader& reader, AVAssetReaderOutput& output)
{
    const Outcome started = reader.startReading();
    EXPECT_TRUE(started) << (started ? "" : started.error().message());
    Pieces pieces;
    while (std::optional<CMSampleBuffer> piece = output.copyNextSampleBuffer())
        pieces.push_back(*piece);
    return pieces;
}

Pieces readFrames(const Asset& asset, CVPixelFormat format, const CMTimeRange& range = {})
{
    const std::unique_ptr<AVAssetReader> reader = AVAssetReader::make(asset);
    const auto output = reader->addVideoOutput(format);
    reader->setTimeRange(range);
    Pieces frames = readAll(*reader, *output);
    EXPECT_EQ(reader->status(), AVAssetReaderStatus::Completed) << (reader->error() ? reader->error()->message() : "");
    return frames;
}

Pieces readSound(const Asset& asset, const CMTimeRange& range = {})
{
    const std::unique_ptr<AVAssetReader> reader = AVAssetReader::make(asset);
    const auto output = reader->addAudioOutput(false);
    reader->setTimeRange(range);
    return readAll(*reader, *output);
}

std::vector<double> timesOf(const Pieces& pieces)
{
    std::vector<double> times;
    for (const CMSampleBuffer& piece : pieces)
        times.push_back(piece.presentationTime.seconds());
    return times;
}

std::string planeBytes(const CVPixelBuffer::Plane& plane, int bytesPerSample)
{
    std::string bytes;
    for (int y = 0; y < plane.size.height; ++y)
        bytes.append(reinterpret_cast<const char*>(plane.bytes + static_cast<std::size_t>(y) * plane.bytesPerRow),
                     static_cast<std::size_t>(bytesPerSample) * static_cast<std::size_t>(plane.size.width));
    return bytes;
}

int largestDifference(const std::string& x, const std::string& y)
{
    int largest = x.size() == y.size() ? 0 : 256;
    for (std::size_t i = 0; i < std::min(x.size(), y.size()); ++i)
        largest = std::max(largest, std::abs(static_cast<unsigned char>(x[i]) - static_cast<unsigned char>(y[i])));
    return largest;
}

struct Movie {
    std::string name;
    std::string container;
    std::string filters;
    std::vector<std::string> options;
    YCbCrMatrix matrix = YCbCrMatrix::ITU_R_601_4;
    std::string conversion = "scale=in_color_matrix=bt601"; ///< of ffmpeg, to the size of our frames
    AVTrackTransform transform = {};
    std::string size = "96x64";
};

std::string nameOf(const testing::TestParamInfo<Movie>& tested)
{
    return tested.param.name;
}

class StoredMovie : public testing::TestWithParam<Movie> {};

/// When frames are shown, in seconds from the first one.
std::vector<double> timesFromFirst(const std::string& path)
{
    std::vector<double> times = frameTimes(path);
    const double first = times.empty() ? 0 : times.front();
    for (double& time : times)
        time -= first;
    return times;
}

TEST_P(StoredMovie, GivesTheFramesAndTimesThatOthersSee)
{
    const Movie& movie = GetParam();
    const TemporaryFolder folder;
    std::string path = folder.path("clip." + movie.container);
    std::vector<std::string> arguments = {"-f",  "lavfi",      "-i", "testsrc2=r=10:d=1.5:s=" + movie.size,
                                          "-vf", movie.filters};
    arguments.insert(arguments.end(), movie.options.begin(), movie.options.end());
    makeClip(arguments, path);
    if (movie.transform != AVTrackTransform{}) {
        makeClip({"-i", path, "-c", "copy", "-metadata:s:v", "rotate=90"}, folder.path("turned.mov"));
        path = folder.path("turned.mov");
    }
    const Asset asset = openMovie(path);
    ASSERT_TRUE(asset);
    ASSERT_EQ(asset->videoTracks().size(), 1u);
    EXPECT_EQ(asset->videoTracks()[0].preferredTransform, movie.transform);
    EXPECT_TRUE(asset->audioTracks().empty());

    const std::vector<double> wanted = timesFromFirst(path);
    const Pieces frames = readFrames(asset, CVPixelFormat::BGRA);
    ASSERT_EQ(frames.size(), wanted.size());
    std::string pixels;
    for (std::size_t i = 0; i < frames.size(); ++i) {
        EXPECT_NEAR(frames[i].presentationTime.seconds(), wanted[i], 1e-6) << i;
        EXPECT_EQ(frames[i].imageBuffer->size(), asset->videoTracks()[0].naturalSize);
        EXPECT_EQ(frames[i].imageBuffer->matrix(), movie.matrix);
        pixels += planeBytes(frames[i].imageBuffer->planes()[0], 4);
    }
    EXPECT_LE(largestDifference(pixels, decodedRows(path, movie.conversion, "bgra")), 2);
    EXPECT_EQ(timesOf(readFrames(asset, CVPixelFormat::AsDecoded)), timesOf(frames));
    const double last = wanted.back();
    EXPECT_GT(asset->duration().seconds(), last);
    EXPECT_LE(asset->duration().seconds(), last + 0.21);
}

const std::string kUntagged = ",setparams=colorspace=unknown:color_primaries=unknown:color_trc=unknown";
const std::string kBy709 = "scale=in_color_matrix=bt709";

INSTANTIATE_TEST_SUITE_P(
    , StoredMovie,
    testing::Values(Movie{"BFramesAndALateStart",
                          "mp4",
                          "format=yuv420p",
                          {"-c:v", "libx264", "-bf", "3", "-output_ts_offset", "7"}},
                    Movie{"VariableRate",
                          "mp4",
                          "format=yuv420p,setpts='if(gte(N,5),N+10,N)/10/TB'",
                          {"-vsync", "vfr", "-c:v", "libx264"}},
                    Movie{"NoTimes", "avi", "format=yuv420p", {"-c:v", "mpeg4"}},
                    Movie{"TransportStream", "ts", "format=yuv420p", {"-c:v", "libx264", "-bf", "2"}},
                    Movie{"Untagged",
                          "mkv",
                          "format=yuv420p" + kUntagged,
                          {"-c:v", "ffv1"},
                          YCbCrMatrix::ITU_R_709_2,
                          kBy709,
                          {},
                          "96x720"},
                    Movie{"Tagged709",
                          "mkv",
                          "scale=out_color_matrix=bt709,format=yuv420p,setparams=colorspace=bt709",
                          {"-c:v", "ffv1"},
                          YCbCrMatrix::ITU_R_709_2,
                          kBy709},
                    Movie{"Tagged601",
                          "mkv",
                          "format=yuv420p,setparams=colorspace=smpte170m",
                          {"-c:v", "ffv1"},
                          YCbCrMatrix::ITU_R_601_4,
                          "scale=in_color_matrix=bt601",
                          {},
                          "96x720"},
                    Movie{"FullRange",
                          "mkv",
                          "scale=out_range=pc,format=yuv420p,setparams=range=pc",
                          {"-c:v", "ffv1"},
                          YCbCrMatrix::ITU_R_601_4,
                          "scale=in_color_matrix=bt601:in_range=pc"},
                    Movie{"TenBits2020",
                          "mkv",
                          "scale=out_color_matrix=bt2020,format=yuv420p10,setparams=colorspace=bt2020nc",
                          {"-c:v", "ffv1"},
                          YCbCrMatrix::ITU_R_2020,
                          "scale=in_color_matrix=bt2020"},
                    Movie{"OddSides", "mkv", "scale=95:63,format=yuv420p", {"-c:v", "ffv1"}},
                    Movie{"StretchedPixels",
                          "mkv",
                          "format=yuv420p,setsar=3/2",
                          {"-c:v", "ffv1"},
                          YCbCrMatrix::ITU_R_601_4,
                          "scale=iw*3/2:ih:in_color_matrix=bt601"},
                    Movie{"Turned",
                          "mov",
                          "format=yuv420p",
                          {"-c:v", "libx264"},
                          YCbCrMatrix::ITU_R_601_4,
                          "scale=in_color_matrix=bt601",
                          {3, false}}),
    nameOf);

TEST(ReadMovie, GivesPlanesInTheRangeAskedFor)
{
    const TemporaryFolder folder;
    for (const bool full : {false, true}) {
        const std::string range = full ? "pc" : "tv";
        const std::string path = folder.path(range + ".mkv");
        makeClip({"-f", "lavfi", "-i", "testsrc2=s=94x63:d=0.1:r=10", "-vf",
                  "scale=out_range=" + range + ",format=yuv420p,setparams=range=" + range, "-c:v", "ffv1"},
                 path);
        for (const CVPixelFormat format : {CVPixelFormat::BiPlanar420VideoRange, CVPixelFormat::BiPlanar420FullRange}) {
            const Pieces frames = readFrames(openMovie(path), format);
            ASSERT_EQ(frames.size(), 1u);
            const auto& planes = frames[0].imageBuffer->planes();
            const bool toFull = format == CVPixelFormat::BiPlanar420FullRange;
            const std::string wanted =
                decodedRows(path, std::string("scale=out_range=") + (toFull ? "pc" : "tv"), "nv12");
            EXPECT_LE(largestDifference(planeBytes(planes[0], 1) + planeBytes(planes[1], 2), wanted), 1)
                << range << ' ' << toFull;
        }
    }
}

TEST(ReadMovie, FollowsAChangeOfSizeInItsOwn)
{
    const TemporaryFolder folder;
    std::string bytes;
    for (const std::string size : {"96x64", "128x96"}) {
        makeClip({"-f", "lavfi", "-i", "color=c=red:r=10:d=1:s=" + size, "-c:v", "libx264", "-bf", "0",
                  "-output_ts_offset", bytes.empty() ? "0" : "1"},
                 folder.path("a.ts"));
        bytes += readFile(folder.path("a.ts"));
    }
    writeFile(folder.path("b.ts"), bytes);
    const Asset asset = openMovie(folder.path("b.ts"));
    for (const CVPixelFormat format : {CVPixelFormat::BGRA, CVPixelFormat::AsDecoded}) {
        const Pieces frames = readFrames(asset, format);
        ASSERT_EQ(frames.size(), 20u);
        EXPECT_NEAR(frames[19].presentationTime.seconds(), 1.9, 0.02);
        for (const CMSampleBuffer& frame : frames)
            EXPECT_EQ(frame.imageBuffer->size(), (IntSize{96, 64}));
    }
}

/// Recordings that were put one behind the other, each with a clock of its own.
TEST(ReadMovie, GoesOnWhereTheClockBeginsAnew)
{
    const TemporaryFolder folder;
    makeClip({"-f", "lavfi", "-i", "testsrc2=r=10:d=3:s=64x48", "-f", "lavfi", "-i", "sine=d=3:r=48000", "-c:v",
              "libx264", "-bf", "0", "-c:a", "aac"},
             folder.path("a.ts"));
    const std::string bytes = readFile(folder.path("a.ts"));
    writeFile(folder.path("b.ts"), bytes + bytes);
    const Asset asset = openMovie(folder.path("b.ts"));
    const Pieces frames = readFrames(asset, CVPixelFormat::AsDecoded);
    ASSERT_EQ(frames.size(), 60u);
    for (std::size_t i = 0; i < frames.size(); ++i)
        EXPECT_NEAR(frames[i].presentationTime.seconds(), static_cast<double>(i) / 10, 1e-3);
    EXPECT_NEAR(readSound(asset).back().presentationTime.seconds(), 6, 0.1);
}

TEST(ReadMovie, GivesWhatIsShownInARange)
{
    const TemporaryFolder folder;
    for (const std::string name : {"a.mp4", "a.ts", "a.mkv"}) {
        makeClip({"-f", "lavfi", "-i", "testsrc2=r=10:d=4:s=64x48", "-f", "lavfi", "-i", "sine=d=4:r=48000", "-c:v",
                  "libx264", "-g", "15", "-bf", "2", "-c:a", "aac", "-output_ts_offset", "3"},
                 folder.path(name));
        const Asset asset = openMovie(folder.path(name));
        const Pieces all = readFrames(asset, CVPixelFormat::BGRA);
        const Pieces sound = readSound(asset);
        struct Range {
            double from, to;
            int first, count;
        };
        for (const Range& each :
             {Range{2.05, 2.35, 20, 4}, Range{0.5, 0.7, 5, 2}, Range{3.9, 99, 39, 1}, Range{50, 60, 0, 0}}) {
            const CMTimeRange range{CMTime::makeWithSeconds(each.from, 1000),
                                    CMTime::makeWithSeconds(each.to - each.from, 1000)};
            const Pieces frames = readFrames(asset, CVPixelFormat::BGRA, range);
            ASSERT_EQ(static_cast<int>(frames.size()), each.count) << name << ' ' << each.from;
            for (std::size_t i = 0; i < frames.size(); ++i) {
                const CMSampleBuffer& same = all[static_cast<std::size_t>(each.first) + i];
                EXPECT_EQ(frames[i].presentationTime, same.presentationTime) << name << ' ' << each.from;
                EXPECT_EQ(planeBytes(frames[i].imageBuffer->planes()[0], 4),
                          planeBytes(same.imageBuffer->planes()[0], 4));
            }
            std::vector<double> wanted;
            for (const CMSampleBuffer& piece : sound)
                if (piece.presentationTime.seconds() + piece.duration.seconds() > each.from &&
                    piece.presentationTime.seconds() < each.to)
                    wanted.push_back(piece.presentationTime.seconds());
            const std::vector<double> got = timesOf(readSound(asset, range));
            ASSERT_EQ(got.size(), wanted.size()) << name << ' ' << each.from;
            for (std::size_t i = 0; i < got.size(); ++i)
                EXPECT_NEAR(got[i], wanted[i], 2e-3) << name << ' ' << each.from;
        }
    }
}

struct Sound {
    std::string codec;
    std::string container;
};

TEST(ReadMovie, GivesSoundAsNumbersAndAsStored)
{
    const TemporaryFolder folder;
    for (const Sound& each : {Sound{"aac", "mp4"}, Sound{"libopus", "mkv"}, Sound{"libmp3lame", "mp3"},
                              Sound{"pcm_s24le", "mov"}, Sound{"pcm_u8", "wav"}, Sound{"flac", "flac"}}) {
        const std::string path = folder.path("a." + each.container);
        makeClip({"-f", "lavfi", "-i", "aevalsrc=sin(2764*t)/2|cos(1000*t)/3:d=2:s=48000", "-c:a", each.codec}, path);
        const Asset asset = openMovie(path);
        ASSERT_TRUE(asset);
        EXPECT_TRUE(asset->videoTracks().empty());
        ASSERT_EQ(asset->audioTracks().size(), 1u);
        EXPECT_EQ(asset->audioTracks()[0].sampleRate, 48000);
        EXPECT_EQ(asset->audioTracks()[0].channels, 2);
        std::vector<float> samples;
        double next = 0;
        for (const CMSampleBuffer& piece : readSound(asset)) {
            EXPECT_NEAR(piece.presentationTime.seconds(), next, 1e-9) << path;
            next += static_cast<double>(piece.audio->sampleCount()) / 48000;
            samples.insert(samples.end(), piece.audio->samples.begin(), piece.audio->samples.end());
        }
        const std::vector<float> wanted = storedSound(path);
        ASSERT_EQ(samples.size(), wanted.size()) << path;
        for (std::size_t i = 0; i < samples.size(); ++i)
            ASSERT_NEAR(samples[i], wanted[i], 1e-4) << path << ' ' << i;
        const std::unique_ptr<AVAssetReader> reader = AVAssetReader::make(asset);
        const auto output = reader->addAudioOutput(true);
        const Pieces packets = readAll(*reader, *output);
        EXPECT_EQ(std::to_string(packets.size()), probe(path)["streams"][0]["nb_read_packets"]) << path;
        EXPECT_TRUE(packets.front().packet);
    }
}

TEST(ReadMovie, KeepsTheSoundsOffset)
{
    const TemporaryFolder folder;
    makeClip({"-f", "lavfi", "-i", "color=s=64x64:r=10:d=2", "-itsoffset", "0.75", "-f", "lavfi", "-i",
              "sine=d=1:r=48000", "-c:v", "libx264", "-c:a", "pcm_s16le"},
             folder.path("a.mov"));
    const Pieces sound = readSound(openMovie(folder.path("a.mov")));
    ASSERT_FALSE(sound.empty());
    EXPECT_NEAR(sound.front().presentationTime.seconds(), 0.75, 1e-3);
}

TEST(ReadMovie, TakesNoCoverForAPicture)
{
    const TemporaryFolder folder;
    writePng(folder.path("cover.png"), quarters(64, 64));
    makeClip({"-f", "lavfi", "-i", "sine=d=1", "-i", folder.path("cover.png"), "-map", "0", "-map", "1", "-c:a", "aac",
              "-c:v", "png", "-disposition:v", "attached_pic"},
             folder.path("a.m4a"));
    const Asset asset = openMovie(folder.path("a.m4a"));
    ASSERT_TRUE(asset);
    EXPECT_TRUE(asset->videoTracks().empty());
    EXPECT_EQ(AVAssetReader::make(asset)->addVideoOutput(CVPixelFormat::BGRA), nullptr);
}

TEST(ReadMovie, GivesWhatACutFileHasAndThenTheCause)
{
    const TemporaryFolder folder;
    for (const std::string name : {"a.mp4", "a.mkv", "a.avi"}) {
        const std::string path = folder.path(name);
        makeClip({"-f", "lavfi", "-i", "testsrc2=r=10:d=8:s=64x48,noise=alls=30:allf=t", "-f", "lavfi", "-i",
                  "sine=d=8", "-c:v", "libx264", "-c:a", "aac", "-movflags", "+faststart"},
                 path);
        const std::string whole = readFile(path);
        writeFile(path, whole.substr(0, whole.size() * 2 / 3));
        const std::unique_ptr<AVAssetReader> reader = AVAssetReader::make(openMovie(path));
        const auto output = reader->addVideoOutput(CVPixelFormat::AsDecoded);
        const Pieces frames = readAll(*reader, *output);
        EXPECT_GT(frames.size(), 30u) << name;
        EXPECT_LT(frames.size(), 70u) << name;
        EXPECT_EQ(reader->status(), AVAssetReaderStatus::Failed) << name;
        EXPECT_EQ(reader->error() ? reader->error()->message() : "", path + ": the file ends too early");
    }
}

TEST(ReadMovie, WakesWhoeverWaitsWhenItIsCancelled)
{
    const TemporaryFolder folder;
    makeClip({"-f", "lavfi", "-i", "testsrc2=r=30:d=3:s=640x480", "-c:v", "libx264"}, folder.path("a.mp4"));
    const std::unique_ptr<AVAssetReader> reader = AVAssetReader::make(openMovie(folder.path("a.mp4")));
    const auto output = reader->addVideoOutput(CVPixelFormat::BGRA);
    ASSERT_TRUE(reader->startReading());
    std::thread impatient([&] { reader->cancelReading(); });
    int frames = 0;
    while (output->copyNextSampleBuffer())
        ++frames;
    impatient.join();
    EXPECT_LT(frames, 90);
    EXPECT_EQ(reader->status(), AVAssetReaderStatus::Cancelled);
    EXPECT_FALSE(reader->error());
}

TEST(OpenMovie, SaysInOneLineWhyItCantBeRead)
{
    const TemporaryFolder folder;
    makeQuartersClip(folder.path("good.mp4"), {64, 48}, "format=yuv420p", {"-c:v", "libx264"});
    makeQuartersClip(folder.path("other.nut"), {64, 48}, "format=yuv420p", {"-c:v", "libx264"});
    makeQuartersClip(folder.path("coding.mkv"), {64, 48}, "format=yuv420p", {"-c:v", "snow", "-strict", "-2"});
    writeFile(folder.path("list.mp4"), "ffconcat version 1.0\nfile good.mp4\n");
    writeFile(folder.path("tale.mp4"), "#EXTM3U\n#EXT-X-TARGETDURATION:1\n#EXTINF:1,\ngood.mp4\n#EXT-X-ENDLIST\n");
    const std::vector<std::pair<std::string, std::string>> cases = {
        {"other.nut", "not a clip that can be read"},
        {"coding.mkv", "nothing here reads the coding of the clip: snow"},
        {"list.mp4", "not a clip that can be read"},
        {"tale.mp4", "not a clip that can be read"},
        {"missing.mp4", "no such file"},
    };
    for (const auto& [name, cause] : cases) {
        const Result<Asset> asset = AVURLAsset::make(folder.path(name));
        ASSERT_FALSE(asset) << name;
        EXPECT_EQ(asset.error().message(), folder.path(name) + ": " + cause);
    }
}

} // namespace
} // namespace lamina::test
