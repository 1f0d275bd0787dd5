#include "export/TiffController.h"

namespace lamina {

TiffController::TiffController()
    : ExporterViewController(SavingtypeMethod::tiff, kHeight)
{
}

} // namespace lamina
