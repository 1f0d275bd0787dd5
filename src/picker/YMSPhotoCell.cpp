#include "picker/YMSPhotoCell.h"

#include "platform/base/DispatchQueue.h"
#include "platform/image/drawing/CGContext.h"
#include "platform/image/drawing/UIImageDrawing.h"
#include "platform/view/UIImageMetaType.h"
#include "platform/view/UIViewAnimation.h"

#include <QPointer>

#include <algorithm>
#include <cmath>
#include <optional>

namespace lamina {

namespace {

constexpr double kVeilFade = 0.2; ///< seconds
constexpr double kPressedScale = 0.9;
constexpr double kPress = 0.15; ///< seconds
constexpr double kRelease = 0.4;
constexpr UIViewSpring kReleaseSpring{0.5, 6};

/// Pixels for each one that is seen, up to which a picture is kept as it is.
constexpr double kWorthKeeping = 2;

UIImage asShown(const UIImage& picture, int side)
{
    const CGSize own = picture.size();
    const double shown = std::min<double>(side, std::min(own.width, own.height));
    if (!(shown > 0) || own.width * own.height <= kWorthKeeping * shown * shown)
        return picture;
    std::optional<CGContext> context = CGContext::image({shown, shown}, !picture.cgImage().hasAlpha(), 1);
    if (!context)
        return picture;
    const double scale = shown / std::min(own.width, own.height);
    const CGSize size{own.width * scale, own.height * scale};
    drawInRect(picture, *context,
               {{std::floor((shown - size.width) / 2), std::floor((shown - size.height) / 2)}, size});
    return context->makeUIImage();
}

} // namespace

YMSPhotoCell::YMSPhotoCell()
{
    connect(&m_veilAlpha, &AnimatedProperty::valueChanged, this, &YMSPhotoCell::veilAlphaChanged);
    connect(&m_pressScale, &AnimatedProperty::valueChanged, this, &YMSPhotoCell::pressScaleChanged);
}

YMSPhotoCell::~YMSPhotoCell()
{
    cancelImageRequest();
}

QVariant YMSPhotoCell::thumbnailVariant() const
{
    return QVariant::fromValue(m_thumbnailImage);
}

bool YMSPhotoCell::represents(const PHAsset& asset) const
{
    return m_representedAsset == asset && m_representedAsset.modified == asset.modified &&
           m_representedAsset.path == asset.path; // a request for the former name may end with nothing
}

void YMSPhotoCell::setRepresentedAsset(const PHAsset& asset)
{
    m_representedAsset = asset;
    emit representedAssetChanged();
}

void YMSPhotoCell::loadPhotoWithManager(const std::shared_ptr<PHImageManager>& manager, const PHAsset& asset,
                                        CGSize targetSize)
{
    m_imageManager = manager;
    m_targetSize = targetSize;
    const auto answer = [cell = QPointer(this), identifier = asset.localIdentifier](const UIImage& picture) {
        if (cell && cell->representedAssetIdentifier() == identifier)
            cell->show(asShown(picture, cell->m_shownSide), !picture);
    };
    m_imageRequestID = manager->requestImageForAsset(asset, targetSize, PHImageContentMode::AspectFill, {}, answer);
}

void YMSPhotoCell::cancelImageRequest()
{
    if (m_imageRequestID == PHInvalidImageRequestID)
        return;
    if (const auto manager = m_imageManager.lock())
        manager->cancelImageRequest(m_imageRequestID);
    m_imageRequestID = PHInvalidImageRequestID;
}

void YMSPhotoCell::borrowThumbnail(const YMSPhotoCell& other)
{
    show(other.m_thumbnailImage, other.m_unreadable);
}

void YMSPhotoCell::show(const UIImage& picture, bool unreadable)
{
    m_thumbnailImage = picture;
    m_unreadable = unreadable;
    emit thumbnailImageChanged();
}

void YMSPhotoCell::setSelectionOrder(int selectionOrder)
{
    if (m_selectionOrder == selectionOrder)
        return;
    m_selectionOrder = selectionOrder;
    emit selectionOrderChanged();
}

void YMSPhotoCell::setSelected(bool selected)
{
    PhotoGridCell::setSelected(selected);
    setSelected(selected, m_animateSelection);
}

void YMSPhotoCell::setSelected(bool selected, bool animated)
{
    m_animateSelection = false;
    const double alpha = selected ? 1 : 0;
    if (!animated) {
        m_veilAlpha = alpha;
        m_enableSelectionIndicatorViewVisibility = selected;
        return;
    }
    m_enableSelectionIndicatorViewVisibility = true;
    animate(
        kVeilFade, 0, {}, [&] { m_veilAlpha = alpha; },
        [cell = QPointer(this), selected](bool finished) {
            if (cell && finished)
                cell->m_enableSelectionIndicatorViewVisibility = selected;
        });
}

void YMSPhotoCell::animateHighlight(bool highlighted)
{
    m_release.cancel();
    if (highlighted) {
        m_animateHighlight = true;
        animate(
            kPress, 0, {}, [&] { m_pressScale = kPressedScale; },
            [cell = QPointer(this)](bool) {
                if (cell)
                    cell->m_animateHighlight = false;
            });
        return;
    }
    if (m_animateHighlight) // a short tap: the press is seen to its end first
        m_release = DispatchTimer(DispatchQueue::main(), kPress, [this] { release(); });
    else
        release();
}

void YMSPhotoCell::release()
{
    animate(kRelease, 0, {.spring = kReleaseSpring}, [&] { m_pressScale = 1; });
}

void YMSPhotoCell::endDisplaying()
{
    cancelImageRequest();
    m_animateSelection = false;
    m_release.cancel();
    m_pressScale = 1;
}

void YMSPhotoCell::prepareForReuse()
{
    endDisplaying();
    PhotoGridCell::prepareForReuse();
    setSelected(false, false);
    setRepresentedAsset({});
    show({}, false);
}

} // namespace lamina
