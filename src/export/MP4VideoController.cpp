#include "export/MP4VideoController.h"

#include "export/functions/ExportWork.h"
#include "platform/base/Localization.h"
#include "platform/media/VideoExport.h"

#include <QtGlobal>

namespace lamina {

namespace {

// Keys: the labels are their translations.
constexpr std::string_view kLow = QT_TRANSLATE_NOOP("Lamina", "Low");
constexpr std::string_view kMedium = QT_TRANSLATE_NOOP("Lamina", "Medium");
constexpr std::string_view kHigh = QT_TRANSLATE_NOOP("Lamina", "High");

/// A video's sides are even.
int evened(int side)
{
    return side + side % 2;
}

} // namespace

MP4VideoController::MP4VideoController()
    : ExporterViewController(SavingtypeMethod::mp4, 0)
    , m_sizelbl(kHigh)
{
}

void MP4VideoController::viewDidLoad()
{
    ExporterViewController::viewDidLoad();
    m_audioURL = blankAudioFile();
}

QString MP4VideoController::sizelblText() const
{
    return QString::fromStdString(localizedString(m_sizelbl));
}

IntSize MP4VideoController::filePixels() const
{
    const IntSize picture = ExporterViewController::filePixels();
    if (picture.width < 1 || picture.height < 1)
        return {};
    const IntSize video = videoSize(picture);
    return {evened(video.width), evened(video.height)};
}

void MP4VideoController::qualitySliderAction(float value)
{
    if (value >= 0.2f && value < 0.6f)
        m_sizelbl = kLow;
    else if (value >= 0.6f && value < 1.0f)
        m_sizelbl = kMedium;
    else if (value >= 1.0f && value <= 1.5f)
        m_sizelbl = kHigh;
    else
        return;
    m_qualityslider = value;
    emit optionsChanged();
}

ExportOptions MP4VideoController::options() const
{
    ExportOptions options;
    options.video = m_sizelbl == kHigh     ? VideoQuality::High
                    : m_sizelbl == kMedium ? VideoQuality::Medium
                                           : VideoQuality::Low;
    return options;
}

} // namespace lamina
