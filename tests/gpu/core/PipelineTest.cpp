#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterPipeline.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"

namespace lamina::test {
namespace {

enum class Kind { Plain, Fancy };
constexpr ValueKind kKinds{ValueType::Choice, "choice", "plain|fancy", "plain or fancy", {}};

/// Passes pictures through and remembers what was set.
class Remembering : public GPUImageFilter {
public:
    Remembering() = default;
    Remembering(unsigned radius, Kind kind, bool packed)
    {
        remember("made", {static_cast<int>(radius), NamedChoice{&kKinds, static_cast<int>(kind)}, packed});
    }
    void setRegion(const CGRect& value) { remember("region", {value}); }
    void setTransform(const CGAffineTransform& value) { remember("transform", {value}); }
    void setIntensity(float value) { remember("intensity", {value}); }
    void setCenter(CGPoint value) { remember("center", {value}); }
    void setLabel(const std::string& value) { remember("label", {value}); }
    void remember(const std::string& name, const std::vector<TypedValue>& values)
    {
        m_told += name;
        for (const TypedValue& value : values)
            m_told += " " + formatValue(value);
        m_told += "; ";
    }
    const std::string& told() const { return m_told; }

private:
    std::string m_told;
};

FilterRegistry registry()
{
    FilterRegistry registry;
    registry.add(filterDescription<Remembering>(
        "Remembering", "effect", 1, "Remembers",
        {filterProperty("intensity", &Remembering::setIntensity, 1.0F, {0, 1}, "", ""),
         filterProperty("center", &Remembering::setCenter, CGPoint{}, {0, 1}, "", ""),
         filterProperty("label", &Remembering::setLabel, std::string(), {}, "", "")},
        {{"setColorRed:green:blue:", {0.0F, 0.0F, 0.0F}, [](GPUImageStage& stage, std::span<const TypedValue> values) {
              dynamic_cast<Remembering&>(stage).remember("color", {values.begin(), values.end()});
          }}}));
    registry.add(filterDescriptionWithArguments<Remembering, unsigned, Kind, bool>(
        "Made", "effect", 1, "Remembers with what it was made",
        {argumentProperty("radius", 2, {}, "", ""), argumentProperty("kind", kKinds, Kind::Fancy, ""),
         argumentProperty("packed", false, {}, "", "")},
        {filterProperty("region", &Remembering::setRegion, CGRect(), {}, "", ""),
         filterProperty("transform", &Remembering::setTransform, CGAffineTransform(), {}, "", "")}));
    registry.add(filterDescription<GPUImageFilter>("Plain", "effect", 1, "Passes pictures through"));
    return registry;
}

class PipelineTest : public GraphFixture {
protected:
    Result<std::unique_ptr<GPUImageFilterPipeline>> make(const std::string& json)
    {
        const auto configuration = PipelineConfiguration::fromJson(json, "chain.json");
        if (!configuration)
            return configuration.error();
        return GPUImageFilterPipeline::makeWithConfiguration(*configuration, registry(), m_source, m_end);
    }
    std::shared_ptr<CountingConsumer> m_end = std::make_shared<CountingConsumer>();
};

using Inputs = std::vector<std::shared_ptr<GPUImageInput>>;

TEST_F(PipelineTest, AConfigurationMakesFiltersAndSetsThem)
{
    const auto pipeline = make(R"json({"Filters": [
        {"FilterName": "Plain"},
        {"FilterName": "Remembering", "Attributes": {
            "setIntensity:": "float(0.25)",
            "setCenter:": "CGPoint(0.5, -2)",
            "setLabel:": "NSString(some text)",
            "setColorRed:green:blue:": ["float(1)", "float(2)", "float(3)"]}},
        {"FilterName": "Made", "Attributes": {
            "setTransform:": "NSString(0,1,-1,0,0.5,-2)", "setRegion:": "NSString(0.25,0,0.5,1)",
            "initWithPacked:": "float(1)", "initWithKind:": "NSString(plain)", "initWithRadius:": "float(-3)"}},
        {"FilterName": "Made"}]})json");
    ASSERT_TRUE(pipeline.ok()) << pipeline.error().subject << ": " << pipeline.error().cause;
    const auto& filters = (*pipeline)->filters();
    ASSERT_EQ(filters.size(), 4U);
    EXPECT_EQ(dynamic_cast<const Remembering&>(*filters[1]).told(),
              "intensity 0.25; center 0.5,-2; label some text; color 1 2 3; ");
    EXPECT_EQ(dynamic_cast<const Remembering&>(*filters[2]).told(),
              "made 0 plain 1; transform 0,1,-1,0,0.5,-2; region 0.25,0,0.5,1; ");
    EXPECT_EQ(dynamic_cast<const Remembering&>(*filters[3]).told(), "made 2 fancy 0; ");
    m_source->push({3, 2}, {}, second(1));
    EXPECT_EQ(m_end->frames().size(), 1U);
}

