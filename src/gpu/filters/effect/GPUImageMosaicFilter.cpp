#include "gpu/filters/effect/GPUImageMosaicFilter.h"

#include "gpu/core/GPUImageStage.h"
#include "gpu/core/TypedValue.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/effect/DiscTiles.h"
#include "platform/base/Log.h"
#include "platform/image/codecs/PictureDecoding.h"
#include "platform/image/pixels/UIImage.h"

#include <utility>

namespace lamina {

namespace {

constexpr CGSize kDisplayTileSize{0.025, 0.025};
constexpr CGSize kInputTileSize{0.125, 0.125};
constexpr int kTilesPerSide = 8;
constexpr float kNumTiles = kTilesPerSide * kTilesPerSide;

constexpr const char* kMosaicFragmentShader = R"(
precision highp float;

varying vec2 textureCoordinate;
varying vec2 textureCoordinate2;
uniform highp sampler2D inputImageTexture;
uniform highp sampler2D inputImageTexture2;
uniform vec2 displayTileSize;
uniform vec2 inputTileSize;
uniform float numTiles;
uniform float colorOn;

void main()
{
    vec2 tileSize = max(displayTileSize, vec2(0.00001));
    vec2 inTile = mod(textureCoordinate, tileSize);
    vec4 color = texture2D(inputImageTexture, textureCoordinate - inTile + 0.5 * tileSize);
    float luminance = dot(color.rgb, vec3(0.299, 0.587, 0.114));

    float count = max(numTiles, 1.0);
    float index = min(floor(luminance * count), count - 1.0);
    // Sides of 1 / 8 and the like are not exact.
    float columns = max(floor(1.0 / max(inputTileSize.x, 0.00001) + 0.01), 1.0);
    float row = floor((index + 0.5) / columns);
    vec2 tile = vec2(index - row * columns, row);
    vec3 tileColor = texture2D(inputImageTexture2, (tile + inTile / tileSize) * inputTileSize).rgb;
    gl_FragColor = vec4(tileColor * mix(vec3(1.0), color.rgb, colorOn), color.a);
}
)";

/// The filter's own tiles for no path.
Result<CGImage> tilesOf(const std::string& path)
{
    if (path.empty())
        return discTiles(kTilesPerSide);
    const Result<UIImage> picture = loadPicture(path);
    if (!picture)
        return picture.error();
    return picture->cgImage();
}

FilterProperty tileSetProperty()
{
    return {"tileSet",
            FilePath{},
            {},
            "",
            "A picture of tiles, the darkest first; without one discs that grow",
            [](GPUImageStage& filter, const TypedValue& value) {
                const std::string& path = std::get<FilePath>(value).path;
                if (const Outcome set = dynamic_cast<GPUImageMosaicFilter&>(filter).setTileSet(path); !set)
                    logError(set.error().message());
            },
            [](const TypedValue& value) {
                const Result<CGImage> tiles = tilesOf(std::get<FilePath>(value).path);
                return tiles ? success() : tiles.error();
            }};
}

} // namespace

GPUImageMosaicFilter::GPUImageMosaicFilter()
    : GPUImageTwoInputFilter(kMosaicFragmentShader)
    , m_displayTileSizeUniform(uniformIndex("displayTileSize"))
    , m_inputTileSizeUniform(uniformIndex("inputTileSize"))
    , m_numTilesUniform(uniformIndex("numTiles"))
    , m_colorOnUniform(uniformIndex("colorOn"))
{
    disableSecondFrameCheck();
    setDisplayTileSize(kDisplayTileSize);
    setInputTileSize(kInputTileSize);
    setNumTiles(kNumTiles);
    setColorOn(true);
    layTiles(discTiles(kTilesPerSide));
}

FilterDescription GPUImageMosaicFilter::describe()
{
    using Self = GPUImageMosaicFilter;
    return filterDescription<Self>(
        "GPUImageMosaicFilter", "effect", 1, "Laid from tiles, each as bright as what it stands for",
        {tileSetProperty(),
         filterProperty("inputTileSize", &Self::setInputTileSize, kInputTileSize, {0, 1}, "share of the tile picture",
                        "Of a tile in the picture of tiles"),
         filterProperty("numTiles", &Self::setNumTiles, kNumTiles, {1, 256}, "", "How many tiles there are"),
         filterProperty("displayTileSize", &Self::setDisplayTileSize, kDisplayTileSize, {0.005, 0.2},
                        "share of the picture", "Of the tiles that are laid"),
         filterProperty("colorOn", &Self::setColorOn, true, {}, "", "1 colours the tiles, 0 shows them as they are")});
}

void GPUImageMosaicFilter::setDisplayTileSize(CGSize size)
{
    m_displayTileSize = size;
    setSize(size, m_displayTileSizeUniform, m_filterProgram);
}

void GPUImageMosaicFilter::setInputTileSize(CGSize size)
{
    m_inputTileSize = size;
    setSize(size, m_inputTileSizeUniform, m_filterProgram);
}

void GPUImageMosaicFilter::setNumTiles(float count)
{
    m_numTiles = count;
    setFloat(count, m_numTilesUniform, m_filterProgram);
}

void GPUImageMosaicFilter::setColorOn(bool on)
{
    m_colorOn = on;
    setFloat(on ? 1.0F : 0.0F, m_colorOnUniform, m_filterProgram);
}

Outcome GPUImageMosaicFilter::setTileSet(const std::string& path)
{
    const Result<CGImage> tiles = tilesOf(path);
    if (!tiles)
        return tiles.error();
    m_tileSet = path;
    layTiles(*tiles);
    return success();
}

/// The old tiles go when slot 1 no longer has them.
void GPUImageMosaicFilter::layTiles(const CGImage& tiles)
{
    auto texture = std::make_unique<PictureTexture>(tiles);
    runSynchronouslyOnVideoProcessingQueue([&] {
        setInputSize(texture->pictureSize(), 1);
        setInputFramebuffer(texture->framebuffer(), 1);
    });
    m_tiles = std::move(texture);
}

} // namespace lamina
