// Reads every curve file of the corpus and compares what comes with the corpus's manifest.

#include "CurveCheck.h"
#include "LogCapture.h"

#include <cstdint>
#include <filesystem>
#include <fstream>
#include <gtest/gtest.h>
#include <map>

namespace lamina::test {
namespace {

namespace fs = std::filesystem;

/// Outcomes by the files' names.
std::map<std::string, std::string> manifest()
{
    std::map<std::string, std::string> outcomes;
    std::ifstream file(LAMINA_CORPUS "/manifest");
    for (std::string line; std::getline(file, line);) {
        const std::size_t name = line.find('\t');
        const std::size_t outcome = line.find('\t', name + 1) + 1;
        if (line.starts_with("acv/"))
            outcomes[line.substr(4, name - 4)] = line.substr(outcome, line.find('\t', outcome) - outcome);
    }
    return outcomes;
}

std::string outcomeOf(const Result<GPUImageACVFile>& file)
{
    if (!file)
        return file.error().cause;
    std::string counts;
    for (const auto curve : kAllCurves)
        counts += (counts.empty() ? "" : " ") + std::to_string(file->points(curve).size());
    return counts;
}

TEST(CurveReplay, FilesComeToWhatTheManifestTells)
{
    const LogCapture log; // an empty file is told there
    const std::map<std::string, std::string> outcomes = manifest();
    std::size_t told = 0;
    for (const auto& entry : fs::directory_iterator(LAMINA_CORPUS "/acv")) {
        const std::string name = entry.path().filename();
        SCOPED_TRACE(name);
        const Result<GPUImageACVFile> file = GPUImageACVFile::makeWithContentsOfFile(entry.path());
        EXPECT_EQ(faultOf(file, entry.file_size()), "");
        if (!outcomes.contains(name))
            continue;
        ++told;
        EXPECT_EQ(outcomeOf(file), outcomes.at(name));
    }
    EXPECT_GE(told, 15U);
    EXPECT_EQ(told, outcomes.size());
}

TEST(CurveReplay, AsManyPointsAsCanBeCountedAreRead)
{
    std::vector<std::uint8_t> bytes{0, 4, 0, 4};
    for (int curve = 0; curve < 4; ++curve) {
        bytes.insert(bytes.end(), {0xFF, 0xFF});
        for (int i = 0; i < 0xFFFF; ++i)
            bytes.insert(bytes.end(), {0, static_cast<std::uint8_t>(i), 0, static_cast<std::uint8_t>(i)});
    }
    const Result<GPUImageACVFile> file = GPUImageACVFile::makeWithACVFileData(bytes);
    EXPECT_EQ(outcomeOf(file), "65535 65535 65535 65535");
    EXPECT_EQ(faultOf(file, bytes.size()), "");
}

} // namespace
} // namespace lamina::test
