#include "CommandLines.h"

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

TEST_F(FilterCommand, AGeneratorDrawsAtASize)
{
    const CommandResult drawn = shell(
        "lamina filter GPUImageLineGenerator --size 8x4 --set 'lines=0,0.25' --set setLineColorRed=1,0,0 -o out.png");
    ASSERT_EQ(drawn.exitCode, 0) << drawn.errors;
    EXPECT_TRUE(imagesMatch(readPictureFile(folder.path("out.png")), makePicture(8, 4, [](int, int y) {
                                return y == 2 ? Rgba{255, 0, 0, 255} : Rgba{0, 0, 0, 0};
                            })));
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

TEST_F(FilterCommand, TheDocumentationPageIsTheOneThatTheProgramMakes)
{
    // After a change: lamina filters --markdown > docs/filters.md
    EXPECT_EQ(shell("lamina filters --markdown").output, readFile(LAMINA_DOCS "/filters.md"));
}

} // namespace
} // namespace lamina::test
