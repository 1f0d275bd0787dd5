#pragma once

#include "picker/PhotoZoomView.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHFetchResult.h"
#include "platform/photos/PHImageManager.h"
#include "platform/view/AnimatedProperty.h"
#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UIImageView.h"
#include "platform/view/UIPanGestureRecognizer.h"
#include "platform/view/UITapGestureRecognizer.h"
#include "platform/view/UIViewController.h"

#include <QString>
#include <QVariantMap>

#include <cstddef>
#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace lamina {

/// What the picker knows of a photo that is looked at.
struct SinglePhotoState {
    QString numberText;     ///< the number that it has or would have, "2 of 3"; empty: nothing is counted
    bool addAllowed = true; ///< whether it can be chosen now
};

/// One photo of the picker, large: to be looked at from near, and to be added. From there one goes on to its neighbours
/// in the album. It holds one large picture at a time. Main thread.
class YMSSinglePhotoViewController : public UIViewController, public UIGestureRecognizerDelegate {
    Q_OBJECT
    /// See themeValues.
    Q_PROPERTY(QVariantMap theme READ theme CONSTANT FINAL)
    Q_PROPERTY(PresentationStyle presentationStyle READ presentationStyle NOTIFY presentationStyleChanged FINAL)
    Q_PROPERTY(bool prefersStatusBarHidden READ prefersStatusBarHidden NOTIFY statusBarAppearanceChanged FINAL)
    /// Of the bars, 1 or 0, and of the white behind the photo, which lies on black: `AnimatedProperty`s.
    Q_PROPERTY(QObject* barAlpha READ barAlphaObject CONSTANT FINAL)
    Q_PROPERTY(QObject* whiteAlpha READ whiteAlphaObject CONSTANT FINAL)
    Q_PROPERTY(QString numberText READ numberText NOTIFY currentAssetChanged FINAL)
    /// The name of the file.
    Q_PROPERTY(QString photoName READ photoName NOTIFY currentAssetChanged FINAL)
    /// "1500 × 2000, 14 November 2026".
    Q_PROPERTY(QString photoFacts READ photoFacts NOTIFY currentAssetChanged FINAL)
    /// Whether there are photos to go on to.
    Q_PROPERTY(bool hasNeighbours READ hasNeighbours NOTIFY currentAssetChanged FINAL)
    /// Nothing of the photo is there to be seen yet.
    Q_PROPERTY(bool waiting READ isWaiting NOTIFY pictureChanged FINAL)
    /// The photo can't be read,
    Q_PROPERTY(bool unreadable READ isUnreadable NOTIFY pictureChanged FINAL)
    /// and why, as soon as that is known.
    Q_PROPERTY(QString failure READ failure NOTIFY pictureChanged FINAL)
    Q_PROPERTY(double zoomScale READ zoomScale NOTIFY zoomScaleChanged FINAL)

public:
    /// Hears on leaving whether the photo is to be chosen; `currentAsset` tells which one.
    using DismissalHandler = std::function<void(bool selected)>;
    using StateOfPhoto = std::function<SinglePhotoState(const PHAsset& asset)>;

    /// What stands round the photo. The values are those that are told to layouts.
    enum class PresentationStyle {
        Bars = 0,        ///< with bars, on white
        FullPicture = 1, ///< the photo alone, on black
    };
    Q_ENUM(PresentationStyle)

    /// Below this height of the window the system's bar is left out, points.
    static constexpr double kRegularHeight = 480;

    /// `imageManager` is the picker's; without one no picture comes. `dismissalHandler` may be empty, and is called
    /// once.
    YMSSinglePhotoViewController(PHAsset photoAsset, std::weak_ptr<PHImageManager> imageManager,
                                 DismissalHandler dismissalHandler);
    /// Cancels what is under way.
    ~YMSSinglePhotoViewController() override;

    /// The album that the photo stands in, and where. By default it has no neighbours. To be set before the view loads,
    /// as the next one.
    void setNeighbours(PHFetchResult album, std::size_t index);
    /// What to say of each photo that is shown, asked as it comes into sight. By default it can be added, and nothing
    /// is counted.
    void setStateOfPhoto(StateOfPhoto stateOfPhoto);

    /// The photo on show: the one given, or a neighbour that the user has gone on to.
    const PHAsset& currentAsset() const { return m_currentAsset; }

