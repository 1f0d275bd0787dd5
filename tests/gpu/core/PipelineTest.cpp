#include "GraphFixture.h"
#include "TestPictures.h"
#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilterPipeline.h"
#include "gpu/core/GPUVectors.h"
#include "platform/base/CGGeometry.h"

namespace lamina::test {
namespace {

/// Passes pictures through and remembers what was set.
class Remembering : public GPUImageFilter {
public:
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
    /// The frames that reach the end for one push.
    std::size_t framesOfAPush()
    {
        m_end->forget();
        m_source->push({3, 2}, {1, 2, 3, 4}, second(1));
        return m_end->frames().size();
    }

    std::shared_ptr<FrameSource> m_source = std::make_shared<FrameSource>();
    std::shared_ptr<CountingConsumer> m_end = std::make_shared<CountingConsumer>();
};

using Stages = std::vector<std::shared_ptr<GPUImageInput>>;

TEST_F(PipelineTest, AConfigurationMakesFiltersAndSetsThem)
{
    const auto pipeline = make(R"json({"Filters": [
        {"FilterName": "Plain"},
        {"FilterName": "Remembering", "Attributes": {
            "setIntensity:": "float(0.25)",
            "setCenter:": "CGPoint(0.5, -2)",
            "setLabel:": "NSString(some text)",
            "setColorRed:green:blue:": ["float(1)", "float(2)", "float(3)"]}},
        {"FilterName": "Remembering", "Attributes": {}}]})json");
    ASSERT_TRUE(pipeline.ok()) << pipeline.error().subject << ": " << pipeline.error().cause;
    const auto& filters = (*pipeline)->filters();
    ASSERT_EQ(filters.size(), 3U);
    EXPECT_EQ(dynamic_cast<const Remembering&>(*filters[1]).told(),
              "intensity 0.25; center 0.5,-2; label some text; color 1 2 3; ");
    EXPECT_EQ(dynamic_cast<const Remembering&>(*filters[2]).told(), "");
    EXPECT_EQ(framesOfAPush(), 1U);
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
        {"", ""},
        {"[]", ""},
        {R"json({"Filters": 7})json", "Filters"},
        {R"json({"Filters": ["Plain"]})json", ""},
        {R"json({"Filters": [{"FilterName": 3}]})json", "FilterName"},
        {R"json({"Filters": [{"FilterName": "Plane"}]})json", "Plane"},
        {R"json({"Filters": [{"FilterName": "Plain", "Attributes": []}]})json", ""},
        {remembering(R"json("setRadius:": "float(1)")json"), "setRadius:"},
        {remembering(R"json("setIntensity:": 1)json"), ""},
        {remembering(R"json("setIntensity:": "double(1)")json"), "double(1)"},
        {remembering(R"json("setIntensity:": "float()")json"), "float()"},
        {remembering(R"json("setIntensity:": "float(much)")json"), "much"},
        {remembering(R"json("setIntensity:": "CGPoint(1, 2)")json"), "setIntensity:"},
        {remembering(R"json("setIntensity:": ["float(1)", "float(2)"])json"), "setIntensity:"},
        {remembering(R"json("setCenter:": "CGPoint(1)")json"), "CGPoint(1)"},
        {remembering(R"json("setColorRed:green:blue:": ["float(1)"])json"), "setColorRed:green:blue:"},
        {remembering(R"json("setColorRed:green:blue:": ["float(1)", "float(2)", "NSString(3)"])json"),
         "setColorRed:green:blue:"},
    };
    for (const auto& [json, named] : cases) {
        const auto pipeline = make(json);
        ASSERT_FALSE(pipeline.ok()) << json;
        const std::string told = pipeline.error().subject + ": " + pipeline.error().cause;
        EXPECT_THAT(told, testing::HasSubstr(named)) << json;
        EXPECT_FALSE(pipeline.error().cause.empty());
        EXPECT_TRUE(m_source->targets().empty());
    }
}

