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

TEST_F(FilterCommand, AGeneratorDrawsAtASize)
{
    const CommandResult drawn = shell(
        "lamina filter GPUImageLineGenerator --size 8x4 --set 'lines=0,0.25' --set setLineColorRed=1,0,0 -o out.png");
    ASSERT_EQ(drawn.exitCode, 0) << drawn.errors;
    EXPECT_TRUE(imagesMatch(readPictureFile(folder.path("out.png")), makePicture(8, 4, [](int, int y) {
                                return y == 2 ? Rgba{255, 0, 0, 255} : Rgba{0, 0, 0, 0};
                            })));
}

TEST_F(FilterCommand, AChainMayComeThroughAPipe)
{
    writeFile(folder.path("chain.json"), R"({"Filters": [{"FilterName": "GPUImageColorInvertFilter"}]})");
    const CGImage inverted = picture("cat chain.json | lamina filter --pipeline /dev/stdin -i flat.png -o out.png -q");
    EXPECT_TRUE(pixelMatches(inverted, 5, 5, {155, 55, 215, 255}, 1));
}

TEST_F(FilterCommand, WhatWouldNotFitIsRefusedBeforeItIsDrawn)
{
    const CommandResult run = shell("lamina filter GPUImageSolidColorGenerator --size 16000x16000 -o out.png");
    EXPECT_EQ(run.exitCode, 1);
    EXPECT_THAT(run.errors, HasSubstr("16000 x 16000 pixels"));
    EXPECT_LT(run.peakKilobytes, 500'000);
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

TEST_F(FilterCommand, AReportHasWhatTheListTellsOfWithAPictureAndWithout)
{
    writePng(folder.path("board.png"), makePicture(100, 100, [](int x, int y) {
                 return (x / 50 + y / 50) % 2 == 0 ? Rgba{20, 20, 20, 255} : Rgba{90, 200, 230, 255};
             }));
    for (const Json& entry : Json::parse(shell("lamina filters --json").output)) {
        const std::string name = entry.at("name");
        if (entry.at("results").empty())
            continue;
        SCOPED_TRACE(name);
        const CommandResult run = shell("lamina filter " + name + " -i board.png --report");
        ASSERT_EQ(run.exitCode, 0) << run.errors;
        const Json report = Json::parse(run.output);
        ASSERT_EQ(report.size(), entry.at("results").size());
        for (const Json& result : entry.at("results")) {
            const Json& told = report.at(result.at("name").get<std::string>());
            ASSERT_EQ(told.is_array(), result.at("list").get<bool>());
            const Json& first = told.is_array() && !told.empty() ? told.front() : told;
            for (const Json& field : result.value("fields", Json::array()))
                EXPECT_TRUE(told.is_array() && told.empty() ? false : first.contains(field.get<std::string>()))
                    << field;
        }
        EXPECT_EQ(shell("lamina filter " + name + " -i board.png --report -o out.png").output, run.output);
        EXPECT_FALSE(readPictureFile(folder.path("out.png")).size().isEmpty());
    }
    const Json corners =
        Json::parse(shell("lamina filter GPUImageHarrisCornerDetectionFilter -i board.png --report").output);
    EXPECT_NEAR(corners.at("corners").at(0).at("x").get<double>(), 0.5, 0.02);
}

TEST_F(FilterCommand, TheDocumentationPageIsTheOneThatTheProgramMakes)
{
    // After a change: tools/make_filter_pictures.py
    EXPECT_EQ(shell("lamina filters --markdown").output, readFile(LAMINA_DOCS "/filters.md"));
}

} // namespace
} // namespace lamina::test
