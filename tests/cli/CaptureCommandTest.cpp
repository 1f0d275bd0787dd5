#include "CommandLines.h"
#include "PipeWireSession.h"
#include "TestCameraNode.h"
#include "TestClips.h"

#include <algorithm>
#include <atomic>
#include <csignal>
#include <cstdlib>
#include <cstring>
#include <functional>
#include <future>
#include <gmock/gmock.h>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

using testing::AllOf;
using testing::Contains;
using testing::ElementsAre;
using testing::HasSubstr;
using testing::StartsWith;

class Captures : public CommandLines {
protected:
    /// Runs a line that must do and tell nothing; gives what it prints.
    std::string good(const std::string& line) const
    {
        SCOPED_TRACE(line);
        const CommandResult run = shell("lamina capture " + line);
        EXPECT_EQ(run.exitCode, 0);
        EXPECT_EQ(run.errors, "");
        return run.output;
    }
    static std::vector<std::string> codecs(const nlohmann::json& probed)
    {
        std::vector<std::string> names;
        for (const nlohmann::json& stream : probed["streams"])
            names.push_back(stream["codec_name"]);
        return names;
    }
    /// A camera whose frames are taken for a sign that time passes: once a clip has grown for half a second of them it
    /// calls `act`, once.
    static TestCameraSettings watchedCamera(const std::string& folder, std::function<void()> act)
    {
        TestCameraSettings settings;
        const auto frames = std::make_shared<std::atomic<int>>(0);
        settings.draw = [folder, act = std::move(act), frames](TestCameraFrame& frame) {
            std::memset(frame.bytes, static_cast<int>(frame.number % 200), frame.chunkSize);
            for (const auto& entry : std::filesystem::directory_iterator(folder)) {
                if (entry.path().filename().string().find(".recording-") != std::string::npos && ++*frames == 15)
                    act();
            }
        };
        return settings;
    }
};

TEST_F(Captures, ListWhatThereIs)
{
    const auto list = [this] { return nlohmann::json::parse(good("--list --json")); };
    {
        const PipeWireSession session(PipeWireSession::Microphone);
        const TestCameraNode front({.name = "a", .description = "Cam\x1b", .location = "front", .mountRotation = 90});
        const TestCameraNode back({.name = "b", .description = "Rear", .sizes = {{640, 480}}, .location = "back"});
        const nlohmann::json all = list();
        ASSERT_EQ(all["cameras"].size(), 2u);
        const nlohmann::json& first = all["cameras"][all["cameras"][0]["id"] == "a" ? 0 : 1];
        EXPECT_EQ(first["name"], "Cam\x1b");
        EXPECT_EQ(first["position"], "front");
        EXPECT_EQ(static_cast<int>(first["rotation"]) % 180, 90);
        EXPECT_EQ(first["modes"].size(), 3u);
        EXPECT_EQ(
            first["modes"][0],
            (nlohmann::json{{"width", 1280}, {"height", 720}, {"minRate", 30}, {"maxRate", 30}, {"encoding", "YUY2"}}));
        EXPECT_EQ(all["microphones"][0]["name"], "Test microphone");
        EXPECT_THAT(good("--list"), AllOf(HasSubstr("  Cam?\n      a\n      front, turned by "),
                                          HasSubstr("1280 x 720 pixels, 30 frames a second, YUY2\n"),
                                          HasSubstr("\nMicrophones:\n  Test microphone\n")));
        for (const auto& [name, message] : std::vector<std::pair<std::string, std::string>>{
                 {"raer", "lamina: raer: there is no such camera; did you mean Rear? there are '"},
                 {"c", "lamina: c: there is no such camera; "}}) {
            const CommandResult run = shell("lamina capture -o out.png --camera " + name);
            EXPECT_EQ(run.exitCode, 3);
            EXPECT_THAT(run.errors, StartsWith(message));
        }
        const TestCameraNode twin({.name = "c", .description = "Rear"});
        for (const std::string name : {"Rear", "rear"}) {
            const CommandResult run = shell("lamina capture -o out.png --camera " + name);
            EXPECT_EQ(run.exitCode, 3);
            EXPECT_THAT(run.errors, AllOf(HasSubstr("told apart by their IDs"), HasSubstr("'b'"), HasSubstr("'c'")));
        }
    }
    {
        const PipeWireSession session(PipeWireSession::Nothing);
        EXPECT_EQ(list(),
                  (nlohmann::json{{"cameras", nlohmann::json::array()}, {"microphones", nlohmann::json::array()}}));
        EXPECT_EQ(good("--list"), "There is no camera.\n\nThere is no microphone.\n");
        const CommandResult run = shell("lamina capture -o out.png");
        EXPECT_EQ(run.exitCode, 3);
        EXPECT_EQ(run.errors, "lamina: capture: there is no camera\n");
    }
    // Nobody serves any.
    const std::string alone = "PIPEWIRE_RUNTIME_DIR=. XDG_RUNTIME_DIR=. ";
    const CommandResult listed = shell("export " + alone + "; lamina capture --list --json");
    EXPECT_EQ(listed.exitCode, 0);
    EXPECT_EQ(nlohmann::json::parse(listed.output)["cameras"].size(), 0u);
    const CommandResult run = shell("export " + alone + "; lamina capture -o out.png");
    EXPECT_EQ(run.exitCode, 3);
    EXPECT_THAT(listed.errors, AllOf(StartsWith("lamina: "), testing::Eq(run.errors)));
}

