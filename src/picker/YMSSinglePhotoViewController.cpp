#include "picker/YMSSinglePhotoViewController.h"

#include "picker/NavigationBarHiding.h"
#include "picker/PickerTexts.h"
#include "picker/PickerThemeValues.h"
#include "picker/YMSPhotoPickerTheme.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/Causes.h"
#include "platform/base/DispatchQueue.h"
#include "platform/base/Result.h"
#include "platform/base/UIScreen.h"
#include "platform/photos/AssetPicture.h"
#include "platform/photos/PictureQueue.h"
#include "platform/view/FailureAlert.h"
#include "platform/view/UIBarButtonItem.h"
#include "platform/view/UIView.h"
#include "platform/view/UIViewAnimation.h"

#include <algorithm>
#include <cmath>
#include <utility>
#include <vector>

namespace lamina {

namespace {

constexpr double kStyleFade = 0.15;    ///< seconds
constexpr double kSlide = 0.2;         ///< seconds that a photo takes to come into its place
constexpr double kSwipeLeast = 60;     ///< points after which a finger means the neighbour
constexpr double kSwipeResistance = 3; ///< how much harder a photo without a neighbour there is to pull
constexpr double kThumbnailSide = 640; ///< pixels; the largest that counts as a thumbnail

} // namespace

YMSSinglePhotoViewController::YMSSinglePhotoViewController(PHAsset photoAsset,
                                                           std::weak_ptr<PHImageManager> imageManager,
                                                           DismissalHandler dismissalHandler)
    : m_currentAsset(std::move(photoAsset))
    , m_imageManager(std::move(imageManager))
    , m_dismissalHandler(std::move(dismissalHandler))
{
}

YMSSinglePhotoViewController::~YMSSinglePhotoViewController()
{
    stopRequests();
}

void YMSSinglePhotoViewController::setNeighbours(PHFetchResult album, std::size_t index)
{
    m_album = std::move(album);
    m_index = index;
}

void YMSSinglePhotoViewController::setStateOfPhoto(StateOfPhoto stateOfPhoto)
{
    m_stateOfPhoto = std::move(stateOfPhoto);
}

void YMSSinglePhotoViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    m_topInset = kNavigationBarHeight;
    m_imageContainerView = PhotoZoomView::make(view().bounds());
    m_imageContainerView->didZoom = [this] { emit zoomScaleChanged(); };
    m_imageContainerView->didEndZooming = [this](double scale) { zoomEnded(scale); };
    view().addSubview(m_imageContainerView);
    setRightBarButtonItem(
        std::make_shared<UIBarButtonItem>(UIBarButtonSystemItem::Add, [this] { selectCurrentPhoto(); }));
    const auto tap = std::make_shared<UITapGestureRecognizer>();
    tap->addAction([this](UIGestureRecognizer&) { switchPresentationStyle(); });
    m_imageContainerView->addGestureRecognizer(tap);
    const auto swipe = std::make_shared<UIPanGestureRecognizer>();
    swipe->setDelegate(std::shared_ptr<UIGestureRecognizerDelegate>(shared_from_this(), this));
    swipe->addTarget(this, &YMSSinglePhotoViewController::handleSwipe);
    m_imageContainerView->addGestureRecognizer(swipe);
    m_imageContainerView->setArea(photoArea());
    showCurrentAsset();
}

void YMSSinglePhotoViewController::viewDidDisappear(bool animated)
{
    UIViewController::viewDidDisappear(animated);
    stopRequests();
}

std::shared_ptr<UIView> YMSSinglePhotoViewController::canvasView()
{
    view();
    return m_imageContainerView;
}

void YMSSinglePhotoViewController::placeViews(double width, double height, double top, double bottom)
{
    view();
    m_topInset = top;
    m_bottomInset = bottom;
    m_imageContainerView->setFrame({0, 0, width, height});
    m_imageContainerView->setArea(photoArea());
    emit statusBarAppearanceChanged();
}

/// Between the bars, or all there is without them.
CGRect YMSSinglePhotoViewController::photoArea() const
{
    const CGSize size = m_imageContainerView->bounds().size;
    if (m_presentationStyle == PresentationStyle::FullPicture)
        return {{}, size};
    return {0, m_topInset, size.width, std::max(0.0, size.height - m_topInset - m_bottomInset)};
}

void YMSSinglePhotoViewController::switchPresentationStyle()
{
    const bool bars = m_presentationStyle == PresentationStyle::FullPicture;
    m_presentationStyle = bars ? PresentationStyle::Bars : PresentationStyle::FullPicture;
    animate(kStyleFade, 0, {}, [&] {
        m_barAlpha = bars ? 1 : 0;
        m_whiteAlpha = bars ? 1 : 0;
    });
    view();
    m_imageContainerView->setArea(photoArea(), kStyleFade);
    emit presentationStyleChanged();
    emit statusBarAppearanceChanged();
}

