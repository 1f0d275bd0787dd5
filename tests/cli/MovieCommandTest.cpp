#include "CommandLines.h"
#include "TestClips.h"

#include <algorithm>
#include <cmath>
#include <cstddef>
#include <cstdlib>
#include <filesystem>
#include <gmock/gmock.h>
#include <sstream>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

using testing::AllOf;
using testing::DoubleNear;
using testing::HasSubstr;
using testing::Pointwise;
using testing::StartsWith;

const std::vector<std::string> kPicture{"-f", "lavfi", "-i", "testsrc2=size=160x90:rate=25:duration=2"};
const std::vector<std::string> kPictureAndSound{"-f", "lavfi", "-i", "testsrc2=size=160x90:rate=25:duration=2",
                                                "-f", "lavfi", "-i", "sine=440:duration=2"};
constexpr const char* kSepia = " --filter GPUImageSepiaFilter";

class Movies : public CommandLines {
protected:
    /// A clip of that name in the folder.
    void clip(const std::string& name, std::vector<std::string> arguments,
              const std::vector<std::string>& more = {}) const
    {
        arguments.insert(arguments.end(), more.begin(), more.end());
        makeClip(arguments, folder.path(name));
    }
    /// Runs a line that must do; gives what it prints.
    std::string good(const std::string& line) const
    {
        SCOPED_TRACE(line);
        const CommandResult run = shell(line);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.errors, "");
        return run.output;
    }
    /// The times of a file's frames ("v") or pieces of sound ("a"), in seconds, as players see them.
    std::vector<double> times(const std::string& name, const std::string& stream = "v") const
    {
        std::istringstream lines(good("ffprobe -v error -select_streams " + stream +
                                      " -show_entries frame=pts_time -of default=nk=1:nw=1 " + name));
        std::vector<double> times;
        for (std::string line; std::getline(lines, line);)
            times.push_back(std::strtod(line.c_str(), nullptr));
        return times;
    }
    nlohmann::json stream(const std::string& name, const std::string& type) const
    {
        const nlohmann::json probed = probe(folder.path(name));
        for (const nlohmann::json& stream : probed["streams"])
            if (stream["codec_type"] == type)
                return stream;
        return nlohmann::json::object();
    }
};

TEST_F(Movies, KeepTimesAndTurnAndSound)
{
    clip("plain.mp4", kPictureAndSound);
    clip("silent.mkv", kPicture);
    clip("opus.mkv", kPictureAndSound, {"-c:a", "libopus"});
    clip("late.mkv", kPictureAndSound, {"-af", "adelay=delays=300ms,atrim=start=0.3", "-c:a", "pcm_s16le"});
    clip("uneven.mp4", kPictureAndSound, {"-vf", "select='not(mod(n,3))+lt(n,9)',crop=158:86", "-vsync", "vfr"});
    clip("ten.mkv", kPicture, {"-pix_fmt", "yuv420p10le", "-bf", "3"});
    makeQuartersClip(folder.path("stored.mp4"), {160, 96}, "format=yuv420p", {});
    clip("turned.mov", {"-i", folder.path("stored.mp4")}, {"-c", "copy", "-metadata:s:v", "rotate=90"});
    const struct {
        std::string input;
        std::string output;
        std::string sound; ///< its codec in the output; empty: none
    } cases[] = {{"plain.mp4", "a.mkv", "aac"}, {"silent.mkv", "a.mp4", ""},  {"opus.mkv", "a.mp4", "opus"},
                 {"opus.mkv", "b.mkv", "opus"}, {"late.mkv", "b.mp4", "aac"}, {"uneven.mp4", "a.mov", "aac"},
                 {"ten.mkv", "c.mp4", ""},      {"turned.mov", "c.mkv", ""}};
    for (const auto& [input, output, sound] : cases) {
        std::vector<double> wanted = times(input);
        const double start = wanted.at(0);
        const double offset = sound.empty() ? 0 : times(input, "a").at(0) - start;
        for (double& time : wanted)
            time -= start;
        for (const std::string& filter : {std::string(), std::string(kSepia) + " --set intensity=0"}) {
            SCOPED_TRACE(input + filter);
            good("lamina movie " + input + " -o " + output + filter);
            EXPECT_THAT(times(output), Pointwise(DoubleNear(1.1e-3), wanted));
            EXPECT_EQ(stream(output, "audio").value("codec_name", ""), sound);
            if (input == "late.mkv") { // what is encoded begins with silence
                const std::vector<float> heard = decodedSound(folder.path(output));
                const auto first = std::ranges::find_if(heard, [](float sample) { return std::abs(sample) > 0.02F; });
                EXPECT_NEAR(static_cast<double>(first - heard.begin()) / 8000, offset, 5e-3);
            } else if (!sound.empty()) {
                EXPECT_NEAR(times(output, "a").at(0), offset, sound == "opus" ? 7.1e-3 : 5e-3)
                    << "Opus wakes for 6.5 ms";
            }
            if (input != "turned.mov")
                continue;
            const auto before = quarterColors(decodedFrame(folder.path(input), 1));
            const auto after = quarterColors(decodedFrame(folder.path(output), 1)); // both upright
            for (std::size_t i = 0; i < before.size(); ++i)
                for (std::size_t c = 0; c < 3; ++c)
                    EXPECT_NEAR(before[i][c], after[i][c], 24) << i; // the clip is untagged: 601 becomes 709
        }
    }
}

