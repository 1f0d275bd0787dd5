#include "app/MainStoryboard.h"

#include "app/AboutViewController.h"
#include "app/ImagePIckingViewController.h"
#include "app/LiveViewController.h"
#include "app/PinchZoomViewController.h"
#include "app/ViewController.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "editors/collage/CreateCollageViewController.h"
#include "editors/colorpicker/InfColorPickerController.h"
#include "export/ExportScenes.h"
#include "picker/PickerScenes.h"
#include "platform/view/UIStoryboard.h"

#include <memory>

namespace lamina {

namespace {

template <class Controller>
UIStoryboardScene sceneOf(const char* qmlFile)
{
    return {[] { return std::make_shared<Controller>(); }, qmlFile};
}

} // namespace

void registerMainStoryboard()
{
    const std::shared_ptr<UIStoryboard> storyboard = UIStoryboard::named(kMainStoryboard);
    storyboard->addScene(scene::kHome, sceneOf<ViewController>("HomeScreen.qml"));
    storyboard->addScene(scene::kSourceChoice, sceneOf<ImagePIckingViewController>("ImagePIckingScreen.qml"));
    storyboard->addScene(scene::kCrop, sceneOf<PinchZoomViewController>("PinchZoomScreen.qml"));
    storyboard->addScene(scene::kAbout, sceneOf<AboutViewController>("AboutScreen.qml"));
    storyboard->addScene(scene::kLive, sceneOf<LiveViewController>("LiveScreen.qml"));
    storyboard->addScene(scene::kBlend, sceneOf<BlendPhotoViewController>("BlendPhotoScreen.qml"));
    storyboard->addScene(scene::kCollage, sceneOf<CreateCollageViewController>("CreateCollageScreen.qml"));
    storyboard->addScene(InfColorPickerController::kViewFile,
                         sceneOf<InfColorPickerController>("InfColorPickerScreen.qml"));
    addExportScenes(*storyboard);
    addPickerScenes(*storyboard);
    storyboard->addSegue(segue::kPickedToCollage, scene::kCollage, UIStoryboard::SegueKind::Show);
    storyboard->addSegue(segue::kPickedToBlend, scene::kBlend, UIStoryboard::SegueKind::Present);
    storyboard->addSegue(segue::kToBlend, scene::kBlend, UIStoryboard::SegueKind::Present);
}

} // namespace lamina
