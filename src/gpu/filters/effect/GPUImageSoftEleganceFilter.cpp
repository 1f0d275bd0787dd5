#include "gpu/filters/effect/GPUImageSoftEleganceFilter.h"

#include "gpu/filters/blend/GPUImageAlphaBlendFilter.h"
#include "gpu/filters/blur/GPUImageGaussianBlurFilter.h"
#include "gpu/filters/color/LookupStage.h"

namespace lamina {

GPUImageSoftEleganceFilter::GPUImageSoftEleganceFilter()
{
    const LookupStage pale = LookupStage::make("lookup_soft_elegance_1.png");
    const auto blur = std::make_shared<GPUImageGaussianBlurFilter>();
    blur->setBlurRadiusInPixels(10);
    const auto gleam = std::make_shared<GPUImageAlphaBlendFilter>();
    gleam->setMix(0.14F);
    const LookupStage tone = LookupStage::make("lookup_soft_elegance_2.png");
    m_lookupImageSource1 = pale.lookupImageSource;
    m_lookupImageSource2 = tone.lookupImageSource;

    pale.filter->addTarget(blur, 0);
    pale.filter->addTarget(gleam, 0);
    blur->addTarget(gleam, 1);
    gleam->addTarget(tone.filter, 0);

    addFilter(pale.filter);
    addFilter(blur);
    addFilter(gleam);
    addFilter(tone.filter);
    setInitialFilters({pale.filter});
    setTerminalFilter(tone.filter);
}

FilterDescription GPUImageSoftEleganceFilter::describe()
{
    return filterDescription<GPUImageSoftEleganceFilter>("GPUImageSoftEleganceFilter", "editor", 1,
                                                         "Soft and pale, with a gleam around what is bright");
}

} // namespace lamina
