#include "CommandRunner.h"
#include "TestPictures.h"

#include <algorithm>
#include <cmath>
#include <cstdlib>
#include <gmock/gmock.h>
#include <gtest/gtest.h>
#include <nlohmann/json.hpp>

namespace lamina::test {
namespace {

using testing::HasSubstr;
using Json = nlohmann::json;
using Colour = std::array<double, 4>;

constexpr IntSize kSize{5, 3};

/// Every pixel is another, some are translucent.
Rgba grid(int x, int y)
{
    return {static_cast<std::uint8_t>(10 + 50 * x), static_cast<std::uint8_t>(20 + 90 * y),
            static_cast<std::uint8_t>(200 - 40 * x), static_cast<std::uint8_t>(y == 1 ? 60 + 30 * x : 255)};
}

Colour unit(const Rgba& pixel)
{
    return {pixel[0] / 255.0, pixel[1] / 255.0, pixel[2] / 255.0, pixel[3] / 255.0};
}

Rgba bytes(const Colour& colour)
{
    Rgba result{};
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = static_cast<std::uint8_t>(std::lround(std::clamp(colour[i], 0.0, 1.0) * 255));
    return result;
}

Colour sepia(const Colour& c, double intensity)
{
    const double rows[3][3] = {{0.3588, 0.7044, 0.1368}, {0.2990, 0.5870, 0.1140}, {0.2392, 0.4696, 0.0912}};
    Colour result = c;
    for (std::size_t i = 0; i < 3; ++i) {
        const double brown = rows[i][0] * c[0] + rows[i][1] * c[1] + rows[i][2] * c[2];
        result[i] = intensity * brown + (1 - intensity) * c[i];
    }
    return result;
}

Colour haze(const Colour& c, double distance)
{
    Colour result{};
    for (std::size_t i = 0; i < result.size(); ++i)
        result[i] = (c[i] - distance) / (1 - distance);
    return result;
}

Json step(const std::string& filter, const std::string& selector, const std::string& value)
{
    return {{"FilterName", filter}, {"Attributes", {{selector, value}}}};
}

std::string chainOf(const std::vector<Json>& steps)
{
    return Json{{"Filters", steps}}.dump();
}

/// The environment of commands that are run while it lives.
class EnvironmentVariable {
public:
    EnvironmentVariable(const char* name, const char* value)
        : m_name(name)
        , m_former(std::getenv(name) ? std::optional<std::string>(std::getenv(name)) : std::nullopt)
    {
        ::setenv(name, value, 1);
    }
    ~EnvironmentVariable() { m_former ? ::setenv(m_name, m_former->c_str(), 1) : ::unsetenv(m_name); }
    EnvironmentVariable(const EnvironmentVariable&) = delete;
    EnvironmentVariable& operator=(const EnvironmentVariable&) = delete;

private:
    const char* m_name;
    std::optional<std::string> m_former;
};

class FilterCommand : public testing::Test {
protected:
    void SetUp() override { writePng(small(), makePicture(kSize.width, kSize.height, grid, true)); }

    std::string small() const { return folder.path("small.png"); }
    std::string out() const { return folder.path("out.png"); }

    std::string made(const std::string& name, const std::string& content) const
    {
        writeFile(folder.path(name), content);
        return folder.path(name);
    }

    static CommandResult filter(std::vector<std::string> arguments, const CommandOptions& options = {})
    {
        arguments.insert(arguments.begin(), "filter");
        return runCommand(LAMINA_COMMAND, arguments, options);
    }
    static CommandResult filters(std::vector<std::string> arguments = {})
    {
        arguments.insert(arguments.begin(), "filters");
        return runCommand(LAMINA_COMMAND, arguments);
    }

    /// What came out, compared with a formula at each place.
    void expectPicture(const CommandResult& run, const std::function<Colour(int x, int y)>& formula)
    {
        ASSERT_EQ(run.exitCode, 0) << run.errors;
        EXPECT_EQ(run.errors, "");
        const CGImage picture = readPictureFile(out());
        ASSERT_EQ(picture.size(), kSize);
        for (int y = 0; y < kSize.height; ++y) {
            for (int x = 0; x < kSize.width; ++x) {
                const Rgba wanted = bytes(formula(x, y));
                EXPECT_LE(difference(pixelAt(picture, x, y), wanted), 1)
                    << x << "," << y << ": " << testing::PrintToString(pixelAt(picture, x, y)) << " instead of "
                    << testing::PrintToString(wanted);
            }
        }
    }

