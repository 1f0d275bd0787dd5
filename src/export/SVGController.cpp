#include "export/SVGController.h"

#include "export/functions/ExportWork.h"

namespace lamina {

SVGController::SVGController()
    : ExporterViewController(SavingtypeMethod::svg, kHeight)
{
}

void SVGController::handletrasnparentTap()
{
    toggle(m_trasnparentCehck, m_trasparentChoose);
}

ExportOptions SVGController::options() const
{
    return {.transparency = m_trasparentChoose};
}

} // namespace lamina
