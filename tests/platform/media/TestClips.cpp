#include "TestClips.h"

#include "CommandRunner.h"

#include <cstdlib>
#include <cstring>

namespace lamina::test {

namespace {

const bool kPlacesTold =
    ::setenv("LAMINA_MODULES", LAMINA_MODULES, 0) == 0 && ::setenv("LAMINA_SOUNDS", LAMINA_SOUNDS, 0) == 0;

std::string run(const std::string& program, std::vector<std::string> arguments)
{
    arguments.insert(arguments.begin(), {"-v", "error"});
    const CommandResult result = runCommand(program, arguments);
    EXPECT_EQ(result.exitCode, 0) << result.errors;
    return result.output;
}

std::vector<float> samplesOf(const std::string& bytes)
{
    std::vector<float> samples(bytes.size() / sizeof(float));
    std::memcpy(samples.data(), bytes.data(), samples.size() * sizeof(float));
    return samples;
}

} // namespace

void makeClip(const std::vector<std::string>& arguments, const std::string& path)
{
    std::vector<std::string> all = {"-y"};
    all.insert(all.end(), arguments.begin(), arguments.end());
    all.push_back(path);
    run(FFMPEG, all);
}

CGImage quarters(int width, int height)
{
    return makePicture(width, height, [&](int x, int y) {
        const bool right = 2 * x >= width;
        if (2 * y < height)
            return right ? Rgba{30, 180, 40, 255} : Rgba{200, 40, 30, 255};
        return right ? Rgba{150, 150, 150, 255} : Rgba{40, 50, 190, 255};
    });
}

std::vector<Rgba> quarterColors(const CGImage& image)
{
    const int x = image.width() / 4;
    const int y = image.height() / 4;
    return {pixelAt(image, x, y), pixelAt(image, 3 * x, y), pixelAt(image, x, 3 * y), pixelAt(image, 3 * x, 3 * y)};
}

void makeQuartersClip(const std::string& path, IntSize size, const std::string& filters,
                      const std::vector<std::string>& options, const std::string& frames)
{
    const std::string picture = path + ".png";
    writePng(picture, quarters(size.width, size.height));
    std::vector<std::string> arguments = {"-loop", "1", "-framerate", "10", "-i", picture};
    arguments.insert(arguments.end(), {"-frames:v", frames, "-vf", filters});
    arguments.insert(arguments.end(), options.begin(), options.end());
    makeClip(arguments, path);
}

nlohmann::json probe(const std::string& path)
{
    return nlohmann::json::parse(run(FFPROBE, {"-count_packets", "-show_streams", "-show_format", "-of", "json", path}),
                                 nullptr, false);
}

std::string decodedRows(const std::string& path, const std::string& filters, const std::string& format)
{
    return run(FFMPEG, {"-noautorotate", "-i", path, "-map", "0:v", "-vsync", "passthrough", "-vf",
                        filters + ",format=" + format, "-f", "rawvideo", "-"});
}

std::vector<float> storedSound(const std::string& path)
{
    return samplesOf(run(FFMPEG, {"-i", path, "-vn", "-f", "f32le", "-"}));
}

std::vector<double> frameTimes(const std::string& path)
{
    const auto found = nlohmann::json::parse(run(FFPROBE, {"-select_streams", "v:0", "-show_entries",
                                                           "frame=best_effort_timestamp_time", "-of", "json", path}),
                                             nullptr, false);
    std::vector<double> times;
    for (const nlohmann::json& frame : found.at("frames"))
        times.push_back(std::stod(frame.at("best_effort_timestamp_time").get<std::string>()));
    return times;
}

nlohmann::json probePackets(const std::string& path, const std::string& tracks)
{
    const std::string told = run(FFPROBE, {"-select_streams", tracks, "-show_packets", "-of", "json", path});
    return nlohmann::json::parse(told, nullptr, false).value("packets", nlohmann::json::array());
}

CGImage decodedFrame(const std::string& path, int index)
{
    const TemporaryFolder folder;
    const std::string picture = folder.path("frame.bmp");
    makeClip({"-i", path, "-vf",
              "select=eq(n\\," + std::to_string(index) +
                  "),scale=in_color_matrix=bt709:flags=accurate_rnd+full_chroma_int,format=bgr24",
              "-frames:v", "1"},
             picture);
    return readPictureFile(picture);
}

std::vector<float> decodedSound(const std::string& path)
{
    return samplesOf(run(FFMPEG, {"-i", path, "-vn", "-ac", "1", "-ar", "8000", "-f", "f32le", "-"}));
}

} // namespace lamina::test