TEST_F(PipelineTest, EveryChangeOfTheListConnectsAnew)
{
    const auto a = std::make_shared<GPUImageFilter>();
    const auto b = std::make_shared<GPUImageFilter>();
    const auto c = std::make_shared<GPUImageFilter>();
    GPUImageFilterPipeline pipeline({a}, m_source, m_end);
    const auto expectChain = [&](const std::vector<std::shared_ptr<GPUImageFilter>>& chain) {
        ASSERT_EQ(pipeline.filters().size(), chain.size());
        std::shared_ptr<GPUImageOutput> stage = m_source;
        for (std::size_t i = 0; i < chain.size(); ++i) {
            EXPECT_EQ(pipeline.filters()[i], chain[i]);
            EXPECT_EQ(stage->targets(), Stages{chain[i]});
            stage = chain[i];
        }
        EXPECT_EQ(stage->targets(), Stages{m_end});
        EXPECT_EQ(framesOfAPush(), 1U);
    };
    expectChain({a});
    pipeline.addFilter(c);
    pipeline.addFilter(b, 1);
    expectChain({a, b, c});
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

TEST(TypedValueTest, TextsAndValuesAgree)
{
    const std::vector<std::pair<std::string, TypedValue>> values{
        {"0.1", 0.1F},
        {"-3", -3},
        {"1", true},
        {"0.5,-2", CGPoint{0.5, -2}},
        {"640x480", CGSize{640, 480}},
        {"1,0.5,0", GPUVector3{1, 0.5F, 0}},
        {"1,2,3,4", GPUVector4{1, 2, 3, 4}},
        {"1,2,3;4,5,6;7,8,9", GPUMatrix3x3{{1, 2, 3}, {4, 5, 6}, {7, 8, 9}}},
        {"1,0,0,0;0,1,0,0;0,0,1,0;0,0,0,1", GPUMatrix4x4::identity()},
        {"any; text, at all", std::string("any; text, at all")},
    };
    for (const auto& [text, value] : values) {
        EXPECT_EQ(formatValue(value), text);
        const auto parsed = parseValue(text, kindOf(value));
        ASSERT_TRUE(parsed.ok()) << text;
        EXPECT_TRUE(*parsed == value) << text;
    }
    const std::vector<std::pair<TypedValue, std::vector<std::string>>> wrong{
        {1.0F, {"", "1 ", "nan", "inf", "1e99", "1,5", "0x10"}},
        {1, {"1.5", "99999999999"}},
        {true, {"true"}},
        {CGPoint{}, {"1", "1,2,3"}},
        {CGSize{}, {"1,2", "1x"}},
        {GPUVector3{}, {"1,2"}},
        {GPUVector4{}, {"1,2,3"}},
        {GPUMatrix3x3{}, {"1,2,3;4,5,6"}}};
    for (const auto& [like, texts] : wrong) {
        for (const std::string& text : texts) {
            const auto parsed = parseValue(text, kindOf(like));
            ASSERT_FALSE(parsed.ok()) << text << " as " << kindOf(like).name;
            EXPECT_EQ(parsed.error().subject, text);
        }
    }
}

TEST_F(PipelineTest, SettingsOfOtherNamesOrTypesAreRefused)
{
    const FilterRegistry all = registry();
    const FilterDescription& description = *all.find("Remembering");
    const auto good = makeFilter(description, {{"intensity", 0.5F}, {"label", std::string("x")}});
    ASSERT_TRUE(good.ok());
    EXPECT_EQ(dynamic_cast<const Remembering&>(**good).told(), "intensity 0.5; label x; ");
    const auto unknown = makeFilter(description, {{"radius", 1.0F}});
    ASSERT_FALSE(unknown.ok());
    EXPECT_EQ(unknown.error().subject, "radius");
    EXPECT_FALSE(makeFilter(description, {{"intensity", 1}}).ok());
    EXPECT_EQ(all.find("Remember"), nullptr);
}

} // namespace
} // namespace lamina::test