bool YMSSinglePhotoViewController::prefersStatusBarHidden() const
{
    const double height = isViewLoaded() ? m_imageContainerView->bounds().size.height : windowSize().height;
    return m_presentationStyle == PresentationStyle::FullPicture || height < kRegularHeight;
}

void YMSSinglePhotoViewController::cancel()
{
    leave(false);
}

void YMSSinglePhotoViewController::selectCurrentPhoto()
{
    if (m_state.addAllowed)
        leave(true);
}

void YMSSinglePhotoViewController::leave(bool selected)
{
    if (std::exchange(m_leaving, true))
        return;
    const auto self = shared_from_this();
    if (m_dismissalHandler)
        m_dismissalHandler(selected);
    dismiss(true);
}

void YMSSinglePhotoViewController::showNeighbour(int step)
{
    const std::size_t last = m_album.isEmpty() ? 0 : m_album.count() - 1;
    const std::size_t way = static_cast<std::size_t>(std::abs(step));
    const std::size_t index = step < 0 ? m_index - std::min(m_index, way) : std::min(last, m_index + way);
    if (m_leaving || index == m_index || index > last)
        return;
    view();
    m_index = index;
    m_currentAsset = m_album.objectAtIndex(index);
    showCurrentAsset();
    const double side = m_imageContainerView->bounds().size.width / 4;
    m_imageContainerView->comeFrom(step < 0 ? -side : side, 0, kSlide);
}

/// The former one is let go before the next is asked for: two large ones would be too much.
void YMSSinglePhotoViewController::showCurrentAsset()
{
    if (const auto manager = m_imageManager.lock())
        manager->cancelImageRequest(std::exchange(m_request, PHInvalidImageRequestID));
    m_state = m_stateOfPhoto ? m_stateOfPhoto(m_currentAsset) : SinglePhotoState();
    rightBarButtonItem()->setEnabled(m_state.addAllowed);
    m_failure.clear();
    m_imageContainerView->showPhoto({});
    m_picture = Picture::Waiting;
    if (const auto kept = m_thumbnails.find(m_currentAsset.localIdentifier);
        kept != m_thumbnails.end() && kept->second.image)
        takePicture(kept->second.image);
    emit currentAssetChanged();
    emit pictureChanged();
    requestPicture();
    keepThumbnails();
}

/// The scale counts twice: there is as much to be seen from near.
CGSize YMSSinglePhotoViewController::targetSize() const
{
    const double scale = UIScreen::main().scale;
    const CGSize window = windowSize();
    return {scale * scale * window.width, scale * scale * std::max(1.0, window.height - kNavigationBarHeight)};
}

void YMSSinglePhotoViewController::requestPicture()
{
    const auto manager = m_imageManager.lock();
    if (!manager)
        return;
    m_request = manager->requestImageForAsset(
        m_currentAsset, targetSize(), PHImageContentMode::AspectFit, {},
        [weak = weak_from_this(), identifier = m_currentAsset.localIdentifier](const UIImage& result) {
            const auto self = std::static_pointer_cast<YMSSinglePhotoViewController>(weak.lock());
            if (self && self->m_currentAsset.localIdentifier == identifier)
                self->takePicture(result);
        });
}

void YMSSinglePhotoViewController::takePicture(const UIImage& picture)
{
    // A thumbnail may have been cut to other proportions than its photo's.
    const CGSize pixels = picture.size();
    const bool coarse = std::max(pixels.width, pixels.height) <= kThumbnailSide;
    const CGSize known{static_cast<double>(m_currentAsset.pixelWidth), static_cast<double>(m_currentAsset.pixelHeight)};
    m_imageContainerView->improvePhoto(picture, coarse ? known : pixels);
    m_picture = picture ? Picture::Shown : Picture::Unreadable;
    emit pictureChanged();
    if (!picture)
        findFailure();
}

/// Managers don't tell why; reading it once more, as a thumbnail, does.
void YMSSinglePhotoViewController::findFailure()
{
    AssetPictureRequest request{m_currentAsset, {1, 1}};
    runShortPictureWork([weak = weak_from_this(), request = std::move(request),
                         expected = DispatchQueue::main().expectWork()]() mutable {
        std::string damage; // isn't why there is no picture
        const Result<UIImage> picture = loadAssetPicture(request, nullptr, &damage);
        DispatchQueue::main().async([weak = std::move(weak), request = std::move(request),
                                     cause = picture ? std::string(cause::kNoMemory) : picture.error().cause] {
            const auto self = std::static_pointer_cast<YMSSinglePhotoViewController>(weak.lock());
            if (!self || !(self->m_currentAsset == request.asset) || !self->isUnreadable())
                return;
            self->m_failure = QString::fromStdString(failureText({self->photoName().toStdString(), cause}));
            emit self->pictureChanged();
        });
    });
}