TEST_F(Captures, StillsAreLargeUprightAndFiltered)
{
    const PipeWireSession session(PipeWireSession::Nothing);
    const CGImage chart = quarters(64, 48);
    const TestCameraNode front(
        {.name = "front-1", .description = "Turned", .location = "front", .mountRotation = 90, .picture = chart});
    const TestCameraNode plain({.name = "plain", .description = "Plain", .picture = chart});
    const std::vector<Rgba> seen = quarterColors(chart);
    const auto expectColors = [&](const CGImage& still, const std::vector<Rgba>& wanted, bool inverts) {
        const std::vector<Rgba> got = quarterColors(still);
        for (std::size_t i = 0; i < got.size(); ++i)
            for (std::size_t c = 0; c < 3; ++c)
                EXPECT_NEAR(inverts ? 255 - got[i][c] : got[i][c], wanted[i][c], 6) << i;
    };

    const CGImage still = picture("lamina capture --camera plain -o out.png");
    EXPECT_EQ(still.size(), (IntSize{1280, 720}));
    expectColors(still, seen, false);

    const int turned = nlohmann::json::parse(good("--list --json"))["cameras"][0]["rotation"];
    const CGImage inverted = picture("lamina capture --camera front --filter GPUImageColorInvertFilter -o - >out.png");
    EXPECT_EQ(inverted.size(), (IntSize{720, 1280}));
    // Upper left, upper right, lower left, lower right as they are seen, turned clockwise, then mirrored.
    const std::vector<Rgba> clockwise{seen[0], seen[2], seen[1], seen[3]};
    const std::vector<Rgba> counterclockwise{seen[3], seen[1], seen[2], seen[0]};
    expectColors(inverted, turned == 90 ? clockwise : counterclockwise, true);

    const nlohmann::json told = nlohmann::json::parse(
        good("--camera plain --json -o out.jpg --filter GPUImageCropFilter --set cropRegion=0,0,0.5,0.5"));
    EXPECT_EQ(told, (nlohmann::json{{"input", "Plain"},
                                    {"output", "out.jpg"},
                                    {"filters", {"GPUImageCropFilter"}},
                                    {"width", 640},
                                    {"height", 360}}));
    EXPECT_EQ(codecs(probe(folder.path("out.jpg"))), std::vector<std::string>{"mjpeg"});
}

