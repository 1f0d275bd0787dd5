#include "cli/FilterDrawing.h"

#include "TestPictures.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageFourInputFilter.h"

#include <gmock/gmock.h>
#include <gtest/gtest.h>

namespace lamina::test {
namespace {

constexpr const char* kFourReds = R"(
precision highp float;

varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;
varying vec2 textureCoordinate3;
varying vec2 textureCoordinate4;
uniform sampler2D inputImageTexture;
uniform sampler2D inputImageTexture2;
uniform sampler2D inputImageTexture3;
uniform sampler2D inputImageTexture4;

void main()
{
    gl_FragColor = vec4(texture2D(inputImageTexture, textureCoordinate).r,
                        texture2D(inputImageTexture2, textureCoordinate2).r,
                        texture2D(inputImageTexture3, textureCoordinate3).r,
                        texture2D(inputImageTexture4, textureCoordinate4).r);
}
)";

struct FourReds : GPUImageFourInputFilter {
    FourReds()
        : GPUImageFourInputFilter(kFourReds)
    {
    }
};

struct Broken : GPUImageFilter {
    Broken()
        : GPUImageFilter("void main() { gl_FragColor = nonsense; }")
    {
    }
};

TEST(FilterDrawing, FourPicturesReachTheirSlotsAndTheFirstGivesTheSize)
{
    std::vector<UIImage> pictures;
    for (int i = 1; i <= 4; ++i)
        pictures.emplace_back(solidPicture(2 + i, 3, {static_cast<std::uint8_t>(40 * i), 0, 0, 255}));
    const auto four = filteredPicture(filterDescription<FourReds>("FourReds", "effect", 4, ""), {}, pictures);
    ASSERT_TRUE(four.ok()) << four.error().cause;
    EXPECT_EQ(four->pixelSize(), (IntSize{3, 3}));
    EXPECT_EQ(pixelAt(four->cgImage(), 1, 1), (Rgba{40, 80, 120, 160}));
}

TEST(FilterDrawing, AShaderThatDoesNotBuildIsNamed)
{
    const UIImage red(solidPicture(2, 2, {255, 0, 0, 255}));
    const auto none = filteredPicture(filterDescription<Broken>("Broken", "effect", 1, ""), {}, {red});
    ASSERT_FALSE(none.ok());
    EXPECT_EQ(none.error().subject, "Broken");
    EXPECT_THAT(none.error().cause, testing::HasSubstr("shaders"));
}

} // namespace
} // namespace lamina::test
