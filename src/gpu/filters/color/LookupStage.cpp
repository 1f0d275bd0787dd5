#include "gpu/filters/color/LookupStage.h"

#include "gpu/filters/color/LookupTables.h"

namespace lamina {

LookupStage LookupStage::make(std::string_view tableFileName)
{
    LookupStage stage{std::make_shared<GPUImagePicture>(lookupTable(tableFileName)),
                      std::make_shared<GPUImageLookupFilter>()};
    // By name: whatever place the driver gave the uniform, the user is to see the look.
    stage.filter->setFloat(1.0F, "intensity");
    stage.filter->disableSecondFrameCheck();
    stage.lookupImageSource->addTarget(stage.filter, 1);
    stage.lookupImageSource->processImage();
    return stage;
}

} // namespace lamina
