#include "app/MainStoryboard.h"

#include "app/ImagePIckingViewController.h"
#include "app/PinchZoomViewController.h"
#include "app/ViewController.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "platform/view/UIStoryboard.h"

namespace lamina {

void registerMainStoryboard()
{
    const std::shared_ptr<UIStoryboard> storyboard = UIStoryboard::named(kMainStoryboard);
    storyboard->addScene(scene::kHome, [] { return std::make_shared<ViewController>(); });
    storyboard->addScene(scene::kSourceChoice, [] { return std::make_shared<ImagePIckingViewController>(); });
    storyboard->addScene(scene::kCrop, [] { return std::make_shared<PinchZoomViewController>(); });
    storyboard->addScene(scene::kBlend, [] { return std::make_shared<BlendPhotoViewController>(); });
    storyboard->addSegue(segue::kPickedToBlend, scene::kBlend, UIStoryboard::SegueKind::Present);
    storyboard->addSegue(segue::kToBlend, scene::kBlend, UIStoryboard::SegueKind::Present);
}

} // namespace lamina
