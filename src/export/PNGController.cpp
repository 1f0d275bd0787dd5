#include "export/PNGController.h"

namespace lamina {

PNGController::PNGController()
    : SizedExporterController(SavingtypeMethod::png, kHeight)
{
}

void PNGController::handletrasnparentTap()
{
    toggle(m_trasnparentCheck, m_trasparentBool);
}

void PNGController::handleCompressTap()
{
    m_compressQuailityCheck.toggle();
    emit optionsChanged();
}

ExportOptions PNGController::options() const
{
    ExportOptions options = SizedExporterController::options();
    options.transparency = m_trasparentBool;
    return options;
}

} // namespace lamina
