// The filters of a collage: their row of thumbnails, and one that is applied.

#include "editors/collage/CreateCollageViewController.h"

namespace lamina {

void CreateCollageViewController::addFiltersOnScrollView() {}

UIImage CreateCollageViewController::applyFilters(int)
{
    return {};
}

void CreateCollageViewController::filterImgGesture(int) {}

void CreateCollageViewController::warmFilters() {}

QObject* CreateCollageViewController::filters() const
{
    return nullptr;
}

bool CreateCollageViewController::isBusy() const
{
    return false;
}

} // namespace lamina
