#include "Surroundings.h"
#include "TestClips.h"
#include "TestPictures.h"

#include "platform/base/CMTime.h"
#include "platform/base/DispatchQueue.h"
#include "platform/files/FileWriting.h"
#include "platform/media/AVAsset.h"
#include "platform/media/AVAssetReader.h"
#include "platform/media/AVAssetWriter.h"

#include <gtest/gtest.h>

#include <algorithm>
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

/// Passes a clip on: frames as they are decoded, sound as it is stored where `stored`.
void copyMovie(const std::string& from, const std::string& to, const char* type, bool stored)
{
    const auto asset = AVURLAsset::make(from);
    ASSERT_TRUE(asset) << asset.error().message();
    const std::unique_ptr<AVAssetReader> reader = AVAssetReader::make(*asset);
    const AVVideoTrack& track = (*asset)->videoTracks().front();
    const Writer writer = writerOf(to, type);
    const Input video = *writer->addVideoInput({track.naturalSize, 12, track.nominalFrameRate});
    video->setTransform(track.preferredTransform);
    std::vector<std::pair<std::shared_ptr<AVAssetReaderOutput>, Input>> roads;
    roads.emplace_back(reader->addVideoOutput(CVPixelFormat::AsDecoded), video);
    if (const auto sound = reader->addAudioOutput(stored)) {
        const auto input = stored ? writer->addStoredAudioInput(**asset) : writer->addAudioInput({48'000, 2, 160'000});
        ASSERT_TRUE(input) << input.error().message();
        roads.emplace_back(sound, *input);
    }
    ASSERT_TRUE(reader->startReading());
    ASSERT_TRUE(writer->startWriting());
    writer->startSessionAtSourceTime(kCMTimeZero);
    std::vector<std::thread> threads;
    for (const auto& road : roads)
        threads.emplace_back([&road] {
            while (const auto piece = road.first->copyNextSampleBuffer())
                put(road.second, *piece);
            road.second->markAsFinished();
        });
    for (std::thread& thread : threads)
        thread.join();
    finish(*writer);
    EXPECT_EQ(writer->status(), AVAssetWriterStatus::Completed) << writer->error().value_or(Error{}).message();
}

/// In sequence: the moments, in samples of 8 kHz, when the sound first becomes loud.
std::size_t onset(const std::string& path)
{
    const std::vector<float> samples = decodedSound(path);
    return static_cast<std::size_t>(
        std::find_if(samples.begin(), samples.end(), [](float sample) { return std::abs(sample) > 0.1F; }) -
        samples.begin());
}

struct Passed {
    std::string name;
    std::vector<std::string> video;
    std::string filters;
    std::vector<std::string> rest; ///< of the options
    std::string from;
    std::string to;
    bool stored;
};

class PassedClip : public testing::TestWithParam<Passed> {};

