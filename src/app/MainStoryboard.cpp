#include "app/MainStoryboard.h"

#include "app/ImagePIckingViewController.h"
#include "app/PinchZoomViewController.h"
#include "app/ViewController.h"
#include "editors/blend/BlendPhotoViewController.h"
#include "platform/view/UIStoryboard.h"

namespace lamina {

void registerMainStoryboard()
{
    const std::shared_ptr<UIStoryboard> storyboard = UIStoryboard::named("Main");
    storyboard->addScene("ViewController", [] { return std::make_shared<ViewController>(); });
    storyboard->addScene("ImagePIckingViewController", [] { return std::make_shared<ImagePIckingViewController>(); });
    storyboard->addScene("PinchZoomViewController", [] { return std::make_shared<PinchZoomViewController>(); });
    storyboard->addScene("BlendPhotoViewController", [] { return std::make_shared<BlendPhotoViewController>(); });
    storyboard->addSegue("blend", "BlendPhotoViewController", UIStoryboard::SegueKind::Present);
    storyboard->addSegue("toBlend", "BlendPhotoViewController", UIStoryboard::SegueKind::Present);
}

} // namespace lamina
