#include "export/ExportScenes.h"

#include "export/ColorProfileController.h"
#include "export/JPGController.h"
#include "export/MP4VideoController.h"
#include "export/PDFPrintController.h"
#include "export/PDFStandardController.h"
#include "export/PNGController.h"
#include "export/SVGController.h"
#include "export/SavingTypeController.h"
#include "export/ShareController.h"
#include "export/TiffController.h"
#include "export/functions/ExportWork.h"
#include "platform/view/UIStoryboard.h"

#include <cstddef>
#include <memory>

namespace lamina {

namespace {

template <class Controller>
void add(UIStoryboard& storyboard, const char* identifier, const char* qmlFile)
{
    storyboard.addScene(identifier, {[] { return std::make_shared<Controller>(); }, qmlFile});
}

const char* exporterScene(SavingtypeMethod type)
{
    return kExporterScenes[static_cast<std::size_t>(type)];
}

} // namespace

void addExportScenes(UIStoryboard& storyboard)
{
    add<SavingTypeController>(storyboard, exportscene::kChooser, "SavingTypeScreen.qml");
    add<ShareController>(storyboard, exportscene::kShare, "ShareScreen.qml");
    add<ColorProfileController>(storyboard, exportscene::kColorProfile, "ColorProfileScreen.qml");
    add<JPGController>(storyboard, exporterScene(SavingtypeMethod::jpg), "JPGScreen.qml");
    add<PNGController>(storyboard, exporterScene(SavingtypeMethod::png), "PNGScreen.qml");
    add<PDFStandardController>(storyboard, exporterScene(SavingtypeMethod::pdfStandard), "PDFStandardScreen.qml");
    add<PDFPrintController>(storyboard, exporterScene(SavingtypeMethod::pdfPrint), "PDFPrintScreen.qml");
    add<SVGController>(storyboard, exporterScene(SavingtypeMethod::svg), "SVGScreen.qml");
    add<MP4VideoController>(storyboard, exporterScene(SavingtypeMethod::mp4), "MP4VideoScreen.qml");
    add<TiffController>(storyboard, exporterScene(SavingtypeMethod::tiff), "TiffScreen.qml");
}

} // namespace lamina
