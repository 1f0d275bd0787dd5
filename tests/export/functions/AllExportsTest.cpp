// What all types of saving have in common.
#include "Surroundings.h"
#include "TestClips.h"

#include "export/functions/ExportWork.h"

#include <gtest/gtest.h>

#include <atomic>
#include <cstdlib>
#include <optional>
#include <string>
#include <vector>

namespace lamina::test {
namespace {

struct Export {
    const char* name;
    SavingtypeMethod type;
    ExportOptions options = {};
    bool ofClip = false;
};

const std::vector<Export> kExports = {
    {"a.jpg", SavingtypeMethod::jpg, {.width = 40.5, .height = 23.5, .quality = 0.7}},
    {"a.png", SavingtypeMethod::png, {.transparency = true}},
    {"standard.pdf", SavingtypeMethod::pdfStandard, {.notes = true}},
    {"rgb.pdf", SavingtypeMethod::pdfPrint, {.cropMarks = true, .pixelsPerInch = 299.5}},
    {"cmyk.pdf", SavingtypeMethod::pdfPrint, {.notes = true, .cropMarks = true, .colors = PrintColors::CMYK}},
    {"a.svg", SavingtypeMethod::svg},
    {"still.mp4", SavingtypeMethod::mp4},
    {"clip.mp4", SavingtypeMethod::mp4, {.video = VideoQuality::Low}, true},
    {"a.tiff", SavingtypeMethod::tiff},
};

class AllExports : public testing::Test {
protected:
    AllExports()
    {
        ::setenv("LAMINA_PROFILES", LAMINA_PROFILES, 1);
        makeQuartersClip(folder.path("source.mp4"), {96, 64}, "format=yuv420p", {"-c:v", "libx264"});
    }
    ~AllExports() override { ::unsetenv("LAMINA_PROFILES"); }

    /// The file, or why there is none.
    std::string bytesOf(const Export& tested)
    {
        const std::atomic<bool> cancelled = false; // work that can be stopped takes other threads
        const ExportSource source{picture, tested.ofClip ? folder.path("source.mp4") : std::string()};
        const Result<ExportedFile> file =
            runExport(tested.type, source, tested.options, {folder.path(), tested.name}, {.cancelled = &cancelled});
        return file ? readFile(folder.path(tested.name)) : file.error().message();
    }

    const TemporaryFolder folder;
    /// 62.5 x 37.5 points, and translucent.
    const UIImage picture{noisePicture(125, 75, CGImageAlphaInfo::Last), 2};
};

TEST_F(AllExports, GiveTheSameBytesInAnyLocaleOnAnyNumberOfProcessors)
{
    std::vector<std::string> files;
    for (const Export& each : kExports) {
        files.push_back(bytesOf(each));
        EXPECT_GT(files.back().size(), 1000u) << each.name << ": " << files.back();
    }
    const GermanLocale german;
    const OneProcessor one;
    for (std::size_t i = 0; i < kExports.size(); ++i)
        EXPECT_TRUE(bytesOf(kExports[i]) == files[i]) << kExports[i].name;
}

} // namespace
} // namespace lamina::test