/// Those of the two neighbours alone.
void YMSSinglePhotoViewController::keepThumbnails()
{
    std::vector<std::size_t> near;
    if (m_index > 0 && m_index < m_album.count())
        near.push_back(m_index - 1);
    if (m_index + 1 < m_album.count())
        near.push_back(m_index + 1);
    std::erase_if(m_thumbnails, [&](const auto& kept) {
        const bool stays = std::ranges::any_of(
            near, [&](std::size_t index) { return m_album.objectAtIndex(index).localIdentifier == kept.first; });
        const auto manager = m_imageManager.lock();
        if (!stays && manager)
            manager->cancelImageRequest(kept.second.request);
        return !stays;
    });
    std::ranges::for_each(near, [this](std::size_t index) { keepThumbnail(index); });
}

void YMSSinglePhotoViewController::keepThumbnail(std::size_t index)
{
    const PHAsset asset = m_album.objectAtIndex(index);
    const auto manager = m_imageManager.lock();
    if (!manager || m_thumbnails.contains(asset.localIdentifier))
        return;
    m_thumbnails[asset.localIdentifier].request = manager->requestImageForAsset(
        asset, {kThumbnailSide, kThumbnailSide}, PHImageContentMode::AspectFit, {},
        [weak = weak_from_this(), identifier = asset.localIdentifier](const UIImage& result) {
            const auto self = std::static_pointer_cast<YMSSinglePhotoViewController>(weak.lock());
            if (!self)
                return;
            if (const auto kept = self->m_thumbnails.find(identifier); kept != self->m_thumbnails.end())
                kept->second.image = result;
        });
}

void YMSSinglePhotoViewController::stopRequests()
{
    const auto manager = m_imageManager.lock();
    if (!manager)
        return;
    manager->cancelImageRequest(std::exchange(m_request, PHInvalidImageRequestID));
    for (auto& [identifier, kept] : m_thumbnails)
        manager->cancelImageRequest(std::exchange(kept.request, PHInvalidImageRequestID));
}

double YMSSinglePhotoViewController::zoomScale() const
{
    return m_imageContainerView ? m_imageContainerView->zoomScale() : 1;
}

void YMSSinglePhotoViewController::zoomBy(double factor)
{
    if (m_imageContainerView)
        m_imageContainerView->zoomBy(factor);
}

void YMSSinglePhotoViewController::toggleZoom(double x, double y)
{
    if (m_imageContainerView)
        m_imageContainerView->toggleZoom({x, y});
}

void YMSSinglePhotoViewController::nudge(double dx, double dy)
{
    if (m_imageContainerView)
        m_imageContainerView->nudge({dx, dy});
}

void YMSSinglePhotoViewController::zoomEnded(double scale)
{
    if (scale <= 1 && m_presentationStyle == PresentationStyle::FullPicture)
        switchPresentationStyle();
}

/// A photo that is seen from near is dragged about instead.
bool YMSSinglePhotoViewController::gestureRecognizerShouldBegin(UIGestureRecognizer&)
{
    return zoomScale() <= 1 && hasNeighbours();
}

/// The photo's own recognisers have nothing to move then.
bool YMSSinglePhotoViewController::gestureRecognizer(UIGestureRecognizer&, UIGestureRecognizer& other)
{
    return other.view() == &m_imageContainerView->scrollView();
}

void YMSSinglePhotoViewController::handleSwipe(UIPanGestureRecognizer& swipe)
{
    const double x = swipe.translationInView(nullptr).x;
    const int step = x < 0 ? 1 : -1;
    const bool wanted = zoomScale() <= 1;
    const bool possible = step < 0 ? m_index > 0 : m_index + 1 < m_album.count();
    const double pulled = possible ? x : x / kSwipeResistance;
    if (swipe.isActive())
        m_imageContainerView->setAside(wanted ? pulled : 0);
    else if (wanted && possible && std::abs(x) >= kSwipeLeast && swipe.state() == UIGestureRecognizerState::Ended)
        showNeighbour(step);
    else if (wanted)
        m_imageContainerView->comeFrom(pulled, 1, kSlide);
}

QVariantMap YMSSinglePhotoViewController::theme() const
{
    return themeValues(YMSPhotoPickerTheme::sharedInstance());
}

QString YMSSinglePhotoViewController::photoName() const
{
    return shownFileName(m_currentAsset);
}

QString YMSSinglePhotoViewController::photoFacts() const
{
    QString size;
    if (m_currentAsset.pixelWidth > 0 && m_currentAsset.pixelHeight > 0)
        size = QStringLiteral("%1 × %2").arg(m_currentAsset.pixelWidth).arg(m_currentAsset.pixelHeight);
    const QString day = m_currentAsset.creationDate == 0 ? QString() : dayText(m_currentAsset.creationDate);
    return size + (size.isEmpty() || day.isEmpty() ? QString() : QStringLiteral(", ")) + day;
}

} // namespace lamina
