#include "cli/filters/FilterDrawing.h"

#include "cli/common/PictureOutput.h"
#include "cli/filters/FilterParsing.h"
#include "gpu/core/DrawingFailures.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageFramebufferCache.h"
#include "gpu/core/GPUImageStage.h"
#include "gpu/core/PictureTexture.h"
#include "gpu/filters/FilterCatalogue.h"
#include "gpu/sources/GPUImagePicture.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/Log.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"

#include <algorithm>
#include <array>
#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>

namespace lamina {

namespace {

/// More than this is not kept in textures that nobody needs: a picture that large is read, or written, beside them.
constexpr std::size_t kMostIdleBytes = std::size_t{64} << 20;

/// What the process holds beside pictures and textures: the driver above all.
constexpr std::size_t kOwnMemory = 80'000'000;

std::size_t bytesOf(CGSize size)
{
    return 4 * static_cast<std::size_t>(size.width) * static_cast<std::size_t>(size.height);
}

CGSize pixelsOf(IntSize size)
{
    return {static_cast<double>(size.width), static_cast<double>(size.height)};
}

/// Gives the memory of idle textures back where it is much. A driver that draws on the processor keeps what its last
/// draws have read until it draws anything else, be it a pixel.
void letGoOfTextures(std::size_t pictureBytes)
{
    if (pictureBytes <= kMostIdleBytes)
        return;
    GPUImageContext::sharedFramebufferCache().purgeAllUnassignedFramebuffers();
    const UIImage pixel(
        CGImage::make(CGImageLayout::rgba(1, 1, CGImageAlphaInfo::NoneSkipLast), PixelBuffer::zeroed(4)));
    for (int drawn = 0; drawn < 2 && GPUImageContext::deviceDrawsOnProcessor(); ++drawn)
        GPUImageFilter().imageByFilteringImage(pixel);
}

/// Pictures on their way into the first filter. Each goes from memory once its texture stands, and the texture once it
/// is drawn.
class Sources {
public:
    /// One for each slot.
    Sources(std::vector<UIImage> pictures, const std::shared_ptr<GPUImageStage>& filter)
        : Sources(std::move(pictures), PictureUpload::as(filter->alphaForm()))
    {
        for (std::size_t slot = 0; slot < m_sources.size(); ++slot)
            m_sources[slot]->addTarget(filter, static_cast<int>(slot));
    }
    Sources(std::vector<UIImage> pictures, PictureUpload upload)
    {
        for (UIImage& picture : pictures) {
            m_bytes = std::max(m_bytes, bytesOf(pixelsOf(picture.pixelSize())));
            m_sources.push_back(std::make_shared<GPUImagePicture>(std::exchange(picture, {}), upload));
        }
    }
    const std::shared_ptr<GPUImagePicture>& first() const { return m_sources.front(); }

