#include "CommandLines.h"

#include "platform/base/CGGeometry.h"

#include <gmock/gmock.h>
#include <nlohmann/json.hpp>
#include <utility>
#include <vector>

namespace lamina::test {
namespace {

using testing::HasSubstr;

using OpCommand = CommandLines;

// The reds of the small picture are 10 11 12 and 110 111 112: each tells where its pixel came from.
TEST_F(OpCommand, ArgumentsReachTheirOperation)
{
    using Grid = std::vector<std::vector<int>>;
    const std::vector<std::pair<std::string, Grid>> cases{
        {"rotateInRadians=1.5707964,1", {{10, 110}, {11, 111}, {12, 112}}},
        {"rotateInRadians=0,1,0", {{12, 11, 10}, {112, 111, 110}}},
        {"rotateInRadians=0,0,1", {{110, 111, 112}, {10, 11, 12}}},
        {"rotateImagePixelsInDegrees=180", {{112, 111, 110}, {12, 11, 10}}},
        {"rotateImagePixelsInRadians=3.1415927", {{112, 111, 110}, {12, 11, 10}}},
        {"cropToSize=2x1", {{10, 11}}},
        {"reflectedImageWithHeight=1,1,1", {{110, 111, 112}}},
        {"redEyeCorrection", {{10, 11, 12}, {110, 111, 112}}},
    };
    for (const auto& [operation, reds] : cases)
        EXPECT_EQ(componentGrid(picture("lamina op " + operation + " -i small.png -o out.png")), reds) << operation;

    const CGImage reflection = picture("lamina op reflectedImageWithHeight=2,0.8,0.2 -i small.png -o out.png");
    EXPECT_GT(pixelAt(reflection, 1, 0)[3], pixelAt(reflection, 1, 1)[3]);
}

TEST_F(OpCommand, SizesAreInPoints)
{
    const std::vector<std::pair<std::string, IntSize>> cases{
        {"scaleByFactor=0.5", {200, 100}},
        {"scaleToSize=100x90", {100, 90}},
        {"scaleToSize=100x100,1", {100, 50}},
        {"scaleToSize=100x100,2", {200, 100}},
        {"scaleToFillSize=30x70.9", {30, 70}},
        {"scaleToFitSize=100x100", {100, 50}},
        {"scaleToCoverSize=100x100", {200, 100}},
        {"cropToSize=50x30 --picture-scale 2", {100, 60}},
        {"brightenWithValue=0 --picture-scale 2", {200, 100}},
        {"reflectedImageWithHeight=10,1,0 --picture-scale 2", {200, 10}},
    };
    for (const auto& [operation, size] : cases)
        EXPECT_EQ(picture("lamina op " + operation + " -i flat.png -o out.png").size(), size) << operation;
}

TEST_F(OpCommand, HelpAndTheListForProgramsKnowTheSameOperations)
{
    const std::string help = shell("lamina op --help").output;
    const auto list = nlohmann::json::parse(shell("lamina op --json").output);
    EXPECT_GT(list.size(), 20U);
    for (const auto& operation : list) {
        const std::string name = operation.at("name");
        EXPECT_THAT(help, HasSubstr("\n  " + name));
        for (const auto& argument : operation.at("arguments")) {
            EXPECT_THAT(help, HasSubstr("\n      " + argument.at("name").get<std::string>() + ": " +
                                        argument.at("about").get<std::string>()));
        }
        // Examples are promises: only the mask's file is missing.
        const std::string example = operation.at("example");
        const std::string text = example.empty() ? name : name + "=" + example;
        EXPECT_EQ(shell("lamina op " + text + " -i flat.png -o out.png").exitCode, name == "maskWithImage" ? 3 : 0);
    }
    EXPECT_THAT(help, HasSubstr("  rotateInRadians=RADIANS[,MIRRORX[,MIRRORY]]\n"));
    EXPECT_THAT(help, HasSubstr("      MIRRORX: 1: left and right change places [0]\n"));
}

} // namespace
} // namespace lamina::test
