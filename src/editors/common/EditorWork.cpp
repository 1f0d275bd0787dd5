// An editor's slow pictures, and the steps that they make.

#include "editors/common/EditorViewController.h"

#include <memory>
#include <utility>

namespace lamina {

void EditorViewController::runWork(LatestWork::Work work, LatestWork::Landed landed)
{
    m_work.run(std::move(work), [this, landed = std::move(landed)](const UIImage& picture) {
        const std::shared_ptr<UIViewController> self = weak_from_this().lock();
        landed(picture);
        tellGesture();
        finishWork();
    });
    tellBusy();
}

void EditorViewController::runPreview(LatestWork::Work work, LatestWork::Landed landed)
{
    m_previews.run(std::move(work), [this, landed = std::move(landed)](const UIImage& picture) {
        const std::shared_ptr<UIViewController> self = weak_from_this().lock();
        landed(picture);
        tellGesture();
        tellBusy();
    });
    tellBusy();
}

void EditorViewController::runStep(LatestWork::Work work, LatestWork::Landed landed)
{
    m_work.run(std::move(work), [this, landed = std::move(landed)](const UIImage& picture) {
        const std::shared_ptr<UIViewController> self = weak_from_this().lock();
        landed(picture);
        finishStep(EditSeries::None);
        finishWork();
    });
    tellBusy();
}

void EditorViewController::finishWork()
{
    if (!m_work.isBusy() && m_slideToLand) {
        finishStep(*std::exchange(m_slideToLand, std::nullopt));
        slideOn();
    }
    tellBusy();
}

void EditorViewController::landWork()
{
    while (isBusy()) {
        m_previews.land();
        m_work.land();
    }
}

void EditorViewController::forgetWork()
{
    m_work.forget();
    m_previews.forget();
    m_slideToLand.reset();
    m_slidesAhead.clear();
    tellBusy();
}

void EditorViewController::tellBusy()
{
    if (std::exchange(m_busy, isBusy()) != m_busy)
        emit busyChanged();
}

} // namespace lamina
