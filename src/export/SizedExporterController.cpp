#include "export/SizedExporterController.h"

#include "imageops/DrawingSurface.h"
#include "platform/base/NumberText.h"
#include "platform/base/UIScreen.h"

#include <cmath>

namespace lamina {

namespace {

constexpr int kShownDecimals = 1;

QString pixelLabel(const std::string& width, const std::string& height)
{
    return QString::fromStdString(width + " x " + height + " px");
}

} // namespace

void SizedExporterController::takeWorkingImage()
{
    m_newSize = tobeSavedimage().size();
    m_pxLbl = pixelLabel(decimalText(m_newSize.width), decimalText(m_newSize.height));
    ExporterViewController::takeWorkingImage();
}

void SizedExporterController::sizeSliderAction(float value)
{
    if (!std::isfinite(value) || !(value > 0))
        return;
    m_sizeSlider = value;
    m_sizeValueLbl = QString::fromStdString(fixedText(static_cast<double>(value), kShownDecimals));
    const CGSize size = tobeSavedimage().size();
    m_newSize = {size.width * static_cast<double>(value), size.height * static_cast<double>(value)};
    m_pxLbl = pixelLabel(fixedText(m_newSize.width, kShownDecimals), fixedText(m_newSize.height, kShownDecimals));
    emit optionsChanged();
}

/// As the pictures are drawn: by one of the two sides, in a context of the main screen's scale.
IntSize SizedExporterController::filePixels() const
{
    const CGSize size = tobeSavedimage().size();
    if (!(size.width > 0 && size.height > 0))
        return {};
    const double factor = size.height >= size.width ? m_newSize.width / size.width : m_newSize.height / size.height;
    const double pixels = factor * UIScreen::main().scale;
    return wholePixels(size.width * pixels, size.height * pixels).value_or(IntSize{});
}

ExportOptions SizedExporterController::options() const
{
    ExportOptions options;
    options.width = m_newSize.width;
    options.height = m_newSize.height;
    return options;
}

} // namespace lamina
