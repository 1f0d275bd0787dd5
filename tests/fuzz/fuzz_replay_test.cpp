// Decodes every file of the corpus and compares what comes with the corpus's manifest, whose form the tool that makes
// both tells (tools/fixtures/make_corpus.py).

#include "ArrivalCheck.h"
#include "DecodeCheck.h"
#include "ProcessUsage.h"
#include "TestPictures.h"

#include "platform/image/codecs/ByteSource_p.h"
#include "platform/image/codecs/PictureDecoder_p.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/codecs/PictureFormats.h"
#include "platform/image/codecs/decoder/BareDecoders_p.h"

#include <algorithm>
#include <cctype>
#include <chrono>
#include <cstdlib>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <map>
#include <sstream>
#include <sys/wait.h>
#include <unistd.h>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

struct Line {
    int shortSide = 0;
    std::string outcome;
    std::string pixels;
};

std::vector<std::uint8_t> contents(const fs::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

/// What the manifest says of each file, by "FORMAT/NAME".
std::multimap<std::string, Line> readManifest()
{
    std::multimap<std::string, Line> lines;
    std::ifstream file(std::string(LAMINA_CORPUS) + "/manifest");
    for (std::string text; std::getline(file, text);) {
        std::istringstream columns(text);
        std::string name;
        std::string shortSide;
        Line line;
        std::getline(columns, name, '\t');
        std::getline(columns, shortSide, '\t');
        std::getline(columns, line.outcome, '\t');
        std::getline(columns, line.pixels, '\t');
        line.shortSide = std::stoi(shortSide);
        lines.emplace(name, line);
    }
    return lines;
}

Result<UIImage> decoded(const fs::path& path, int shortSide)
{
    return decodePicture(contents(path), path.filename(), {.shortSide = shortSide, .memoryLimit = kFuzzMemoryLimit});
}

/// The first pixels as the manifest has them: "RRGGBBAA RRGGBBAA".
std::string firstPixels(const CGImage& image, std::size_t count)
{
    std::ostringstream text;
    text << std::hex;
    for (std::size_t i = 0; i < count; ++i) {
        const std::uint8_t* pixel = image.row(static_cast<int>(i) / image.width()) + 4 * (i % image.width());
        for (int c = 0; c < 4; ++c) {
            const int value = c < 3 || image.hasAlpha() ? pixel[c] : 255;
            text << (i > 0 && c == 0 ? " " : "") << value / 16 << value % 16;
        }
    }
    return text.str();
}

void expectOutcome(const Result<UIImage>& got, const Line& line)
{
    constexpr std::string_view kSame = "same as ";
    if (!got) {
        EXPECT_EQ(got.error().cause, line.outcome);
        return;
    }
    const CGImage image = got->cgImage();
    if (line.outcome.starts_with(kSame)) {
        const Result<UIImage> other = decoded(LAMINA_CORPUS "/" + line.outcome.substr(kSame.size()), 0);
        EXPECT_TRUE(imagesMatch(image, other->cgImage()));
        EXPECT_EQ(got->imageOrientation(), other->imageOrientation());
    } else if (line.outcome != "a picture") {
        EXPECT_EQ(std::to_string(image.width()) + " x " + std::to_string(image.height()), line.outcome);
    }
    EXPECT_EQ(firstPixels(image, (line.pixels.size() + 1) / 9), line.pixels);
}

class FuzzReplay : public testing::TestWithParam<PictureFormat> {
protected:
    const std::string m_folder = [] {
        std::string name(GetParam().name);
        std::ranges::transform(name, name.begin(), [](unsigned char c) { return std::tolower(c); });
        return name;
    }();
};

// Far more than any of these small files needs, also in a sanitizer build on a busy machine.
constexpr std::chrono::seconds kLongest{5};

TEST_P(FuzzReplay, EveryFileHasASoundOutcome)
{
    std::size_t files = 0;
    for (const auto& entry : fs::directory_iterator(LAMINA_CORPUS "/" + m_folder)) {
        SCOPED_TRACE(entry.path().filename().string());
        ++files;
        const auto start = std::chrono::steady_clock::now();
        EXPECT_EQ(faultOfFacts(contents(entry.path()), decoded(entry.path(), 0)), "");
        for (const int shortSide : {0, 5})
            EXPECT_EQ(faultOf(decoded(entry.path(), shortSide)), "");
        EXPECT_EQ(faultOfArrival(contents(entry.path()), decoded(entry.path(), 0)), "");
        EXPECT_LT(std::chrono::steady_clock::now() - start, kLongest);
    }
    EXPECT_GE(files, 20u);
}

TEST_P(FuzzReplay, FilesComeToWhatTheManifestTells)
{
    std::size_t lines = 0;
    for (const auto& [name, line] : readManifest()) {
        if (!name.starts_with(m_folder + "/"))
            continue;
        SCOPED_TRACE(name + ", short side " + std::to_string(line.shortSide));
        ++lines;
        expectOutcome(decoded(LAMINA_CORPUS "/" + name, line.shortSide), line);
    }
    EXPECT_GE(lines, 10u);
}

INSTANTIATE_TEST_SUITE_P(Formats, FuzzReplay, testing::ValuesIn(pictureFormats()),
                         [](const auto& tested) { return std::string(tested.param.name); });

/// What reading a file in this process takes, told by one that does nothing else.
ProcessUsage usageOfDecoding(const PictureDecoder& decoder, const std::vector<std::uint8_t>& bytes)
{
    const pid_t child = ::fork();
    if (child == 0) {
        const auto source = memorySource(bytes);
        std::_Exit(decoder.recognizes(bytes) && decoder.decode(*source, {}).ok() ? EXIT_SUCCESS : EXIT_FAILURE);
    }
    int status = 0;
    rusage usage{};
    ::wait4(child, &status, 0, &usage);
    EXPECT_TRUE(WIFEXITED(status));
    return usageOf(usage);
}

TEST(HostileFiles, TakeLittleWithoutTheWallToo)
{
#if defined(__SANITIZE_ADDRESS__)
    GTEST_SKIP() << "the limits are for a build without sanitizers";
#endif
    constexpr double kMostSeconds = 1;
    constexpr long kMostKilobytes = 200'000;
    std::size_t files = 0;
    for (const auto& [folder, decoder] : {std::pair{"/heic", &kHEICDecoder}, {"/tiff", &kTIFFDecoder}}) {
        for (const auto& entry : fs::directory_iterator(std::string(LAMINA_CORPUS) + folder)) {
            if (!entry.path().filename().string().starts_with("hostile-"))
                continue;
            SCOPED_TRACE(entry.path().string());
            ++files;
            const ProcessUsage usage = usageOfDecoding(*decoder, contents(entry.path()));
            EXPECT_LT(usage.processorSeconds, kMostSeconds);
            EXPECT_LT(usage.peakKilobytes, kMostKilobytes);
        }
    }
    EXPECT_GT(files, 70u);
}

} // namespace
} // namespace lamina::test
