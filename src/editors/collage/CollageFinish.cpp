// The ways out of a collage.

#include "editors/collage/CreateCollageViewController.h"

namespace lamina {

void CreateCollageViewController::shareBtn() {}

void CreateCollageViewController::backBtn() {}

void CreateCollageViewController::prepareExport() {}

std::function<void()> CreateCollageViewController::hideHandles() const
{
    return [] {};
}

} // namespace lamina
