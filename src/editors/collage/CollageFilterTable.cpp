// The looks of a collage's filter panel.

#include "editors/collage/CollageFilters.h"
#include "gpu/core/GPUImageOutput.h"
#include "gpu/filters/color/GPUImageAmatorkaFilter.h"
#include "gpu/filters/color/GPUImageGrayscaleFilter.h"
#include "gpu/filters/color/GPUImageHazeFilter.h"
#include "gpu/filters/color/GPUImageHueFilter.h"
#include "gpu/filters/color/GPUImageMonochromeFilter.h"
#include "gpu/filters/color/GPUImageSepiaFilter.h"
#include "gpu/filters/color/GpuImageCustomFilter.h"
#include "gpu/filters/color/GpuImageCustomHue.h"
#include "gpu/filters/edge/GPUImageEmbossFilter.h"
#include "gpu/filters/edge/GPUImageErosionFilter.h"
#include "gpu/filters/edge/GPUImageToonFilter.h"
#include "gpu/filters/edge/GpuImageCustomFilter3.h"
#include "gpu/filters/effect/GPUImageSoftEleganceFilter.h"

#include <QCoreApplication>

#include <array>

namespace lamina {

namespace {

template <class Filter>
std::shared_ptr<GPUImageOutput> made()
{
    return std::make_shared<Filter>();
}

constexpr std::array<CollageFilter, kCollageFilterCount> kFilters = {{
    {500, QT_TRANSLATE_NOOP("Lamina", "Original"), nullptr},
    {501, QT_TRANSLATE_NOOP("Lamina", "Warm"), made<GPUImageAmatorkaFilter>, "GPUImageAmatorkaFilter"},
    {502, QT_TRANSLATE_NOOP("Lamina", "Sepia"), made<GPUImageSepiaFilter>, "GPUImageSepiaFilter"},
    {503, QT_TRANSLATE_NOOP("Lamina", "Poster"), made<GpuImageCustomFilter3>, "GpuImageCustomFilter3"},
    {504, QT_TRANSLATE_NOOP("Lamina", "Gray"), made<GPUImageGrayscaleFilter>, "GPUImageGrayscaleFilter"},
    {505, QT_TRANSLATE_NOOP("Lamina", "Comic"), made<GPUImageToonFilter>, "GPUImageToonFilter"},
    {506, QT_TRANSLATE_NOOP("Lamina", "Exotic"), made<GPUImageHueFilter>, "GPUImageHueFilter"},
    {507, QT_TRANSLATE_NOOP("Lamina", "Soft"), made<GPUImageSoftEleganceFilter>, "GPUImageSoftEleganceFilter"},
    {508, QT_TRANSLATE_NOOP("Lamina", "Clear"), made<GPUImageHazeFilter>, "GPUImageHazeFilter"},
    {509, QT_TRANSLATE_NOOP("Lamina", "Relief"), made<GPUImageEmbossFilter>, "GPUImageEmbossFilter"},
    {510, QT_TRANSLATE_NOOP("Lamina", "Brown"), made<GPUImageMonochromeFilter>, "GPUImageMonochromeFilter"},
    {511, QT_TRANSLATE_NOOP("Lamina", "Plum"), made<GpuImageCustomFilter>, "GpuImageCustomFilter"},
    {512, QT_TRANSLATE_NOOP("Lamina", "Ink"), made<GPUImageErosionFilter>, "GPUImageErosionFilter"},
    {513, QT_TRANSLATE_NOOP("Lamina", "Dream"), made<GpuImageCustomHue>, "GpuImageCustomHue"},
}};

} // namespace

UIImage CollageFilter::applied(const UIImage& picture) const
{
    return make ? make()->imageByFilteringImage(picture) : picture;
}

std::span<const CollageFilter> collageFilters()
{
    return kFilters;
}

const CollageFilter* findCollageFilter(int tag)
{
    const bool known = tag >= kFirstCollageFilter && tag - kFirstCollageFilter < static_cast<int>(kCollageFilterCount);
    return known ? &kFilters[static_cast<std::size_t>(tag - kFirstCollageFilter)] : nullptr;
}

} // namespace lamina
