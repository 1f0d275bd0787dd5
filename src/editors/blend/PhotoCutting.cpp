#include "editors/blend/PhotoCutting.h"

#include "editors/common/PhotosLeftOut.h"
#include "platform/base/Localization.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIViewController.h"

#include <cmath>
#include <string>
#include <utility>

namespace lamina {

PhotoCutting::PhotoCutting(UIViewController& editor)
    : m_editor(editor)
{
}

void PhotoCutting::begin(std::deque<WantedCut> wanted, double side, UIImagePickerControllerSourceType source,
                         Completion completion)
{
    if (wanted.empty() || m_editor.presentedViewController())
        return;
    m_wanted = std::move(wanted);
    m_side = side;
    m_source = source;
    m_cuts.clear();
    m_completion = std::move(completion);
    readNext();
}

void PhotoCutting::readNext()
{
    const auto picker = makeCropPicker(weak_from_this(), m_source, m_side, m_wanted.front().number);
    if (m_wanted.front().source)
        picker->setPreselected(*m_wanted.front().source);
    m_editor.present(picker, true);
}

void PhotoCutting::imagePickerControllerDidCancel(UIImagePickerController& picker)
{
    picker.dismiss(true);
}

void PhotoCutting::imagePickerController(UIImagePickerController& picker,
                                         const UIImagePickerInfo& didFinishPickingMediaWithInfo)
{
    picker.dismiss(true);
    cutNext(didFinishPickingMediaWithInfo);
}

void PhotoCutting::cutNext(const UIImagePickerInfo& photo)
{
    const auto screen = UIStoryboard::named(kMainStoryboard)->instantiateViewController(blendscene::kCrop);
    auto* const crop = dynamic_cast<PhotoCropScreen*>(screen.get());
    if (crop == nullptr)
        return;
    const WantedCut& wanted = m_wanted.front();
    const auto done = [weak = weak_from_this(), number = wanted.number, source = photo.source](UIImage cut,
                                                                                               PhotoCrop place) {
        if (const auto self = weak.lock())
            self->takeCut({number, std::move(cut), place, source});
    };
    crop->setTask({photo.originalImage, wanted.number, m_side, wanted.crop, done});
    screen->setModalPresentationStyle(UIModalPresentationStyle::CurrentContext);
    m_editor.present(screen, true);
    presentDamage(m_editor, {photo.name, photo.damage});
}

void PhotoCutting::takeCut(PhotoCut cut)
{
    m_cuts.push_back(std::move(cut));
    m_wanted.pop_front();
    if (m_wanted.empty())
        std::exchange(m_completion, {})(std::exchange(m_cuts, {}));
    else
        readNext();
}

std::shared_ptr<UIImagePickerController> makeCropPicker(std::weak_ptr<UIImagePickerControllerDelegate> delegate,
                                                        UIImagePickerControllerSourceType source, double side,
                                                        int number)
{
    auto picker = std::make_shared<UIImagePickerController>();
    picker->setDelegate(std::move(delegate));
    picker->setSourceType(source);
    picker->setTitle(localizedText("Photo %1 of 2", {std::to_string(number)}));
    picker->setModalPresentationStyle(UIModalPresentationStyle::CurrentContext);
    picker->setShortSide(static_cast<int>(std::ceil(kMaximumCropZoom * side)));
    return picker;
}

void presentLeftOut(UIViewController& screen, std::size_t count, std::function<void()> goOn)
{
    presentTooManyPhotos(screen,
                         count == 1
                             ? localizedString("Lamina blends two photos. One was left out.")
                             : localizedText("Lamina blends two photos. %1 were left out.", {std::to_string(count)}),
                         std::move(goOn));
}

} // namespace lamina
