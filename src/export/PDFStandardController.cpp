#include "export/PDFStandardController.h"

#include "export/functions/ExportWork.h"

namespace lamina {

PDFStandardController::PDFStandardController()
    : ExporterViewController(SavingtypeMethod::pdfStandard, kHeight)
{
}

void PDFStandardController::handleFlattenTap()
{
    toggle(m_flattenCheckView, m_flattenChoose);
}

void PDFStandardController::handlenotTap()
{
    toggle(m_noteCheckView, m_notesChoose);
}

ExportOptions PDFStandardController::options() const
{
    return {.notes = m_notesChoose};
}

} // namespace lamina
