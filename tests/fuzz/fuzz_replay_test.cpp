#include "DecodeCheck.h"

#include <gtest/gtest.h>

#include <algorithm>
#include <chrono>
#include <filesystem>
#include <fstream>
#include <iterator>
#include <vector>

namespace lamina {
namespace {

std::vector<std::filesystem::path> corpusOf(const std::string& format)
{
    std::vector<std::filesystem::path> files;
    for (const auto& entry : std::filesystem::directory_iterator(std::string(LAMINA_CORPUS) + "/" + format))
        files.push_back(entry.path());
    std::sort(files.begin(), files.end());
    return files;
}

std::vector<std::uint8_t> contents(const std::filesystem::path& path)
{
    std::ifstream file(path, std::ios::binary);
    return {std::istreambuf_iterator<char>(file), std::istreambuf_iterator<char>()};
}

// Far more than any of these small files needs, also in a sanitizer build on a busy machine.
constexpr std::chrono::seconds kLongest{5};

class FuzzReplay : public testing::TestWithParam<std::string> {};

// Whole files go through the front door, which also tells the format.
TEST_P(FuzzReplay, EveryFileOfTheCorpusHasASoundOutcome)
{
    const auto files = corpusOf(GetParam());
    std::size_t pictures = 0;
    for (const auto& path : files) {
        SCOPED_TRACE(path.filename().string());
        const std::vector<std::uint8_t> bytes = contents(path);
        for (const int shortSide : {0, 5}) {
            DecodeOptions options;
            options.memoryLimit = kFuzzMemoryLimit;
            options.shortSide = shortSide;
            const auto start = std::chrono::steady_clock::now();
            const Result<UIImage> decoded = decodePicture(bytes, path.string(), options);
            EXPECT_LT(std::chrono::steady_clock::now() - start, kLongest);
            EXPECT_EQ(faultOf(decoded), "");
            pictures += decoded ? 1 : 0;
            if (path.filename().string().starts_with("whole-")) {
                EXPECT_TRUE(decoded) << decoded.error().cause;
            }
        }
    }
    // Sound files and damaged ones both stand in it.
    EXPECT_GE(files.size(), 20u);
    EXPECT_GT(pictures, 0u);
    EXPECT_LT(pictures, 2 * files.size());
}

INSTANTIATE_TEST_SUITE_P(Formats, FuzzReplay, testing::Values("jpeg", "png", "webp", "heic", "tiff", "gif", "bmp"),
                         [](const auto& tested) { return tested.param; });

} // namespace
} // namespace lamina
