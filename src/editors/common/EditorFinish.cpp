// The ways out of an editor: discarding, and the work as one picture.

#include "editors/common/EditorViewController.h"

#include "platform/base/Localization.h"
#include "platform/view/ImageRendering.h"
#include "platform/view/UIAlertController.h"

#include <utility>

namespace lamina {

void EditorViewController::askToDiscard(std::function<void()> discard)
{
    const auto yes = [weak = weak_from_this(), discard = std::move(discard)] {
        if (const std::shared_ptr<UIViewController> self = weak.lock())
            discard();
    };
    present(UIAlertController::make(localizedString("⚠️"), localizedString("Discard Editing"),
                                    {{localizedString("YES"), UIAlertActionStyle::Default, yes},
                                     {localizedString("NO"), UIAlertActionStyle::Default, {}}}),
            true);
}

UIImage EditorViewController::flattened()
{
    endSliding();
    landWork();
    prepareExport();
    m_flattenedRevision = m_keeper.revision();
    return renderedCanvas();
}

UIImage EditorViewController::renderedCanvas() const
{
    return imageByRenderingView(exportedView());
}

void EditorViewController::workExported()
{
    m_keeper.release(m_flattenedRevision);
}

} // namespace lamina
