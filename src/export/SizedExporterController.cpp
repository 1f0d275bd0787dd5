#include "export/SizedExporterController.h"

#include "export/functions/ExportWork.h"
#include "export/functions/ImageHelpers.h"
#include "platform/base/NumberText.h"

#include <cmath>
#include <string>

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

IntSize SizedExporterController::filePixels() const
{
    return tobeSavedimage() ? pixelsToFit(tobeSavedimage(), m_newSize.width, m_newSize.height) : IntSize{};
}

ExportOptions SizedExporterController::options() const
{
    ExportOptions options;
    options.width = m_newSize.width;
    options.height = m_newSize.height;
    return options;
}

} // namespace lamina
