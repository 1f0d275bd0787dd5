// The lines of a collage: its border, and those along its layout's edges; the reset that stands beside them.

#include "editors/collage/CreateCollageViewController.h"

namespace lamina {

void CreateCollageViewController::addFrame() {}

void CreateCollageViewController::adjustBorderColor() {}

void CreateCollageViewController::photosBack() {}

void CreateCollageViewController::showFrame() {}

QString CreateCollageViewController::borderColor() const
{
    return {};
}

} // namespace lamina
