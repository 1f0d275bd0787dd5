#include "cli/FilterDrawing.h"

#include "cli/FilterParsing.h"
#include "cli/PictureOutput.h"
#include "gpu/core/GPUImageContext.h"
#include "gpu/core/GPUImageFilter.h"
#include "gpu/core/GPUImageStage.h"
#include "gpu/core/PictureTexture.h"
#include "gpu/core/VideoProcessingQueue.h"
#include "gpu/filters/FilterCatalogue.h"
#include "gpu/sources/GPUImagePicture.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/CMTime.h"
#include "platform/base/Log.h"

#include <algorithm>
#include <cstddef>
#include <functional>
#include <memory>
#include <string_view>
#include <utility>

namespace lamina {

namespace {

/// However long it takes: who waits for a kept frame gives up after some seconds.
void awaitDrawing()
{
    runSynchronouslyOnVideoProcessingQueue([] {});
}

/// Pushes from the last slot to the first: that gives the output its size, and a filter of four inputs passes over a
/// fourth picture that comes after the other three.
UIImage combined(const std::shared_ptr<GPUImageStage>& filter, const std::vector<UIImage>& pictures)
{
    std::vector<std::shared_ptr<GPUImagePicture>> sources;
    const PictureUpload upload = PictureUpload::as(filter->alphaForm());
    for (const UIImage& picture : pictures) {
        sources.push_back(std::make_shared<GPUImagePicture>(picture, upload));
        sources.back()->addTarget(filter, static_cast<int>(sources.size()) - 1);
    }
    filter->useNextFrameForImageCapture();
    for (auto source = sources.rbegin(); source != sources.rend(); ++source)
        (*source)->processImage();
    awaitDrawing();
    return filter->imageFromCurrentFramebufferWithOrientation(UIImageOrientation::Up);
}

/// Of one that draws by itself.
UIImage generated(GPUImageFilter& filter, CGSize size)
{
    filter.forceProcessingAtSize(size);
    filter.useNextFrameForImageCapture();
    filter.generateFrameAtTime(kCMTimeIndefinite);
    return filter.imageFromCurrentFramebufferWithOrientation(UIImageOrientation::Up);
}

Error shadersDontBuild(const std::string& className)
{
    return {className, "the graphics driver does not build its shaders"};
}

Error noPicture(const std::string& className)
{
    return {className, "gives no picture: graphics memory is short"};
}

/// What a new filter draws, or why there is no picture.
Result<UIImage> drawn(const FilterDescription& description, const FilterSettings& settings,
                      const std::function<UIImage(const std::shared_ptr<GPUImageStage>&)>& draw)
{
    Result<std::shared_ptr<GPUImageStage>> filter = makeFilter(description, settings);
    if (!filter)
        return filter.error();
    if (!(*filter)->canRender())
        return shadersDontBuild(description.className);
    UIImage result = draw(*filter);
    if (!result)
        return noPicture(description.className);
    return result;
}

} // namespace

Outcome drawingIsPossible()
{
    LogSink usual = setLogSink([](LogLevel, std::string_view) {});
    Outcome possible = GPUImageContext::availability();
    setLogSink(std::move(usual));
    return possible;
}

std::optional<std::string> reductionNote(const UIImage& picture)
{
    const IntSize pixels = picture.pixelSize();
    const CGSize whole{static_cast<double>(pixels.width), static_cast<double>(pixels.height)};
    const CGSize fitting = GPUImageContext::sizeThatFitsWithinATextureForSize(whole);
    if (fitting == whole)
        return std::nullopt;
    return "reduced to " +
           sizeInPixels({std::max(1, static_cast<int>(fitting.width)), std::max(1, static_cast<int>(fitting.height))}) +
           ": the GPU draws at most " + std::to_string(GPUImageContext::maximumTextureSizeForThisDevice()) +
           " pixels a side";
}

Result<UIImage> filteredPicture(const FilterDescription& description, const FilterSettings& settings,
                                const std::vector<UIImage>& pictures, FilterReport* report)
{
    return drawn(description, settings, [&](const std::shared_ptr<GPUImageStage>& filter) {
        if (report)
            description.reporting.listen(*filter, [report](FilterReport told) { *report = std::move(told); });
        return pictures.size() == 1 ? filter->imageByFilteringImage(pictures.front()) : combined(filter, pictures);
    });
}

Result<UIImage> generatedPicture(const FilterDescription& description, const FilterSettings& settings, IntSize size)
{
    const int most = GPUImageContext::maximumTextureSizeForThisDevice();
    if (size.width > most || size.height > most)
        return Error{description.className,
                     "the GPU draws at most " + std::to_string(most) + " pixels a side, not " + sizeInPixels(size)};
    return drawn(description, settings, [&](const std::shared_ptr<GPUImageStage>& filter) {
        return generated(dynamic_cast<GPUImageFilter&>(*filter),
                         {static_cast<double>(size.width), static_cast<double>(size.height)});
    });
}

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

Result<UIImage> pictureThroughChain(const PipelineConfiguration& configuration, const UIImage& picture)
{
    if (configuration.filters.empty())
        return picture;
    const auto source = std::make_shared<GPUImagePicture>(picture);
    const auto chain = GPUImageFilterPipeline::makeWithConfiguration(configuration, filterCatalogue(), source, nullptr);
    if (!chain)
        return chain.error();
    const GPUImageFilterPipeline::Filters& filters = (*chain)->filters();
    for (std::size_t i = 0; i < filters.size(); ++i) {
        if (!filters[i]->canRender())
            return shadersDontBuild(configuration.filters[i].filterName);
    }
    filters.back()->useNextFrameForImageCapture();
    source->processImage();
    awaitDrawing();
    UIImage result = (*chain)->currentFilteredFrameWithOrientation(UIImageOrientation::Up);
    if (!result)
        return noPicture(configuration.filters.back().filterName);
    return result;
}

} // namespace lamina
