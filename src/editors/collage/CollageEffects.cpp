// The effects of a collage: their panel, and what its sliders do.

#include "editors/collage/CollageEffects.h"

#include "editors/collage/CreateCollageViewController.h"

namespace lamina {

void CreateCollageViewController::createViewForFx() {}

void CreateCollageViewController::contrast(double) {}

void CreateCollageViewController::brightn(double) {}

void CreateCollageViewController::emboss(double) {}

void CreateCollageViewController::sharpen(double) {}

void CreateCollageViewController::unsharpen(double) {}

void CreateCollageViewController::vignette(double) {}

void CreateCollageViewController::saturation(double) {}

void CreateCollageViewController::highlight(double) {}

void CreateCollageViewController::opacity(double) {}

void CreateCollageViewController::hideFxViewBtnClicked() {}

std::span<const EditorSlider> CreateCollageViewController::sliderTable() const
{
    return {};
}

double CreateCollageViewController::sliderValue(int) const
{
    return 0;
}

void CreateCollageViewController::applySlider(int, double) {}

} // namespace lamina
