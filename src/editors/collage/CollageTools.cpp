// The collage editor's bar and its tools.

#include "editors/collage/CollageTools.h"

#include "editors/collage/CreateCollageViewController.h"

namespace lamina {

void CreateCollageViewController::setUpTools() {}

void CreateCollageViewController::watchTools() {}

void CreateCollageViewController::showTool() {}

void CreateCollageViewController::addBtnsInScrollView() {}

std::vector<std::string_view> CreateCollageViewController::toolImgArr() const
{
    return {};
}

void CreateCollageViewController::imgGesture(int) {}

void CreateCollageViewController::imgGesture1(int tag)
{
    applyLayout(tag);
}

void CreateCollageViewController::leftBtn() {}

void CreateCollageViewController::rightBtn() {}

void CreateCollageViewController::horizontalBtn() {}

void CreateCollageViewController::verticalBtn() {}

void CreateCollageViewController::adjustColor() {}

void CreateCollageViewController::chooseSubTool(const QString&) {}

void CreateCollageViewController::colorPickerControllerDidFinish(InfColorPickerController&) {}

QString CreateCollageViewController::shownPanel() const
{
    return {};
}

QObject* CreateCollageViewController::layouts() const
{
    return nullptr;
}

QVariantList CreateCollageViewController::subTools() const
{
    return {};
}

QString CreateCollageViewController::slotColor() const
{
    return {};
}

} // namespace lamina