TEST_F(Captures, ClipsHaveTheirLengthSizeAndSound)
{
    const PipeWireSession session(PipeWireSession::Microphone);
    const TestCameraNode camera({.description = "Node", .mountRotation = 90, .picture = quarters(64, 48)});
    const nlohmann::json told = nlohmann::json::parse(
        good("-o out.mp4 --for 1.5 --size 320x240 --json --filter GPUImageSepiaFilter --filter GPUImageHazeFilter"));
    EXPECT_EQ(told["input"], "Node");
    EXPECT_EQ(told["width"], 240);
    EXPECT_EQ(told["height"], 320);
    EXPECT_EQ(told["sound"]["codec"], "aac");
    EXPECT_THAT(codecs(probe(folder.path("out.mp4"))), ElementsAre("h264", "aac"));
    const std::vector<double> frames = frameTimes(folder.path("out.mp4"));
    ASSERT_EQ(frames.size(), told["frames"]);
    EXPECT_GE(frames.size() + static_cast<std::size_t>(told["dropped"]), 30u);
    EXPECT_GT(frames.back() - frames.front(), 1.0);
    EXPECT_LT(frames.back() - frames.front(), 1.5) << "what begins at the end is left out";
    const std::vector<float> heard = decodedSound(folder.path("out.mp4"));
    EXPECT_GT(std::ranges::max(heard), 0.02F);

    good("-o out.mkv --for 0.5 --mute --quality low --rate 30");
    EXPECT_THAT(codecs(probe(folder.path("out.mkv"))), ElementsAre("h264"));
    EXPECT_THAT(folder.names(), ElementsAre("flat.png", "out.mkv", "out.mp4", "small.png"));
}

TEST_F(Captures, ClipsEndWhenTheyAreAskedTo)
{
    const PipeWireSession session(PipeWireSession::Nothing);
    const auto signalled = [this](std::vector<int> signals) {
        return [this, signals = std::move(signals)] {
            const int command = std::atoi(readFile(folder.path("pid")).c_str());
            for (const int each : signals)
                ::kill(command, each);
        };
    };
    const struct {
        std::vector<int> signals;
        int exitCode;
    } cases[] = {{{SIGINT}, 0}, {{SIGTERM}, 0}, {{SIGINT, SIGTERM}, 130}};
    const std::vector<std::string> before = folder.names();
    for (const auto& [signals, exitCode] : cases) {
        SCOPED_TRACE(signals.size() * 100 + static_cast<std::size_t>(signals.front()));
        const TestCameraNode camera(watchedCamera(folder.path(), signalled(signals)));
        const CommandResult run =
            shell("echo $$ >pid; exec '" LAMINA_COMMAND "' capture -o out.mp4 --size 320x240 --json -q");
        EXPECT_EQ(run.exitCode, exitCode);
        EXPECT_EQ(run.errors, "");
        std::filesystem::remove(folder.path("pid"));
        EXPECT_EQ(std::filesystem::exists(folder.path("out.mp4")), exitCode == 0);
        if (exitCode == 0) {
            const std::size_t frames = frameTimes(folder.path("out.mp4")).size();
            EXPECT_GE(frames, 8u);
            EXPECT_EQ(nlohmann::json::parse(run.output)["frames"], frames);
        }
        std::filesystem::remove(folder.path("out.mp4"));
        EXPECT_EQ(folder.names(), before);
    }

    std::promise<void> grown;
    auto camera = std::make_unique<TestCameraNode>(watchedCamera(folder.path(), [&grown] { grown.set_value(); }));
    std::future<CommandResult> running =
        std::async(std::launch::async, [this] { return shell("lamina capture -o out.mov --camera node-camera"); });
    grown.get_future().wait();
    camera.reset(); // unplugged
    const CommandResult run = running.get();
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors, AllOf(StartsWith("lamina: Node camera: "),
                                  HasSubstr("; what was recorded until then is in out.mov\n")));
    EXPECT_GE(frameTimes(folder.path("out.mov")).size(), 8u);
    EXPECT_THAT(folder.names(), Contains("out.mov"));
}

} // namespace
} // namespace lamina::test
