// A program of the filter graph's core and nothing above it: a filter of its own, by itself and in a pipeline.

#include "AllHeaders.h"

#include "gpu/core/FilterRegistry.h"
#include "gpu/core/GPUImageFilter.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/CGImage.h"

#include <cstdio>
#include <memory>

using namespace lamina;

namespace {

struct Inverting : GPUImageFilter {
    Inverting()
        : GPUImageFilter("precision highp float; varying vec2 textureCoordinate; uniform sampler2D inputImageTexture;"
                         "void main() { gl_FragColor = 1.0 - texture2D(inputImageTexture, textureCoordinate); }")
    {
    }
};

int failed(const Error& error)
{
    std::fprintf(stderr, "%s: %s\n", error.subject.c_str(), error.cause.c_str());
    return 1;
}

} // namespace

int main()
{
    const Outcome context = GPUImageContext::availability();
    if (!context)
        return failed(context.error());
    FilterRegistry registry;
    registry.add(filterDescription<Inverting>("Inverting", "effect", 1, ""));
    const auto chain = PipelineConfiguration::fromJson(R"({"Filters": [{"FilterName": "Inverting"}]})", "chain");
    if (!chain)
        return failed(chain.error());
    const auto first = std::make_shared<Inverting>();
    const auto pipeline = GPUImageFilterPipeline::makeWithConfiguration(*chain, registry, first, nullptr);
    if (!pipeline)
        return failed(pipeline.error());

    const CGImageLayout layout = CGImageLayout::rgba(1, 1, CGImageAlphaInfo::Last);
    const CGImage picture = CGImage::make(layout, PixelBuffer::zeroed(layout.byteCount()));
    const auto last = (*pipeline)->filters().back();
    last->useNextFrameForImageCapture();
    const CGImage once = first->newCGImageByFilteringCGImage(picture);
    const CGImage twice = last->newCGImageFromCurrentlyProcessedOutput();
    return once && twice && once.row(0)[0] == 255 && twice.row(0)[0] == 0 ? 0 : 1;
}