TEST_F(PipelineTest, BadConfigurationsSayWhatIsNotUnderstoodAndConnectNothing)
{
    const auto remembering = [](const std::string& attributes) {
        return R"json({"Filters": [{"FilterName": "Remembering", "Attributes": {)json" + attributes + "}}]}";
    };
    struct Case {
        std::string json;
        const char* named;
    };
    const Case cases[] = {
        {R"json({"Filters": 7})json", "Filters"},
        {R"json({"Filters": ["Plain"]})json", "filter 1"},
        {R"json({"Filters": [{"FilterName": 3}]})json", "FilterName"},
        {R"json({"Filters": [{"FilterName": "Plain", "Attributes": []}]})json", "Attributes"},
        {remembering(R"json("setIntensity:": 1)json"), "setIntensity:"},
        {remembering(R"json("setIntensity:": "float()")json"), "float()"},
        {remembering(R"json("setIntensity:": "CGPoint(1, 2)")json"), "setIntensity:"},
        {remembering(R"json("setIntensity:": ["float(1)", "float(2)"])json"), "setIntensity:"},
        {remembering(R"json("setCenter:": "CGPoint(1)")json"), "CGPoint(1)"},
        {remembering(R"json("setColorRed:green:blue:": ["float(1)"])json"), "setColorRed:green:blue:"},
        {remembering(R"json("setColorRed:green:blue:": ["float(1)", "float(2)", "NSString(3)"])json"), "NSString(3)"},
    };
    for (const auto& [json, named] : cases) {
        const auto pipeline = make(json);
        ASSERT_FALSE(pipeline.ok()) << json;
        EXPECT_THAT(pipeline.error().subject + ": " + pipeline.error().cause, testing::HasSubstr(named)) << json;
        EXPECT_TRUE(m_source->targets().empty());
    }
}

TEST_F(PipelineTest, TextsThatNoChainHasAreRefusedBeforeTheyAreRead)
{
    const auto chainOf = [](int count) {
        std::string filters;
        for (int i = 0; i < count; ++i)
            filters += std::string(i > 0 ? "," : "") + R"json({"FilterName": "Plain"})json";
        return R"json({"Filters": [)json" + filters + "]}";
    };
    std::string keys;
    for (int i = 0; i < 100'000; ++i)
        keys += "\"" + std::to_string(i) + "\":0,";
    const std::pair<std::string, const char*> cases[] = {
        {chainOf(65), "has more than 64 filters"},
        {"{" + keys + "\"Filters\": []}", "has more values than a chain of filters"},
        {std::string(100'000, '['), "is nested deeper than a chain of filters"},
        {R"json({"Filters": [{"FilterName": "Plain", "Attributes": {"a:": "", "a:": ""}}]})json", "names \"a:\" twice"},
        {chainOf(1) + std::string(2'000'000, ' '), "the file is too large"},
        {chainOf(1) + '\0', "is not JSON"},
        {R"json({"Filters": [], "Version": 1e999})json", "is not JSON"},
        {"{\"Filters\": [{\"FilterName\": \"\xff\"}]}", "is not JSON"},
    };
    for (const auto& [json, cause] : cases) {
        const auto refused = PipelineConfiguration::fromJson(json, "chain.json");
        ASSERT_FALSE(refused.ok()) << cause;
        EXPECT_EQ(refused.error().cause, cause);
    }
    EXPECT_EQ(PipelineConfiguration::fromJson("\xef\xbb\xbf" + chainOf(64), "chain.json")->filters.size(), 64U);
}

TEST_F(PipelineTest, EveryChangeOfTheListConnectsAnew)
{
    const auto a = std::make_shared<GPUImageFilter>();
    const auto b = std::make_shared<GPUImageFilter>();
    const auto c = std::make_shared<GPUImageFilter>();
    GPUImageFilterPipeline pipeline({a}, m_source, m_end);
    const auto expectChain = [&](const std::vector<std::shared_ptr<GPUImageStage>>& chain) {
        EXPECT_EQ(pipeline.filters(), chain);
        std::shared_ptr<GPUImageOutput> last = m_source;
        for (const auto& stage : chain) {
            EXPECT_EQ(last->targets(), Inputs{stage});
            last = stage;
        }
        EXPECT_EQ(last->targets(), Inputs{m_end});
    };
    pipeline.addFilter(c);
    pipeline.addFilter(b, 1);
    expectChain({a, b, c});
    // What is not there and places that are not change nothing.
    pipeline.replaceFilterAtIndex(3, c);
    pipeline.removeFilterAtIndex(3);
    pipeline.removeFilter(std::make_shared<GPUImageFilter>());
    pipeline.addFilter(std::make_shared<GPUImageFilter>(), 9);
    expectChain({a, b, c});
    pipeline.removeFilterAtIndex(0);
    pipeline.replaceFilterAtIndex(1, a);
    expectChain({b, a});
    pipeline.removeFilter(b);
    expectChain({a});
    pipeline.replaceAllFilters({c, nullptr, b});
    expectChain({c, b});
    b->useNextFrameForImageCapture();
    m_source->push({3, 2}, {1, 2, 3, 255}, second(1));
    EXPECT_TRUE(imagesMatch(pipeline.currentFilteredFrameWithOrientation(UIImageOrientation::Right).cgImage(),
                            solidPicture(3, 2, {1, 2, 3, 255})));
    pipeline.removeAllFilters();
    expectChain({});
    EXPECT_FALSE(pipeline.currentFilteredFrame());
    EXPECT_FALSE(pipeline.newCGImageFromCurrentFilteredFrame());
}

TEST_F(PipelineTest, SettingsOfOtherNamesOrTypesAreRefused)
{
    const FilterRegistry all = registry();
    const FilterDescription& description = *all.find("Remembering");
    EXPECT_TRUE(makeFilter(description, {{"intensity", 0.5F}, {"label", std::string("x")}}).ok());
    EXPECT_FALSE(makeFilter(description, {{"radius", 1.0F}}).ok());
    EXPECT_FALSE(makeFilter(description, {{"intensity", 1}}).ok());
}

} // namespace
} // namespace lamina::test
