#include "export/PDFPrintController.h"

#include "export/ColorProfileController.h"
#include "export/ExportScenes.h"
#include "export/SavingTypes.h"
#include "export/functions/ExportWork.h"
#include "platform/base/Localization.h"
#include "platform/base/NumberText.h"
#include "platform/view/UIStoryboard.h"

#include <QtGlobal>

#include <memory>
#include <string>

namespace lamina {

namespace {

constexpr double kCentimetresPerInch = 2.54;

std::string centimetres(int pixels, double pixelsPerInch)
{
    return fixedText(pixels / pixelsPerInch * kCentimetresPerInch, 1);
}

} // namespace

PDFPrintController::PDFPrintController()
    : ExporterViewController(SavingtypeMethod::pdfPrint, kHeight)
{
}

void PDFPrintController::handlecropTap()
{
    toggle(m_cropMarksCheck, m_cropSelect);
}

void PDFPrintController::handleFlattenTap()
{
    toggle(m_flattenCheck, m_flattenChoose);
}

void PDFPrintController::handlenotTap()
{
    toggle(m_notesCheck, m_notesChoose);
}

void PDFPrintController::handleppiTap()
{
    toggle(m_ppiCheck, m_ppiSelect);
}

QString PDFPrintController::colorProfileLbl() const
{
    return QString::fromStdString(localizedString(kColorProfileTitles[m_rgbselect ? 0 : 1]));
}

QString PDFPrintController::printSizeLbl() const
{
    const IntSize pixels = filePixels();
    if (pixels.width < 1 || pixels.height < 1)
        return {};
    return QString::fromStdString(
        localizedText(QT_TRANSLATE_NOOP("Lamina", "%1 × %2 cm, %3 ppi"),
                      {centimetres(pixels.width, pixelsPerInch()), centimetres(pixels.height, pixelsPerInch()),
                       fixedText(pixelsPerInch(), 0)}));
}

void PDFPrintController::handleprofileTap()
{
    if (!isClosable() || presentedViewController())
        return;
    const auto sheet =
        UIStoryboard::named(kMainStoryboard)->instantiate<ColorProfileController>(exportscene::kColorProfile);
    if (!sheet)
        return;
    sheet->setDelegate(std::static_pointer_cast<PDFPrintController>(shared_from_this()));
    sheet->setSelecIndex(m_rgbselect ? 0 : 1);
    sheet->setModalPresentationStyle(UIModalPresentationStyle::OverCurrentContext);
    present(sheet, true);
}

void PDFPrintController::profileSelected(int index)
{
    if (presentedViewController())
        dismiss(true);
    m_rgbselect = index == 0;
    emit optionsChanged();
}

ExportOptions PDFPrintController::options() const
{
    return {.notes = m_notesChoose,
            .cropMarks = m_cropSelect,
            .colors = m_rgbselect ? PrintColors::RGB : PrintColors::CMYK,
            .pixelsPerInch = pixelsPerInch()};
}

} // namespace lamina