    /// What `last` makes of them, however long it takes: who waits for a kept frame gives up after some seconds, but
    /// here the frame has come before anybody waits. Pushes from the last slot to the first: that gives the output its
    /// size, and a filter of four inputs passes over a fourth picture that comes after the other three.
    UIImage pushThrough(GPUImageStage& last)
    {
        last.useNextFrameForImageCapture();
        for (auto source = m_sources.rbegin(); source != m_sources.rend(); ++source)
            (*source)->processImageAndLetGo();
        m_sources.clear(); // filters of several inputs hold their pictures until the sources go
        letGoOfTextures(m_bytes);
        return last.imageFromCurrentFramebufferWithOrientation(UIImageOrientation::Up);
    }

private:
    std::vector<std::shared_ptr<GPUImagePicture>> m_sources;
    std::size_t m_bytes = 0; ///< of the largest
};

/// Of one that draws by itself.
UIImage generated(GPUImageFilter& filter, CGSize size)
{
    filter.forceProcessingAtSize(size);
    filter.useNextFrameForImageCapture();
    filter.generateFrameAtTime(kCMTimeIndefinite);
    letGoOfTextures(bytesOf(size));
    return filter.imageFromCurrentFramebufferWithOrientation(UIImageOrientation::Up);
}

/// The picture, or why there is none. A frame on the way that could not be made leaves a picture too: a black one.
Result<UIImage> toldBy(const DrawingFailures& failures, const std::string& className, UIImage picture)
{
    if (const std::optional<std::string> cause = failures.first())
        return Error{className, "gives no picture: " + *cause};
    if (!picture)
        return Error{className, "gives no picture: not a pixel is left"};
    return picture;
}

CGSize fittingSize(CGSize whole)
{
    return GPUImageContext::sizeThatFitsWithinATextureForSize(whole);
}

/// Bytes that drawing from these takes at its worst: while pictures go up, while a filter of two passes draws, while
/// the result is read. Textures count where they are in our memory. `kept`: of them, that a chain holds until it goes.
std::size_t neededMemory(const std::vector<CGSize>& pictures, std::size_t kept)
{
    std::size_t pixels = 0;
    std::size_t textures = 0;
    std::size_t largest = 0;
    for (const CGSize& picture : pictures) {
        const std::size_t texture = bytesOf(fittingSize(picture));
        pixels += bytesOf(picture);
        textures += texture;
        largest = std::max(largest, texture);
    }
    const bool isOurs = GPUImageContext::deviceDrawsOnProcessor();
    return std::max({pixels + largest, isOurs ? textures + (2 + kept) * largest : 0, isOurs ? 2 * largest : largest});
}

/// How many filters keep what they have drawn, for the next frame of a stream.
std::size_t keptByChain(const PipelineConfiguration& configuration)
{
    constexpr std::array<std::string_view, 3> kKeepFrames{"GPUImageLowPassFilter", "GPUImageHighPassFilter",
                                                          "GPUImageMotionDetector"};
    return static_cast<std::size_t>(std::ranges::count_if(configuration.filters, [&](const auto& filter) {
        return std::ranges::find(kKeepFrames, filter.filterName) != kKeepFrames.end();
    }));
}

/// "1.6 GB"
std::string inGigabytes(std::size_t bytes)
{
    const std::size_t tenths = (bytes + 50'000'000) / 100'000'000;
    return std::to_string(tenths / 10) + "." + std::to_string(tenths % 10) + " GB";
}

Outcome checkMemory(const std::string& className, const std::vector<CGSize>& pictures, std::size_t kept = 0)
{
    const std::size_t needed = neededMemory(pictures, kept) + kOwnMemory;
    if (needed <= kDrawingMemory)
        return success();
    const CGSize& largest =
        *std::ranges::max_element(pictures, {}, [](const CGSize& picture) { return picture.width * picture.height; });
    return Error{className, "needs " + inGigabytes(needed) + " of memory for " +
                                sizeInPixels({static_cast<int>(largest.width), static_cast<int>(largest.height)}) +
                                ", more than " + inGigabytes(kDrawingMemory)};
}

std::vector<CGSize> sizesOf(const std::vector<UIImage>& pictures)
{
    std::vector<CGSize> sizes;
    sizes.reserve(pictures.size());
    for (const UIImage& picture : pictures)
        sizes.push_back(pixelsOf(picture.pixelSize()));
    return sizes;
}

/// What a new filter draws, or why there is no picture.
Result<UIImage> drawn(const FilterDescription& description, const FilterSettings& settings,
                      const std::function<UIImage(const std::shared_ptr<GPUImageStage>&)>& draw)
{
    const DrawingFailures failures;
    Result<std::shared_ptr<GPUImageStage>> filter = makeFilter(description, settings);
    if (!filter)
        return filter.error();
    if (!(*filter)->canRender())
        return shadersDontBuild(description.className);
    return toldBy(failures, description.className, draw(*filter));
}

/// Gives idle textures back once the filters are gone too.
Result<UIImage> withoutTextures(Result<UIImage> picture)
{
    if (picture)
        letGoOfTextures(bytesOf(pixelsOf(picture->pixelSize())));
    return picture;
}

Result<UIImage> drawnByChain(const PipelineConfiguration& configuration, UIImage picture)
{
    const DrawingFailures failures;
    std::vector<UIImage> pictures;
    pictures.push_back(std::move(picture));
    Sources sources(std::move(pictures), PictureUpload{});
    const auto chain =
        GPUImageFilterPipeline::makeWithConfiguration(configuration, filterCatalogue(), sources.first(), nullptr);
    if (!chain)
        return chain.error();
    const GPUImageFilterPipeline::Filters& filters = (*chain)->filters();
    for (std::size_t i = 0; i < filters.size(); ++i) {
        if (!filters[i]->canRender())
            return shadersDontBuild(configuration.filters[i].filterName);
    }
    return toldBy(failures, configuration.filters.back().filterName, sources.pushThrough(*filters.back()));
}

/// What is wrong with a chain that can be told without making its filters.
Outcome checkPipeline(const PipelineConfiguration& configuration)
{
    for (const PipelineConfiguration::Filter& step : configuration.filters) {
        const Result<const FilterDescription*> filter = filterNamed(step.filterName);
        if (!filter)
            return filter.error();
        if ((*filter)->inputs != 1) {
            return Error{step.filterName, "needs " + countedPictures(static_cast<std::size_t>((*filter)->inputs)) +
                                              "; a pipeline takes filters of one"};
        }
    }
    return GPUImageFilterPipeline::check(configuration, filterCatalogue());
}

} // namespace

Error shadersDontBuild(const std::string& className)
{
    return {className, "the graphics driver does not build its shaders"};
}

Outcome drawingIsPossible()
{
    LogSink usual = setLogSink([](LogLevel, std::string_view) {});
    Outcome possible = GPUImageContext::availability();
    setLogSink(std::move(usual));
    return possible;
}

std::optional<std::string> reductionNote(const UIImage& picture)
{
    const CGSize whole = pixelsOf(picture.pixelSize());
    const CGSize fitting = fittingSize(whole);
    if (fitting == whole)
        return std::nullopt;
    return "reduced to " +
           sizeInPixels({std::max(1, static_cast<int>(fitting.width)), std::max(1, static_cast<int>(fitting.height))}) +
           ": the GPU draws at most " + std::to_string(GPUImageContext::maximumTextureSizeForThisDevice()) +
           " pixels a side";
}

Result<UIImage> filteredPicture(const FilterDescription& description, const FilterSettings& settings,
                                std::vector<UIImage> pictures, FilterReport* report)
{
    if (const Outcome fits = checkMemory(description.className, sizesOf(pictures)); !fits)
        return fits.error();
    return withoutTextures(drawn(description, settings, [&](const std::shared_ptr<GPUImageStage>& filter) {
        if (report)
            description.reporting.listen(*filter, [report](FilterReport told) { *report = std::move(told); });
        return Sources(std::move(pictures), filter).pushThrough(*filter);
    }));
}

Result<UIImage> generatedPicture(const FilterDescription& description, const FilterSettings& settings, IntSize size)
{
    const int most = GPUImageContext::maximumTextureSizeForThisDevice();
    if (size.width > most || size.height > most)
        return Error{description.className,
                     "the GPU draws at most " + std::to_string(most) + " pixels a side, not " + sizeInPixels(size)};
    if (const Outcome fits = checkMemory(description.className, {pixelsOf(size)}); !fits)
        return fits.error();
    return withoutTextures(drawn(description, settings, [&](const std::shared_ptr<GPUImageStage>& filter) {
        return generated(dynamic_cast<GPUImageFilter&>(*filter), pixelsOf(size));
    }));
}

Result<PipelineConfiguration> readPipeline(const std::string& path)
{
    Result<PipelineConfiguration> configuration = PipelineConfiguration::fromFile(path);
    if (!configuration)
        return configuration;
    if (const Outcome known = checkPipeline(*configuration); !known)
        return Error{path, "'" + known.error().subject + "': " + known.error().cause};
    return configuration;
}

Result<UIImage> pictureThroughChain(const PipelineConfiguration& configuration, UIImage picture)
{
    if (configuration.filters.empty())
        return picture;
    const Outcome fits =
        checkMemory(configuration.filters.front().filterName, sizesOf({picture}), keptByChain(configuration));
    if (!fits)
        return fits.error();
    return withoutTextures(drawnByChain(configuration, std::move(picture)));
}

} // namespace lamina