    void viewDidLoad() override;
    void viewDidDisappear(bool animated) override;
    std::shared_ptr<UIView> canvasView() override;
    /// Takes taps, and holds what is zoomed.
    PhotoZoomView& imageContainerView() const { return *m_imageContainerView; }
    UIImageView& photoImageView() const { return m_imageContainerView->photoImageView(); }

    /// The window has these sides, and its bars take so much of it at the top and at the foot. By default the view's
    /// size, and a bar at the top.
    Q_INVOKABLE void placeViews(double width, double height, double top, double bottom);

    PresentationStyle presentationStyle() const { return m_presentationStyle; }
    /// From one style to the other, in 0.15 s.
    Q_INVOKABLE void switchPresentationStyle();
    /// In the full picture, and wherever the window is low.
    bool prefersStatusBarHidden() const;

    /// The bar's left button: leaves without the photo.
    Q_INVOKABLE void cancel();
    /// The right one (`rightBarButtonItem`): leaves with it; nothing when it can't be added.
    Q_INVOKABLE void selectCurrentPhoto();
    /// Goes on to the photo that stands `step` further in the album, 1 the next one; stops at its ends.
    Q_INVOKABLE void showNeighbour(int step);

    /// From 1, where all of the photo is seen.
    double zoomScale() const;
    /// About the middle, as keys do; as a pinch, it ends with this.
    Q_INVOKABLE void zoomBy(double factor);
    /// A double tap there, in the canvas's points.
    Q_INVOKABLE void toggleZoom(double x, double y);
    /// Moves the photo by points while it is zoomed.
    Q_INVOKABLE void nudge(double dx, double dy);

    /// As it is now.
    QVariantMap theme() const;
    const Animated<double>& barAlpha() const { return m_barAlpha; }
    QObject* barAlphaObject() { return &m_barAlpha; }
    QObject* whiteAlphaObject() { return &m_whiteAlpha; }
    QString numberText() const { return m_state.numberText; }
    /// On one line.
    QString photoName() const;
    /// What is known of size and day; empty: nothing.
    QString photoFacts() const;
    /// Whether its album holds others.
    bool hasNeighbours() const { return m_album.count() > 1; }
    bool isWaiting() const { return m_picture == Picture::Waiting; }
    bool isUnreadable() const { return m_picture == Picture::Unreadable; }
    QString failure() const { return m_failure; }

    bool gestureRecognizerShouldBegin(UIGestureRecognizer& recognizer) override;
    bool gestureRecognizer(UIGestureRecognizer& recognizer, UIGestureRecognizer& other) override;

signals:
    void presentationStyleChanged();
    void statusBarAppearanceChanged();
    void currentAssetChanged();
    void pictureChanged();
    void zoomScaleChanged();

private:
    enum class Picture { Waiting, Shown, Unreadable };

    CGRect photoArea() const;
    void showCurrentAsset();
    void requestPicture();
    CGSize targetSize() const;
    void takePicture(const UIImage& picture);
    void findFailure();
    void keepThumbnails();
    void keepThumbnail(std::size_t index);
    void handleSwipe(UIPanGestureRecognizer& swipe);
    void zoomEnded(double scale);
    void leave(bool selected);
    void stopRequests();

    PHAsset m_currentAsset;
    std::weak_ptr<PHImageManager> m_imageManager;
    DismissalHandler m_dismissalHandler;
    PHFetchResult m_album;
    std::size_t m_index = 0;
    StateOfPhoto m_stateOfPhoto;
    SinglePhotoState m_state;

    std::shared_ptr<PhotoZoomView> m_imageContainerView;
    double m_topInset = 0;
    double m_bottomInset = 0;
    PresentationStyle m_presentationStyle = PresentationStyle::Bars;
    Animated<double> m_barAlpha{1};
    Animated<double> m_whiteAlpha{1};

    PHImageRequestID m_request = PHInvalidImageRequestID;
    Picture m_picture = Picture::Waiting;
    QString m_failure;
    /// Of the neighbours, by their identifiers.
    struct Thumbnail {
        UIImage image;
        PHImageRequestID request = PHInvalidImageRequestID;
    };
    std::map<std::string, Thumbnail> m_thumbnails;
    bool m_leaving = false;
};

} // namespace lamina