TEST_P(PassedClip, KeepsTimesColorsTurnAndSound)
{
    const Passed& tested = GetParam();
    const TemporaryFolder folder;
    const std::string silent = folder.path("silent." + tested.from);
    makeQuartersClip(silent, {96, 64}, tested.filters, tested.video);
    const std::string clip = folder.path("clip." + tested.from);
    std::vector<std::string> arguments = {"-i", silent, "-f", "lavfi", "-i"};
    arguments.insert(arguments.end(), {"aevalsrc=if(gte(t\\,0.5)\\,sin(2764*t)/2\\,0):d=1:s=48000", "-c:v", "copy"});
    arguments.insert(arguments.end(), tested.rest.begin(), tested.rest.end());
    makeClip(arguments, clip);
    const std::string out = folder.path("out." + tested.to);
    copyMovie(clip, out, tested.to == "mkv" ? kAVFileTypeMatroska : kAVFileTypeMPEG4, tested.stored);

    const double precision = tested.to == "mkv" || tested.from == "mkv" ? 1.1e-3 : 1e-6;
    const std::vector<double> wanted = timesOf(clip, "v");
    const std::vector<double> got = timesOf(out, "v");
    ASSERT_EQ(got.size(), wanted.size());
    for (std::size_t i = 0; i < got.size(); ++i)
        EXPECT_NEAR(got[i], wanted[i] - wanted[0], precision) << i;
    const json before = probe(clip)["streams"][0];
    const json after = probe(out)["streams"][0];
    for (const char* tag : {"pix_fmt", "color_space", "color_range"})
        EXPECT_EQ(after.value(tag, ""), before.value(tag, "")) << tag;
    for (std::size_t i = 0; i < 4; ++i)
        EXPECT_LE(difference(quarterColors(decodedFrame(out, 5))[i], quarterColors(decodedFrame(clip, 5))[i]), 3) << i;
    if (probe(clip)["streams"].size() < 2)
        return;
    EXPECT_NEAR(static_cast<double>(onset(out)), static_cast<double>(onset(clip)), 8);
    const json codec = tested.stored ? probe(clip)["streams"][1]["codec_name"] : json("aac");
    EXPECT_EQ(probe(out)["streams"][1]["codec_name"], codec);
}

INSTANTIATE_TEST_SUITE_P(, PassedClip,
                         testing::Values(Passed{"BFramesAndStoredAAC",
                                                {"-c:v", "libx264", "-bf", "3"},
                                                "format=yuv420p",
                                                {"-c:a", "aac"},
                                                "mp4",
                                                "mp4",
                                                true},
                                         Passed{"FullRangeAndOpus",
                                                {"-c:v", "libx264", "-color_range", "pc", "-colorspace", "bt470bg"},
                                                "scale=out_range=pc:out_color_matrix=bt601,format=yuv420p",
                                                {"-c:a", "libopus"},
                                                "mkv",
                                                "mkv",
                                                true},
                                         Passed{"VariableRateAndPCM",
                                                {"-vsync", "vfr", "-c:v", "libx264", "-video_track_timescale", "24000"},
                                                "format=yuv420p,setpts='if(gte(N,5),N*1001+7,N*1001)/24000/TB'",
                                                {"-c:a", "pcm_s16le"},
                                                "mov",
                                                "mp4",
                                                false},
                                         Passed{"Turned",
                                                {"-c:v", "libx264"},
                                                "format=yuv420p",
                                                {"-an", "-metadata:s:v", "rotate=90"},
                                                "mp4",
                                                "mp4",
                                                false},
                                         Passed{"TurnedTheOtherWay",
                                                {"-c:v", "libx264"},
                                                "format=yuv420p",
                                                {"-an", "-metadata:s:v", "rotate=270"},
                                                "mp4",
                                                "mkv",
                                                false}),
                         [](const auto& tested) { return tested.param.name; });

TEST(AssetWriter, TurnsAndMirrorsForEveryPlayer)
{
    const TemporaryFolder folder;
    for (int i = 0; i < 8; ++i) {
        const AVTrackTransform transform{i % 4, i >= 4};
        std::vector<Rgba> wanted = quarterColors(quarters(96, 64));
        if (transform.mirrors)
            wanted = {wanted[1], wanted[0], wanted[3], wanted[2]};
        for (int quarter = 0; quarter < transform.quarters; ++quarter)
            wanted = {wanted[2], wanted[0], wanted[3], wanted[1]};
        for (const auto& [name, type] : {std::pair{"a.mp4", kAVFileTypeMPEG4}, {"a.mkv", kAVFileTypeMatroska}}) {
            const std::string path = folder.path(name);
            const Writer writer = writerOf(path, type);
            const Input video = *writer->addVideoInput({{96, 64}, 12});
            video->setTransform(transform);
            ASSERT_TRUE(writer->startWriting());
            put(video, frameAt(quartersIn({96, 64}), kCMTimeZero));
            finish(*writer);
            const std::vector<Rgba> got = quarterColors(decodedFrame(path, 0));
            for (std::size_t corner = 0; corner < 4; ++corner)
                EXPECT_LE(difference(got[corner], wanted[corner]), 4) << name << ' ' << i << ' ' << corner;
        }
    }
}