    void expectRefusal(const std::vector<std::string>& arguments, int exitCode, const std::string& message)
    {
        SCOPED_TRACE(testing::PrintToString(arguments));
        const std::vector<std::string> before = folder.names();
        const CommandResult run = filter(arguments);
        EXPECT_EQ(run.exitCode, exitCode);
        EXPECT_THAT(run.errors, testing::StartsWith("lamina: "));
        EXPECT_THAT(run.errors, HasSubstr(message));
        EXPECT_EQ(std::ranges::count(run.errors, '\n'), 1) << run.errors;
        EXPECT_EQ(run.output, "");
        EXPECT_EQ(folder.names(), before);
    }

    TemporaryFolder folder;
};

TEST_F(FilterCommand, PropertiesOfEveryTypeReachTheFilter)
{
    struct Case {
        std::vector<std::string> arguments;
        std::function<Colour(int, int)> formula;
    };
    const auto pointwise = [](auto formula) { return [=](int x, int y) { return formula(unit(grid(x, y))); }; };
    const auto tinted = pointwise([](const Colour& c) {
        const double grey = 0.2125 * c[0] + 0.7154 * c[1] + 0.0721 * c[2];
        const auto tint = [&](double k) { return grey < 0.5 ? 2 * grey * k : 1 - 2 * (1 - grey) * (1 - k); };
        return Colour{tint(0.2), tint(0.4), tint(0.9), c[3]};
    });
    const auto swapped = pointwise([](const Colour& c) { return Colour{c[1], c[0], c[2], c[3]}; });
    // The kernel's first row weighs the row above; beyond the edge its pixels repeat.
    const auto fromAbove = [](int x, int y) {
        Colour above = unit(grid(x, std::max(y - 1, 0)));
        above[3] = unit(grid(x, y))[3];
        return above;
    };
    // Over the whole picture the least red is in the first column.
    const auto eroded = [](int x, int) {
        const double least = unit(grid(std::max(x - 3, 0), 0))[0];
        return Colour{least, least, least, 1};
    };
    const std::vector<Case> cases{
        {{"GPUImageSepiaFilter"}, pointwise([](const Colour& c) { return sepia(c, 1); })},
        {{"GPUImageSepiaFilter", "--set", "intensity=0.25"}, pointwise([](const Colour& c) { return sepia(c, 0.25); })},
        {{"GPUImageSepiaFilter", "--set", "intensity=1", "--set", "intensity=0"}, pointwise(std::identity())},
        {{"GPUImageMonochromeFilter", "--set", "color=0.2,0.4,0.9,1"}, tinted},
        {{"GPUImageColorMatrixFilter", "--set", "colorMatrix=0,1,0,0;1,0,0,0;0,0,1,0;0,0,0,1"}, swapped},
        {{"GPUImage3x3ConvolutionFilter", "--set", "convolutionKernel=0,1,0;0,0,0;0,0,0"}, fromAbove},
        {{"GPUImageErosionFilter", "--set", "radius=3"}, eroded},
    };
    for (const Case& c : cases) {
        SCOPED_TRACE(testing::PrintToString(c.arguments));
        std::vector<std::string> arguments = c.arguments;
        arguments.insert(arguments.end(), {"-i", small(), "-o", out()});
        expectPicture(filter(arguments), c.formula);
    }
}

TEST_F(FilterCommand, PicturesFillTheSlotsInTheirOrder)
{
    // The second has another size and is stretched over the first.
    writePng(folder.path("flat.png"), makePicture(40, 7, [](int, int) { return Rgba{250, 100, 0, 255}; }));
    const auto faded = [](int x, int y) {
        const Colour first = unit(grid(x, y));
        const Colour second = unit({250, 100, 0, 255});
        Colour result{};
        for (std::size_t i = 0; i < result.size(); ++i)
            result[i] = 0.75 * first[i] + 0.25 * second[i];
        return result;
    };
    expectPicture(filter({"-i", small(), "GPUImageDissolveBlendFilter", "--set", "mix=0.25", "-i",
                          folder.path("flat.png"), "-o", out()}),
                  faded);
}

TEST_F(FilterCommand, APipelineIsAChain)
{
    const std::string chain = made("chain.json", chainOf({step("GPUImageSepiaFilter", "setIntensity:", "float(0.5)"),
                                                          step("GPUImageHazeFilter", "setDistance:", "float(0.1)")}));
    expectPicture(filter({"--pipeline", chain, "-i", small(), "-o", out()}),
                  [](int x, int y) { return haze(sepia(unit(grid(x, y)), 0.5), 0.1); });
    expectPicture(filter({"--pipeline", made("empty.json", chainOf({})), "-i", small(), "-o", out()}),
                  [](int x, int y) { return unit(grid(x, y)); });
}

TEST_F(FilterCommand, APipelineThatIsNotUnderstoodNamesItsFault)
{
    const auto refused = [&](const std::string& content, const std::string& message) {
        const std::string file = made("bad.json", content);
        expectRefusal({"--pipeline", file, "-i", small(), "-o", out()}, 3, "lamina: " + file + ": ");
        expectRefusal({"--pipeline", file, "-i", small(), "-o", out()}, 3, message);
    };
    const Json good = step("GPUImageSepiaFilter", "setIntensity:", "float(0.5)");
    refused("{", "JSON");
    refused("[]", "Filters");
    refused(chainOf({good, {{"FilterName", "GPUImageSepia"}}}), "did you mean GPUImageSepiaFilter?");
    refused(chainOf({good, {{"FilterName", "GPUImageDissolveBlendFilter"}}}), "needs 2 pictures");
    refused(chainOf({good, step("GPUImageSepiaFilter", "setHue:", "float(1)")}), "setHue:");
    refused(chainOf({good, step("GPUImageSepiaFilter", "setIntensity:", "int(1)")}), "int(1)");
    refused(chainOf({good, step("GPUImageSepiaFilter", "setIntensity:", "float(" + std::string(200'000, 'x'))}),
            "float");
    for (const std::string& nothing : {folder.path("nowhere.json"), folder.path()})
        expectRefusal({"--pipeline", nothing, "-i", small(), "-o", out()}, 3, "lamina: " + nothing + ": ");
}

TEST_F(FilterCommand, ReadsStandardInputAndWritesStandardOutput)
{
    CommandOptions piped;
    piped.input = readFile(small());
    const CommandResult run = filter({"GPUImageSepiaFilter", "-i", "-", "-o", "-"}, piped);
    ASSERT_EQ(run.exitCode, 0) << run.errors;
    writeFile(out(), run.output);
    EXPECT_LE(difference(pixelAt(readPictureFile(out()), 3, 2), bytes(sepia(unit(grid(3, 2)), 1))), 1);
}

TEST_F(FilterCommand, APictureBeyondTheTextureLimitIsReducedAndThatIsTold)
{
    const std::string wide = folder.path("wide.png");
    writePng(wide, makePicture(70'000, 8, [](int, int) { return Rgba{100, 200, 40, 255}; }));
    const CommandResult told = filter({"GPUImageSepiaFilter", "--set", "intensity=0", "-i", wide, "-o", out()});
    ASSERT_EQ(told.exitCode, 0) << told.errors;
    const CGImage picture = readPictureFile(out());
    EXPECT_LT(picture.size().width, 70'000);
    EXPECT_LE(difference(pixelAt(picture, picture.size().width / 2, 0), {100, 200, 40, 255}), 1);
    EXPECT_EQ(told.errors, "lamina: " + wide + ": reduced to " + std::to_string(picture.size().width) + " x " +
                               std::to_string(picture.size().height) + " pixels: the GPU draws at most " +
                               std::to_string(picture.size().width) + " pixels a side\n");
    EXPECT_EQ(filter({"GPUImageSepiaFilter", "-q", "-i", wide, "-o", out()}).errors, "");
}

TEST_F(FilterCommand, TheListsKnowTheSameFiltersAndTheirDefaultsAreGoodValues)
{
    const std::string text = filters().output;
    const auto list = Json::parse(filters({"--json"}).output);
    EXPECT_GT(list.size(), 10U);
    for (const auto& entry : list) {
        const std::string name = entry.at("name");
        SCOPED_TRACE(name);
        EXPECT_THAT(text, HasSubstr("\n  " + name));
        EXPECT_EQ(Json::parse(filters({name, "--json"}).output), entry);
        const std::string page = filters({name}).output;
        EXPECT_THAT(page, HasSubstr(entry.at("about").get<std::string>()));
        std::vector<std::string> arguments{name, "-o", out()};
        for (int i = 0; i < entry.at("inputs").get<int>(); ++i)
            arguments.insert(arguments.end(), {"-i", small()});
        for (const auto& property : entry.at("properties")) {
            const auto& fallback = property.at("default");
            const std::string value = fallback.is_string()    ? fallback.get<std::string>()
                                      : fallback.is_boolean() ? (fallback.get<bool>() ? "1" : "0")
                                                              : fallback.dump();
            const std::string key = property.at("name");
            EXPECT_THAT(page, HasSubstr("\n      " + key + "=" + property.at("syntax").get<std::string>()));
            EXPECT_THAT(page, HasSubstr(": " + property.at("about").get<std::string>()));
            EXPECT_THAT(page, HasSubstr("\n          " + property.at("type").get<std::string>()));
            arguments.emplace_back("--set");
            arguments.push_back(std::string(key).append("=").append(value));
        }
        const CommandResult run = filter(arguments);
        EXPECT_EQ(run.exitCode, 0) << run.errors;
    }
    EXPECT_THAT(filters({"GPUImageSepiaFilter"}).output, HasSubstr("number, 0 to 1 [1]\n"));
    EXPECT_EQ(filters({"GPUImageSepai"}).exitCode, 2);
    EXPECT_THAT(filters({"GPUImageSepai"}).errors, HasSubstr("did you mean GPUImageSepiaFilter?"));
}

TEST_F(FilterCommand, TheDocumentationPageIsUpToDate)
{
    // After a change: lamina filters --markdown > docs/filters.md
    EXPECT_EQ(filters({"--markdown"}).output, readFile(LAMINA_DOCS "/filters.md"));
}

TEST_F(FilterCommand, WrongUsageIsToldBeforeAnythingIsRead)
{
    const std::string nowhere = folder.path("nowhere.png");
    const auto refused = [&](std::vector<std::string> arguments, const std::string& message) {
        arguments.insert(arguments.end(), {"-o", out(), "-i", nowhere});
        expectRefusal(arguments, 2, message);
    };
    refused({"sepia"}, "did you mean GPUImageSepiaFilter?");
    refused({std::string(100'000, 'x')}, "did you mean");
    refused({"GPUImageSepiaFilter", "--set", "intensty=1"}, "did you mean intensity?");
    refused({"GPUImageGrayscaleFilter", "--set", "intensity=1"}, "no properties");
    refused({"GPUImageSepiaFilter", "--set", "intensity"}, "PROPERTY=VALUE");
    refused({"GPUImageSepiaFilter", "--set", "intensity=full"},
            "intensity must be a number, not 'full', as in intensity=1");
    refused({"GPUImageSepiaFilter", "--set", "intensity=nan"}, "must be a number");
    refused({"GPUImageMonochromeFilter", "--set", "color=1,2,3"}, "as in color=0.6,0.45,0.3,1");
    refused({"GPUImageErosionFilter", "--set", "radius=1.5"}, "must be an integer");
    refused({"GPUImageLookupFilter"}, "GPUImageLookupFilter needs 2 pictures, 1 was given");
    refused({"GPUImageSepiaFilter", "-i", nowhere}, "GPUImageSepiaFilter needs 1 picture, 2 were given");
    refused({}, "--pipeline");
    refused({"GPUImageSepiaFilter", "--pipeline", nowhere}, "--pipeline");
    refused({"--pipeline", nowhere, "--set", "intensity=1"}, "--set");
    refused({"--pipeline", nowhere, "-i", small()}, "a pipeline needs 1 picture, 2 were given");
    expectRefusal({"GPUImageSepiaFilter", "-o", out()}, 2, "needs 1 picture, none was given");
    expectRefusal({"GPUImageSepiaFilter", "-i", nowhere}, 2, "--output");
    expectRefusal({"GPUImageSepiaFilter", "-i", nowhere, "-o", "out.webp"}, 2, "must end in");
    expectRefusal({"GPUImageLookupFilter", "-i", "-", "-i", "-", "-o", out()}, 2, "standard input");
}

TEST_F(FilterCommand, UnreadableInputsAndUnwritableOutputsHaveTheirOwnCodes)
{
    const std::string nowhere = folder.path("nowhere.png");
    expectRefusal({"GPUImageSepiaFilter", "-i", nowhere, "-o", out()}, 3, nowhere);
    expectRefusal({"GPUImageLookupFilter", "-i", small(), "-i", nowhere, "-o", out()}, 3, nowhere);
    expectRefusal({"GPUImageSepiaFilter", "-i", small(), "-o", folder.path("no/out.png")}, 4, "no/out.png");
}

TEST_F(FilterCommand, WithoutAGraphicsDriverOnlyDrawingFails)
{
    const EnvironmentVariable none("LAMINA_EGL_DEVICE", "99");
    expectRefusal({"GPUImageSepiaFilter", "-i", small(), "-o", out()}, 1, "99");
    const std::string chain = made("chain.json", chainOf({{{"FilterName", "GPUImageSepiaFilter"}}}));
    expectRefusal({"--pipeline", chain, "-i", small(), "-o", out()}, 1, "99");
    EXPECT_EQ(filters().exitCode, 0);
    EXPECT_EQ(filter({"--help"}).exitCode, 0);
    expectRefusal({"GPUImageSepiaFilter", "-i", folder.path("nowhere.png"), "-o", out()}, 3, "nowhere.png");
    expectRefusal({"GPUImageSepiaFilter", "--set", "intensity=full", "-i", small(), "-o", out()}, 2, "must be");
}

} // namespace
} // namespace lamina::test
