// The filters of a collage: their row of thumbnails, and one that is applied.

#include "editors/collage/CollageFilters.h"

#include "editors/collage/CollageEffectWork.h"
#include "editors/collage/CollageEffects.h"
#include "editors/collage/CreateCollageViewController.h"
#include "editors/common/PanelAnimation.h"
#include "gpu/core/GPUImageContext.h"
#include "hud/BusyPanel.h"
#include "hud/SVProgressHUD.h"
#include "platform/base/Causes.h"
#include "platform/base/Localization.h"
#include "platform/base/Result.h"
#include "platform/image/pixels/CGImage.h"
#include "platform/image/pixels/PixelBuffer.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/ListModel.h"

#include <algorithm>
#include <memory>
#include <utility>
#include <vector>

namespace lamina {

namespace {

/// For programs to be linked and drawn with once.
UIImage tinyPicture()
{
    const CGImageLayout layout = CGImageLayout::rgba(8, 8, CGImageAlphaInfo::NoneSkipLast);
    return UIImage(CGImage::make(layout, PixelBuffer::zeroed(layout.byteCount())));
}

} // namespace

/// A tool that was chosen meanwhile has closed the panel again, and wins.
void CreateCollageViewController::addFiltersOnScrollView()
{
    if (!m_filterEnableBool)
        return;
    settleSlider();
    landWork();
    CollageComposition& composition = editedComposition();
    composition.beforeApplyFilterImage = composition.photoSlots[composition.current].image;
    composition.filter = 0;
    showFilters();
    animatePanels([this] { m_panels.openFilters(); });
}

void CreateCollageViewController::showFilters()
{
    m_filterRow.fill(composition().beforeApplyFilterImage, [this] { tellFailure(); });
}

/// Filters go on from where the state has them, and not from what it shows.
void CreateCollageViewController::reopenFilters()
{
    if (shownPanel() == QLatin1String("effects"))
        closeEffects();
    m_filterEnableBool = true;
    showFilters();
    animatePanels([this] { m_panels.openFilters(); });
}

UIImage CreateCollageViewController::applyFilters(int tag)
{
    const CollageFilter* const filter = findCollageFilter(tag);
    if (filter == nullptr)
        return {};
    const UIImage& base = composition().beforeApplyFilterImage;
    return filter->make ? filter->applied(CollageFilterRow::smallImage(base)) : base;
}

void CreateCollageViewController::filterImgGesture(int tag)
{
    const CollageFilter* const filter = findCollageFilter(tag);
    const UIImage base = composition().beforeApplyFilterImage;
    if (filter == nullptr || !base)
        return;
    if (filter->make == nullptr)
        return act([&] { takeFiltered(composition().current, tag, base); });
    cancelGestures();
    if (CoarsePicture::isWorthwhile(base))
        showBusyPanel([weak = weak_from_this()] {
            if (const auto self = std::static_pointer_cast<CreateCollageViewController>(weak.lock()))
                self->forgetWork();
            SVProgressHUD::dismiss();
        });
    runStep([base, filter] { return filter->applied(base); },
            [this, tag, slot = composition().current](const UIImage& filtered) {
                SVProgressHUD::dismiss();
                takeFiltered(slot, tag, filtered);
            });
}

/// A photo that could not be filtered stays as it is.
void CreateCollageViewController::takeFiltered(std::size_t slot, int tag, const UIImage& filtered)
{
    if (!filtered)
        return tellFailure();
    setSlotPicture(slot, filtered);
    editedComposition().filter = tag;
}

void CreateCollageViewController::tellFailure()
{
    const Outcome available = GPUImageContext::availability();
    presentFailure(*this, localizedString(QT_TRANSLATE_NOOP("Lamina", "Can’t change the photo")),
                   available.ok() ? Error{{}, cause::kNoMemory} : available.error());
}

void CreateCollageViewController::viewDidAppear(bool animated)
{
    CompositionEditor::viewDidAppear(animated);
    if (!std::exchange(m_warmed, true))
        warmFilters();
}

/// With filter objects of its own: the sliders' ones may be at work on their thread, and programs are the context's.
void CreateCollageViewController::warmFilters()
{
    const auto own = std::make_shared<CollageEffectFilters>();
    std::vector<FilterSteps::Step> steps;
    for (const CollageFilter& filter : collageFilters())
        steps.emplace_back([&filter] { filter.applied(tinyPicture()); });
    for (const int tag : {collageslider::kVignette, collageslider::kSaturation, collageslider::kHighlight})
        steps.emplace_back([tag, own] { pictureWithEffect({tag, 1}, tinyPicture(), *own); });
    m_warming = FilterSteps(std::move(steps));
}

int CreateCollageViewController::filterRow() const
{
    return std::max(0, filter() - kFirstCollageFilter);
}

QObject* CreateCollageViewController::filters() const
{
    return const_cast<ListModel<CollageFilterThumbnail>*>(&m_filterRow.thumbnails());
}

} // namespace lamina