TEST(AssetWriter, NamesWhatStandsInItsWay)
{
    const TemporaryFolder folder;
    const auto message = [](const std::string& path) {
        const Writer writer = writerOf(path);
        EXPECT_TRUE(writer->addVideoInput({{64, 48}}));
        const Outcome started = writer->startWriting();
        EXPECT_EQ(writer->status(), AVAssetWriterStatus::Failed);
        return started ? std::string() : started.error().message();
    };
    EXPECT_EQ(message(folder.path("x/a.mp4")), folder.path("x/a.mp4") + ": no such folder");
    EXPECT_EQ(message(folder.path()), folder.path() + ": is a folder");
    EXPECT_EQ(AVAssetWriter::make("a.avi", "avi").error().message(), "a.avi: movies of this type can't be written");
    makeClip({"-f", "lavfi", "-i", "sine=d=1", "-c:a", "pcm_s16le"}, folder.path("a.mkv"));
    const auto asset = AVURLAsset::make(folder.path("a.mkv"));
    ASSERT_TRUE(asset);
    EXPECT_EQ(writerOf("b.mp4")->addStoredAudioInput(**asset).error().message(),
              "b.mp4: sound of the codec pcm_s16le can't be held by this type of movie");
    EXPECT_EQ(folder.names(), Names{"a.mkv"});
}

CMSampleBuffer noiseAt(int index)
{
    static const CGImage picture = noisePicture(320, 240, CGImageAlphaInfo::NoneSkipLast);
    auto pixels = CVPixelBuffer::make({320, 240}, CVPixelFormat::BGRA);
    for (int y = 0; y < 240; ++y)
        std::memcpy(pixels->planes()[0].bytes + static_cast<std::size_t>(y) * pixels->planes()[0].bytesPerRow,
                    picture.row((y + index) % 240), std::size_t{4} * 320);
    return frameAt(pixels, CMTime::make(index, 30));
}

/// Writes noise until it is told to stop, or the writer fails.
std::optional<Error> writeNoise(AVAssetWriter& writer, int frames)
{
    const Input video = *writer.addVideoInput({{320, 240}});
    EXPECT_TRUE(writer.startWriting());
    for (int i = 0; i < frames && writer.status() == AVAssetWriterStatus::Writing; ++i)
        if (video->waitUntilReady(20))
            video->appendSampleBuffer(noiseAt(i));
    finish(writer);
    return writer.error();
}

TEST(AssetWriter, LeavesNothingOfAConversionAndARecordingWhenTheDeviceIsFull)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("a.mp4");
    writeFile(path, "an earlier movie");
    rlimit before{};
    getrlimit(RLIMIT_FSIZE, &before);
    for (const bool recording : {false, true}) {
        const Writer writer = writerOf(path);
        writer->setMovieFragmentInterval(recording ? CMTime::make(1, 2) : kCMTimeInvalid);
        const rlimit small{100'000, before.rlim_max};
        setrlimit(RLIMIT_FSIZE, &small);
        const std::optional<Error> error = writeNoise(*writer, 200);
        setrlimit(RLIMIT_FSIZE, &before);
        ASSERT_TRUE(error);
        EXPECT_EQ(writer->status(), AVAssetWriterStatus::Failed);
        EXPECT_EQ(error->message().find(path + ": the file is too large for the device"), 0u) << error->message();
        EXPECT_EQ(readFile(path), "an earlier movie");
        const Names names = folder.names();
        ASSERT_EQ(names.size(), recording ? 2u : 1u);
        EXPECT_TRUE(!recording || timesOf(folder.path(names.back()), "v").size() > 10);
    }
}

