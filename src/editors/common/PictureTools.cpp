#include "editors/common/PictureTools.h"

#include "imageops/ImageGeometry.h"

#include <QLatin1Char>

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

UIImage turnedLeft(const UIImage& image)
{
    return rotateInDegrees(image, 90.0F);
}

UIImage turnedRight(const UIImage& image)
{
    return rotateInDegrees(image, -90.0F);
}

/// Two hexadecimal digits of a component.
QString byteText(double component)
{
    return QStringLiteral("%1").arg(std::lround(std::clamp(component, 0.0, 1.0) * 255), 2, 16, QLatin1Char('0'));
}

} // namespace

EditorToolBar makePictureToolBar()
{
    EditorToolBar bar(kPictureTools, {});
    for (const EditorTool& tool : kPictureTools)
        bar.setEnabled(tool.identifier, true);
    return bar;
}

PictureOperation pictureOperation(std::string_view tool)
{
    constexpr struct {
        std::string_view tool;
        PictureOperation operation;
    } kOperations[] = {
        {picturetool::kLeft, turnedLeft},
        {picturetool::kRight, turnedRight},
        {picturetool::kHorizontal, horizontalFlip},
        {picturetool::kVertical, verticalFlip},
    };
    for (const auto& row : kOperations) {
        if (row.tool == tool)
            return row.operation;
    }
    return nullptr;
}

QString colorText(const UIColor& color)
{
    return '#' + byteText(color.alpha) + byteText(color.red) + byteText(color.green) + byteText(color.blue);
}

} // namespace lamina
