#include "CommandRunner.h"
#include "LogCapture.h"
#include "TestClips.h"

#include "export/functions/ClipThumbnail.h"
#include "export/functions/ExportWork.h"
#include "export/functions/MP4Function.h"
#include "platform/base/Log.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <filesystem>
#include <utility>

namespace lamina::test {
namespace {

/// With the folders above it.
void placeFile(const std::string& path, const std::string& content)
{
    std::filesystem::create_directories(std::filesystem::path(path).parent_path());
    writeFile(path, content);
}

/// A user whose folder for documents is "Akten".
class MP4Export : public testing::Test {
protected:
    void SetUp() override
    {
        placeFile(home.path("config/user-dirs.dirs"), "XDG_DOCUMENTS_DIR=\"$HOME/Akten\"\n");
        ::setenv("XDG_CONFIG_HOME", home.path("config").c_str(), 1);
        ::setenv("HOME", home.path().c_str(), 1);
        setMinimumLogLevel(LogLevel::Debug);
    }
    void TearDown() override { setMinimumLogLevel(LogLevel::Info); }

    Result<ExportedFile> save(const ExportSource& source, VideoQuality quality = VideoQuality::High,
                              const ExportPlace& place = {}, const ExportWatch& watch = {})
    {
        ExportOptions options;
        options.video = quality;
        return runExport(SavingtypeMethod::mp4, source, options, place, watch);
    }
    std::string failure(const ExportSource& source, const ExportPlace& place = {}, const ExportWatch& watch = {})
    {
        const Result<ExportedFile> file = save(source, VideoQuality::Low, place, watch);
        return file ? "written" : file.error().message();
    }

    const TemporaryFolder home;
    const std::string target = home.path("Akten/Lamina/Convert/Convert.mp4");
    const UIImage noise{noisePicture(125, 75, CGImageAlphaInfo::NoneSkipLast)};
    const LogCapture log;
};

TEST_F(MP4Export, ReplacesTheFilmOfBeforeAtTheQualityThatIsChosen)
{
    std::vector<std::uintmax_t> sizes;
    for (const VideoQuality quality : {VideoQuality::High, VideoQuality::Medium, VideoQuality::Low}) {
        const Result<ExportedFile> file = save({noise, {}}, quality);
        ASSERT_TRUE(file) << file.error().message();
        EXPECT_EQ(file->path, target);
        EXPECT_TRUE(file->picture.cgImage().sharesBytesWith(noise.cgImage()));
        sizes.push_back(std::filesystem::file_size(target));
    }
    EXPECT_GT(sizes[0] * 10, sizes[1] * 11);
    EXPECT_GT(sizes[1] * 10, sizes[2] * 11);
    const nlohmann::json film = probe(target);
    ASSERT_EQ(film["streams"].size(), 2u);
    EXPECT_EQ(film["streams"][0]["nb_read_packets"], "90");
    EXPECT_EQ(film["streams"][1]["codec_name"], "aac");
    EXPECT_EQ(film["format"]["duration"], "3.000000");
    EXPECT_TRUE(log.messages.empty());
}

TEST_F(MP4Export, ConvertsAClipThatItsThumbnailStandsFor)
{
    const std::string clip = home.path("Ein Clip ü.mp4");
    makeQuartersClip(home.path("flat.mp4"), {96, 64}, "format=yuv420p", {"-c:v", "libx264"});
    makeClip({"-i", home.path("flat.mp4"), "-c", "copy", "-metadata:s:v", "rotate=90"}, clip);
    for (const std::string& name : {clip, "file://" + home.path("Ein%20Clip%20%C3%BC.mp4")}) {
        const Result<UIImage> frame = thumbnailOfVideo(name);
        ASSERT_TRUE(frame) << frame.error().message();
        EXPECT_EQ(frame->pixelSize(), (IntSize{64, 96}));
    }
    const ExportPlace place{home.path(), "film.mp4"};
    const Result<ExportedFile> file = save({*thumbnailOfVideo(clip), clip}, VideoQuality::Medium, place);
    ASSERT_TRUE(file) << file.error().message();
    EXPECT_EQ(file->path, home.path("film.mp4"));
    EXPECT_EQ(thumbnailOfVideo(file->path)->pixelSize(), (IntSize{64, 96}));
    EXPECT_FALSE(std::filesystem::exists(home.path("Akten")));
    EXPECT_EQ(thumbnailOfVideo(home.path("none.mp4")).error().message(), home.path("none.mp4") + ": no such file");
    EXPECT_FALSE(thumbnailOfVideo("file://elsewhere/a.mp4"));
}

TEST_F(MP4Export, NamesWhatWentWrongAndKeepsTheFilmOfBefore)
{
    placeFile(target, "an earlier film");
    writeFile(home.path("text.mp4"), "no clip");
    const std::string text = home.path("text.mp4");
    EXPECT_EQ(failure({noise, text}), text + ": not a clip that can be read");
    EXPECT_EQ(log.messages.back().second,
              "Error converting video: VideoExportError -1, Cannot create export session: " + text +
                  ": not a clip that can be read");
    const std::atomic<bool> cancelled = true;
    EXPECT_EQ(failure({noise, {}}, {}, {.cancelled = &cancelled}), target + ": cancelled");
    EXPECT_EQ(log.messages.back().second,
              "Error converting video: VideoExportError -3, Export cancelled: " + target + ": cancelled");
    EXPECT_EQ(failure({noise, {}}, {home.path("none"), {}}), home.path("none/Convert.mp4") + ": no such folder");
    EXPECT_EQ(log.messages.back().second,
              "Error converting video: " + home.path("none/Convert.mp4") + ": no such folder");
    EXPECT_EQ(failure({}), "there is no picture");
    const MP4Function& function = MP4Function::shared();
    EXPECT_FALSE(function.convertVideo(text, "AVAssetExportPreset640x480"));
    EXPECT_EQ(function.generateVideo(noise, "").error().message(), "Blank Audio.mp3: no such file");
    EXPECT_EQ(readFile(target), "an earlier film");
    EXPECT_EQ(std::filesystem::exists(home.path("none")), false);
}

TEST_F(MP4Export, LeavesAndDeletesNothingButItsOwnFiles)
{
    const std::string convert = home.path("Akten/Lamina/Convert");
    placeFile(convert, "minutes of a meeting");
    EXPECT_EQ(failure({noise, {}}).substr(0, convert.size() + 2), convert + ": ");
    EXPECT_EQ(readFile(convert), "minutes of a meeting");
    const MP4Function& function = MP4Function::shared();
    const std::string folder = home.path("Akten/Lamina");
    EXPECT_TRUE(function.deleteFile(convert));
    EXPECT_TRUE(function.deleteFile(convert));
    EXPECT_FALSE(function.deleteFile(folder));
    EXPECT_EQ(log.messages.back().second, "Unable to delete file: " + folder + ": is a folder : deleteFile(_:).");
    EXPECT_TRUE(std::filesystem::is_directory(folder));
    EXPECT_FALSE(std::filesystem::exists(convert));
}

} // namespace
} // namespace lamina::test