TEST_F(Movies, PartsSizesAndFilters)
{
    clip("in.mp4", kPictureAndSound);
    for (const std::string& filter : {std::string(), std::string(kSepia)}) {
        SCOPED_TRACE(filter);
        const nlohmann::json told = nlohmann::json::parse(
            good("lamina movie in.mp4 -o out.mp4 --from 0.5 --to 1.5 --json --quality low" + filter));
        EXPECT_EQ(told["frames"], 26);
        EXPECT_EQ(told["sound"]["codec"], "aac");
        const std::vector<double> frames = times("out.mp4");
        ASSERT_EQ(frames.size(), 26u) << "the first one began before, and is seen for a half of its time";
        EXPECT_NEAR(frames[0], 0, 1e-9);
        EXPECT_NEAR(frames[1], 0.02, 1e-3);
        EXPECT_NEAR(frames.back(), 0.98, 1e-3);
        EXPECT_NEAR(times("out.mp4", "a").front(), 0, 0.025);
        EXPECT_NEAR(times("out.mp4", "a").back(), 1, 0.05);
    }
    const nlohmann::json told = nlohmann::json::parse(good(
        "lamina movie in.mp4 -o out.mov --size 81x45 --mute --json --filter GPUImageSepiaFilter --set intensity=0.3"
        " --filter GPUImageCropFilter --set cropRegion=0,0,0.5,1"));
    EXPECT_THAT(told["filters"], testing::ElementsAre("GPUImageSepiaFilter", "GPUImageCropFilter"));
    EXPECT_TRUE(told["sound"].is_null());
    EXPECT_EQ(stream("out.mov", "video")["width"], 82);
    EXPECT_EQ(stream("out.mov", "video")["height"], 46);
    good("lamina movie in.mp4 -o cropped.mp4 --filter GPUImageCropFilter --set cropRegion=0,0,0.5,1");
    EXPECT_EQ(stream("cropped.mp4", "video")["width"], 80);
    writeFile(folder.path("chain.json"), R"({"Filters": [{"FilterName": "GPUImageSepiaFilter"}]})");
    for (const std::string cores : {"taskset -c 0 ", ""})
        good(cores + "'" LAMINA_COMMAND "' movie in.mp4 -o " + (cores.empty() ? "two" : "one") + ".mp4" + kSepia);
    good("lamina movie in.mp4 -o chain.mp4 --pipeline chain.json && cmp chain.mp4 one.mp4 && cmp one.mp4 two.mp4 && "
         "lamina movie in.mp4 -o in.mp4" +
         std::string(kSepia) + " && cmp in.mp4 one.mp4");
}

TEST_F(Movies, ThatFailLeaveNothing)
{
    clip("in.mp4", kPictureAndSound, {"-movflags", "faststart"});
    const std::string whole = readFile(folder.path("in.mp4"));
    writeFile(folder.path("cut.mp4"), whole.substr(0, whole.size() / 2));
    writeFile(folder.path("list.mp4"), "#EXTM3U\n#EXTINF:2,\nin.mp4\n#EXT-X-ENDLIST\n");
    good("ffmpeg -v error -i in.mp4 -vn sound.m4a");
    const std::vector<std::string> before = folder.names();
    const struct {
        std::string line;
        int exitCode;
        std::string message;
    } cases[] = {
        {"cut.mp4 -o out.mp4", 3, "lamina: cut.mp4: "},
        {"list.mp4 -o out.mp4", 3, "lamina: list.mp4: not a clip"},
        {"sound.m4a -o out.mp4", 3, "lamina: sound.m4a: "},
        {"in.mp4 -o out.mp4 --from 5", 3, "lamina: in.mp4: ends before 5 s"},
        {"in.mp4 -o no/out.mp4", 4, "lamina: no/out.mp4: no such folder"},
        {"in.mp4 -o out.mp4 --filter GPUImageToneCurveFilter --set pointsWithACVURL=no.acv", 3,
         "lamina: no.acv: no su"},
    };
    for (const auto& [line, exitCode, message] : cases) {
        for (const std::string& filter : {std::string(), std::string(kSepia)}) {
            SCOPED_TRACE(line + filter);
            const CommandResult run = shell("lamina movie " + line + filter);
            EXPECT_EQ(run.exitCode, exitCode);
            EXPECT_THAT(run.errors, StartsWith(message));
            EXPECT_EQ(std::ranges::count(run.errors, '\n'), 1);
            EXPECT_EQ(folder.names(), before);
        }
    }
    CommandOptions fullDisk;
    fullDisk.fileSizeLimit = 20'000;
    const CommandResult full = shell("lamina movie in.mp4 -o out.mp4", fullDisk);
    EXPECT_EQ(full.exitCode, 4);
    EXPECT_THAT(full.errors, StartsWith("lamina: out.mp4: "));
    EXPECT_EQ(folder.names(), before);
}

TEST_F(Movies, ATerminalSeesHowFarTheyAreAndCtrlCLeavesNothing)
{
    clip("in.mp4", {"-f", "lavfi", "-i", "testsrc2=size=1280x720:rate=25:duration=12"}, {"-preset", "ultrafast"});
    const std::vector<std::string> before = folder.names();
    CommandOptions options;
    options.interruptAfterMs = 700;
    for (const std::vector<std::string>& filter :
         {std::vector<std::string>{}, std::vector<std::string>{"--filter", "GPUImageSepiaFilter"}}) {
        std::vector<std::string> arguments{"movie", folder.path("in.mp4"), "-o", folder.path("out.mp4")};
        arguments.insert(arguments.end(), filter.begin(), filter.end());
        EXPECT_EQ(runCommand(LAMINA_COMMAND, arguments, options).exitCode, 130);
        EXPECT_EQ(folder.names(), before);
    }
    EXPECT_THAT(good("script -qec \"'" LAMINA_COMMAND "' movie in.mp4 -o out.mp4\" /dev/null"),
                AllOf(HasSubstr("#"), HasSubstr(" %, "), HasSubstr(" left"), HasSubstr("out.mp4: 300 frames, 12 s")));
}

} // namespace
} // namespace lamina::test
