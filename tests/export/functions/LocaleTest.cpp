#include "CommandRunner.h"
#include "TestPictures.h"
#include "export/functions/ExportWork.h"

#include <clocale>
#include <cstdlib>
#include <gtest/gtest.h>
#include <string>

namespace lamina::test {
namespace {

/// All files of all types, at sizes and options that make fractions.
std::string exportedFiles(const TemporaryFolder& folder)
{
    const ExportSource source{UIImage(chartPicture(19, 15), 1.5), {}};
    ExportOptions options;
    options.width = 19 / 1.5;
    options.height = 10;
    options.quality = 0.55;
    options.transparency = options.notes = options.cropMarks = true;
    options.colors = PrintColors::CMYK;
    options.pixelsPerInch = 299.5;
    std::string all;
    for (int type = 0; type < kSavingTypeCount; ++type) {
        const Result<ExportedFile> file =
            runExport(static_cast<SavingtypeMethod>(type), source, options, {folder.path(), "file"});
        EXPECT_TRUE(file) << type << ": " << file.error().message();
        all += file ? readFile(file->path) : "";
    }
    return all;
}

TEST(Exports, WriteNumbersWithPointsInAnyLocale)
{
    ::setenv("LAMINA_PROFILES", LAMINA_PROFILES, 1);
    const TemporaryFolder folder;
    const std::string plain = exportedFiles(folder);
    ASSERT_EQ(runCommand(LOCALEDEF, {"-i", "de_DE", "-f", "UTF-8", folder.path("de_DE.UTF-8")}).exitCode, 0);
    ::setenv("LOCPATH", folder.path().c_str(), 1);
    ASSERT_TRUE(std::setlocale(LC_ALL, "de_DE.UTF-8"));
    const std::string comma = std::localeconv()->decimal_point;
    const std::string german = exportedFiles(folder);
    std::setlocale(LC_ALL, "C");
    ::unsetenv("LOCPATH");
    EXPECT_EQ(comma, ",");
    EXPECT_TRUE(german == plain);
}

} // namespace
} // namespace lamina::test