TEST(AssetWriter, CancelsAtOnceAndWritesNothingUnlessStarted)
{
    const TemporaryFolder folder;
    const std::string path = folder.path("a.mp4");
    writerOf(path)->addVideoInput({{320, 240}}).ok();
    EXPECT_TRUE(folder.names().empty());
    const Writer writer = writerOf(path);
    writer->setMovieFragmentInterval(CMTime::make(1, 1));
    const Input video = *writer->addVideoInput({{320, 240}});
    ASSERT_TRUE(writer->startWriting());
    for (int i = 0; i < 40; ++i)
        put(video, noiseAt(i));
    std::thread waiting([&] {
        while (video->waitUntilReady(20))
            video->appendSampleBuffer(noiseAt(0));
    });
    const auto begin = std::chrono::steady_clock::now();
    writer->cancelWriting();
    EXPECT_LT(std::chrono::steady_clock::now() - begin, std::chrono::milliseconds(100));
    EXPECT_TRUE(folder.names().empty());
    waiting.join();
    EXPECT_EQ(writer->status(), AVAssetWriterStatus::Cancelled);
}

TEST(AssetWriter, LeavesARecordingThatPlaysWhenItIsKilled)
{
    const TemporaryFolder folder;
    const pid_t child = ::fork();
    if (child == 0) {
        const Writer writer = writerOf(folder.path("a.mp4"));
        writer->setMovieFragmentInterval(CMTime::make(1, 2));
        const Input video = *writer->addVideoInput({{320, 240}});
        const Input audio = *writer->addAudioInput({});
        if (writer->startWriting())
            for (int i = 0; i < 120; ++i) {
                put(video, noiseAt(i));
                put(audio, tone(735L * i, 735));
            }
        std::this_thread::sleep_for(std::chrono::milliseconds(200));
        ::kill(::getpid(), SIGKILL);
    }
    ASSERT_GT(child, 0);
    ::waitpid(child, nullptr, 0);
    const Names names = folder.names();
    ASSERT_EQ(names.size(), 1u);
    EXPECT_EQ(names[0].find("a.recording-"), 0u);
    EXPECT_EQ(names[0].find(kUnfinishedSuffix), std::string::npos);
    EXPECT_GT(timesOf(folder.path(names[0]), "v").size(), 60u);
    EXPECT_NEAR(timesOf(folder.path(names[0]), "v").front(), 0, 1e-6);
    EXPECT_GT(loudness(decodedSound(folder.path(names[0])), 0.5, 1), 0.3);
}

TEST(AssetWriter, MakesTheSameBytesOnAnyNumberOfProcessors)
{
    const TemporaryFolder folder;
    std::string first;
    for (int i = 0; i < 4; ++i) {
        std::optional<OneProcessor> one;
        if (i % 2 != 0)
            one.emplace();
        const Writer writer = writerOf(folder.path("a.mp4"));
        writer->setMovieFragmentInterval(CMTime::make(i / 2, 1));
        ASSERT_FALSE(writeNoise(*writer, 60));
        first = i == 0 ? readFile(folder.path("a.mp4")) : first;
        EXPECT_TRUE(readFile(folder.path("a.mp4")) == first) << i;
    }
}

TEST(AssetWriter, AsksForPiecesUntilTheyEnd)
{
    const TemporaryFolder folder;
    const Writer writer = writerOf(folder.path("a.mp4"));
    const Input video = *writer->addVideoInput({{320, 240}});
    DispatchQueue queue("pieces");
    ASSERT_TRUE(writer->startWriting());
    std::promise<void> done;
    int next = 0;
    video->requestMediaDataWhenReady(queue, [&] {
        while (next < 30 && video->isReadyForMoreMediaData())
            video->appendSampleBuffer(noiseAt(next++));
        if (next == 30 && !video->isFinished()) {
            video->markAsFinished();
            done.set_value();
        }
    });
    done.get_future().wait();
    finish(*writer);
    EXPECT_EQ(timesOf(folder.path("a.mp4"), "v").size(), 30u);
}

} // namespace
} // namespace lamina::test
