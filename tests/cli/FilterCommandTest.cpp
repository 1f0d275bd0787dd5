#include "CommandLines.h"

#include <algorithm>
#include <gmock/gmock.h>
#include <nlohmann/json.hpp>

namespace lamina::test {
namespace {

using testing::HasSubstr;
using Json = nlohmann::json;

using FilterCommand = CommandLines;

TEST_F(FilterCommand, APictureBeyondTheTextureLimitIsReducedAndThatIsTold)
{
    writePng(folder.path("wide.png"), solidPicture(70'000, 8, kFlat));
    const std::string line = "lamina filter GPUImageSepiaFilter --set intensity=0 -i wide.png -o out.png";
    const CommandResult told = shell(line);
    ASSERT_EQ(told.exitCode, 0) << told.errors;
    const CGImage reduced = readPictureFile(folder.path("out.png"));
    const std::string width = std::to_string(reduced.width());
    EXPECT_LT(reduced.width(), 70'000);
    EXPECT_TRUE(pixelMatches(reduced, reduced.width() / 2, 0, kFlat, 1));
    EXPECT_EQ(told.errors, "lamina: wide.png: reduced to " + width + " x " + std::to_string(reduced.height()) +
                               " pixels: the GPU draws at most " + width + " pixels a side\n");
    EXPECT_EQ(shell(line + " -q").errors, "");
}

TEST_F(FilterCommand, TheListsKnowTheSameFilters)
{
    const std::string text = shell("lamina filters").output;
    const Json list = Json::parse(shell("lamina filters --json").output);
    EXPECT_GT(list.size(), 10U);
    for (const Json& entry : list) {
        const std::string name = entry.at("name");
        SCOPED_TRACE(name);
        EXPECT_THAT(text, HasSubstr("\n  " + name));
        const std::string page = shell("lamina filters " + name).output;
        EXPECT_THAT(page, HasSubstr(entry.at("about").get<std::string>()));
        for (const Json& property : entry.at("properties")) {
            EXPECT_THAT(page, HasSubstr("\n      " + property.at("name").get<std::string>() + "=" +
                                        property.at("syntax").get<std::string>() + ": " +
                                        property.at("about").get<std::string>() + "\n          " +
                                        property.at("type").get<std::string>()));
        }
    }
    EXPECT_THAT(text, HasSubstr("number, 0 to 1 [1]\n"));
    EXPECT_EQ(Json::parse(shell("lamina filters GPUImageSepiaFilter --json").output).at("name"), "GPUImageSepiaFilter");
}

TEST_F(FilterCommand, ASheetShowsThePhotoAndWhatEachFilterOfAFamilyMakesOfIt)
{
    const CGImage sheet = picture("lamina filters --sheet out.png -i flat.png -i small.png --family editor -q");
    ASSERT_EQ(sheet.width(), 20 + 6 * 340);
    EXPECT_EQ(pixelAt(sheet, 20 + 160, 20 + 80), kFlat) << "the photo, 320 x 160 pixels";
    const Json filters = Json::parse(shell("lamina filters --json").output);
    const auto count =
        std::ranges::count_if(filters, [](const Json& filter) { return filter.at("family") == "editor"; });
    EXPECT_EQ(sheet.height(), 20 + (1 + (count + 5) / 6) * 216 + 48 + 20);
    const Rgba first = pixelAt(sheet, 20 + 160, 20 + 216 + 48 + 80);
    EXPECT_EQ(first, kFlat) << "sharpened, what is flat stays";
    EXPECT_NE(pixelAt(sheet, 20 + 340 + 160, 20 + 216 + 48 + 80), kFlat);
}

TEST_F(FilterCommand, TheDocumentationPageIsTheOneThatTheProgramMakes)
{
    // After a change: tools/make_filter_pictures.py
    EXPECT_EQ(shell("lamina filters --markdown").output, readFile(LAMINA_DOCS "/filters.md"));
}

} // namespace
} // namespace lamina::test
