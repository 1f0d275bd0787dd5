#include "export/JPGController.h"

#include "platform/base/Localization.h"
#include "platform/base/Log.h"

#include <QtGlobal>

#include <string>

namespace lamina {

namespace {

constexpr const char* kSmall = QT_TRANSLATE_NOOP("Lamina", "File size: Small");
constexpr const char* kMedium = QT_TRANSLATE_NOOP("Lamina", "File size: Medium");
constexpr const char* kLarge = QT_TRANSLATE_NOOP("Lamina", "File size: Large");

/// What lies beyond the bands, below them too, is large.
const char* fileSizeOf(float quality)
{
    if (quality >= 0.1f && quality < 0.3f)
        return kSmall;
    if (quality >= 0.3f && quality < 0.7f)
        return kMedium;
    return kLarge;
}

} // namespace

JPGController::JPGController()
    : SizedExporterController(SavingtypeMethod::jpg, kHeight)
    , m_fileSize(kLarge)
{
}

QString JPGController::fileSizeLbl() const
{
    return QString::fromStdString(localizedString(m_fileSize));
}

void JPGController::qualitySlideraction(float value)
{
    constexpr float kBound = 2147483648.0f;
    const float tenths = value * 10.0f;
    if (!(tenths >= -kBound && tenths < kBound))
        return logError("no quality of a JPG");
    m_qualityValueLbl = QString::number(static_cast<int>(tenths));
    m_fileSize = fileSizeOf(value);
    m_qualityParameter = static_cast<double>(value);
    emit optionsChanged();
}

ExportOptions JPGController::options() const
{
    ExportOptions options = SizedExporterController::options();
    options.quality = m_qualityParameter;
    return options;
}

} // namespace lamina
