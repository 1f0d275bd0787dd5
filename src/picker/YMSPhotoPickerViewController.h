#pragma once

#include "picker/CollectionItem.h"
#include "picker/NavigationBarHiding.h"
#include "picker/PhotoGrid.h"
#include "picker/PhotoGridMeasures.h"
#include "picker/YMSPhotoPickerTheme.h"
#include "picker/YMSPhotoPickerViewControllerDelegate.h"
#include "platform/base/DispatchTimer.h"
#include "platform/base/MainObserver.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHCachingImageManager.h"
#include "platform/photos/PHChange.h"
#include "platform/photos/PHImageManager.h"
#include "platform/view/PhotoReceiver.h"
#include "platform/view/UIImagePickerController.h"
#include "platform/view/UIViewController.h"

#include <QAbstractItemModel>
#include <QObject>
#include <QString>
#include <QVariantMap>

#include <cstddef>
#include <memory>
#include <optional>
#include <string>
#include <vector>

namespace lamina {

class AVCaptureSession;
class YMSCameraCell;
class YMSPhotoCell;
struct PhotoArrivals;
struct SinglePhotoState;

/// The screen on which photos of the library are chosen: the pictures of one album as a grid whose first tile is the
/// camera. Presented by `yms_presentCustomAlbumPhotoView`. Main thread only.
///
/// With one photo to choose a tap finishes; with more the user collects photos, in an order that is shown, across
/// albums, and finishes with the done button. The limit is a silent one: taps beyond it do nothing. Which of the two it
/// is, is settled when the screen loads.
///
/// It is in one file a subject: loading and finishing under its own name, then `PhotoPickerAlbums`, `PhotoPickerGrid`
/// (tiles, measures, the bar), `PhotoPickerSelection`, `PhotoPickerChanges` (of the library), `PhotoPickerCamera`,
/// `PhotoPickerArrivals` (photos from outside).
class YMSPhotoPickerViewController : public UIViewController,
                                     public UIImagePickerControllerDelegate,
                                     public PHPhotoLibraryChangeObserver,
                                     public PhotoReceiver,
                                     private PhotoGridDelegate {
    Q_OBJECT
    /// The grid's items, a `PhotoGridModel`.
    Q_PROPERTY(QAbstractItemModel* photos READ photosModel CONSTANT FINAL)
    Q_PROPERTY(QVariantMap theme READ themeMap CONSTANT FINAL)
    Q_PROPERTY(QString albumTitle READ albumTitle NOTIFY albumChanged FINAL)
    Q_PROPERTY(QString albumIdentifier READ albumIdentifier NOTIFY albumChanged FINAL)
    Q_PROPERTY(bool multiple READ allowsMultipleSelection CONSTANT FINAL)
    Q_PROPERTY(int limit READ limit CONSTANT FINAL)
    Q_PROPERTY(int selectedCount READ selectedCount NOTIFY selectionChanged FINAL)
    Q_PROPERTY(QString selectionText READ selectionText NOTIFY selectionChanged FINAL)
    Q_PROPERTY(double cellSide READ cellSide NOTIFY gridChanged FINAL)
    Q_PROPERTY(int columns READ columns NOTIFY gridChanged FINAL)
    Q_PROPERTY(double barOffset READ barOffset NOTIFY barOffsetChanged FINAL)
    Q_PROPERTY(double barAlpha READ barAlpha NOTIFY barAlphaChanged FINAL)
    Q_PROPERTY(QObject* barOffsetMotion READ barOffsetMotion CONSTANT FINAL)
    Q_PROPERTY(QObject* barAlphaMotion READ barAlphaMotion CONSTANT FINAL)
    Q_PROPERTY(LibraryState libraryState READ libraryState NOTIFY libraryStateChanged FINAL)
    Q_PROPERTY(bool showsFolders READ showsFolders CONSTANT FINAL)
    Q_PROPERTY(QString emptyLine READ emptyLine NOTIFY libraryStateChanged FINAL)

public:
    /// What there is to choose from.
    enum LibraryState {
        Loading, ///< no photo yet; the folders are still being read
        Empty,   ///< none at all
        Filled,
        Hidden, ///< the system shows the application no folders: photos come through its own chooser
    };
    Q_ENUM(LibraryState)

    YMSPhotoPickerViewController();
    ~YMSPhotoPickerViewController() override;

    /// Default none.
    std::shared_ptr<YMSPhotoPickerViewControllerDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(std::weak_ptr<YMSPhotoPickerViewControllerDelegate> delegate) { m_delegate = std::move(delegate); }

    /// The most photos that can be chosen; 0: any number. Set before it loads.
    unsigned numberOfPhotoToSelect = 1;
    /// With one photo to choose: whether the delegate gets its picture, at full size, or the asset as with several.
    bool shouldReturnImageForSingleSelection = true;

    bool allowsMultipleSelection() const { return numberOfPhotoToSelect != 1; }
    /// `numberOfPhotoToSelect` for views.
    int limit() const { return static_cast<int>(numberOfPhotoToSelect); }

    /// The one that all pickers share.
    YMSPhotoPickerTheme& theme() const { return YMSPhotoPickerTheme::sharedInstance(); }
    /// It as it was when this picker loaded (see `themeValues`).
    QVariantMap themeMap() const { return m_themeValues; }
    int preferredStatusBarStyle() const { return theme().statusBarStyle; }

    void viewDidLoad() override;
    void viewWillAppear(bool animated) override;
    void viewWillDisappear(bool animated) override;

    /// The cancel button: the delegate hears of it, or the picker dismisses itself.
    Q_INVOKABLE void cancelPicking();
    /// The done button: the delegate gets the chosen photos; without its call as above. Nothing while none is chosen.
    Q_INVOKABLE void finishPickingPhotos();
    /// The done button, only with several photos to choose; enabled while any is chosen.
    const std::shared_ptr<UIBarButtonItem>& doneItem() const { return rightBarButtonItem(); }

    // Albums.

    /// Those that hold pictures: the user's library first, then folders, then the other smart albums.
    const std::vector<CollectionItem>& collectionItems() const { return m_collectionItems; }
    /// The album on show; nothing when there are no pictures at all.
    const std::optional<CollectionItem>& currentCollectionItem() const { return m_currentCollectionItem; }
    /// Of the album on show, in the user's language; empty without one.
    QString albumTitle() const;
    /// What it is told from others by: titles may be the same. Empty without one.
    QString albumIdentifier() const;
    /// Shows an album; the chosen photos stay chosen.
    void updateViewWithCollectionItem(const std::optional<CollectionItem>& item);
    /// Opens the list of albums.
    Q_INVOKABLE void presentAlbumPickerView();

    // The grid. Item 0 is the camera, item i the photo i - 1 of the album on show.

    /// A `PhotoGridModel`.
    QAbstractItemModel* photosModel() { return &m_grid.model(); }
    /// A tile (`YMSPhotoCell`, `YMSCameraCell`) for a view that is to show the item; null where there is none. The
    /// picker keeps it and gives it to nobody else until `endDisplaying`.
    Q_INVOKABLE QObject* cellForItem(int item) { return m_grid.displayItem(item); }
    Q_INVOKABLE void endDisplaying(QObject* cell) { m_grid.endDisplaying(cell); }
    /// A tap on a tile: chooses the photo or takes the choice back, or opens the camera.
    Q_INVOKABLE void tapItem(int item) { m_grid.tapItem(item); }
    /// A finger went down on a tile, and left it.
    Q_INVOKABLE void highlightItem(int item) { animateHighlight(item, true); }
    Q_INVOKABLE void unhighlightItem(int item) { animateHighlight(item, false); }
    /// A long press on a tile: shows its photo large. Nothing on the camera.
    Q_INVOKABLE void presentSinglePhoto(int item);
    /// For those who hear the screen: "Photo, 14 November 2026, chosen, number 2".
    Q_INVOKABLE QString itemDescription(int item) const;
    /// The day of the item's photo, "14 November 2026"; empty: it is none.
    Q_INVOKABLE QString dayOfItem(int item) const;
    /// Where the photo of that identifier stands; -1: not in the album on show.
    Q_INVOKABLE int itemOfPhoto(const QString& identifier) const;

    /// The layout's view and margins, in points; the tiles follow. `displayScale`: pixels per point that the window
    /// really has, of which there may be fewer than pictures are made for; 0: not known.
    Q_INVOKABLE void placeGrid(double width, double height, double spacing, double left, double right,
                               double displayScale = 0);
    /// Of the tiles as the view is now; 0 before `placeGrid`.
    double cellSide() const { return m_measures.cellSide; }
    int columns() const { return m_measures.columns; }

    /// The content has been scrolled to `y` (0: its top), by whatever means; points.
    Q_INVOKABLE void scrollViewDidScroll(double y, double viewHeight, double contentHeight);
    /// The finger was lifted.
    Q_INVOKABLE void scrollViewDidEndDragging(bool willDecelerate);
    /// The content rests after a step of a wheel or a key.
    Q_INVOKABLE void scrollViewDidComeToRest();
    /// How far the bar has gone up, 0 to -44 points, and how much of it is seen.
    double barOffset() const { return m_bar.topConstraint().value(); }
    double barAlpha() const { return m_bar.alpha().value(); }
    QObject* barOffsetMotion() { return &m_bar.topConstraint(); }
    QObject* barAlphaMotion() { return &m_bar.alpha(); }

    // The selection.

    /// In the order of choice.
    const std::vector<PHAsset>& selectedPhotos() const { return m_selectedPhotos; }
    int selectedCount() const { return static_cast<int>(m_selectedPhotos.size()); }
    /// "2 of 3", or "2 chosen" where there is no limit; empty with one photo to choose.
    QString selectionText() const;
    /// Whether there is room for one more.
    bool canAddPhoto() const;
    /// Of the grid, the camera among them.
    const std::set<int>& indexPathsForSelectedItems() const { return m_grid.indexPathsForSelectedItems(); }

    /// Of the library.
    void photoLibraryDidChange(const PHChange& changeInstance) override;

    // The camera.

    void imagePickerControllerDidCancel(UIImagePickerController& picker) override;
    void imagePickerController(UIImagePickerController& picker,
                               const UIImagePickerInfo& didFinishPickingMediaWithInfo) override;
    /// Of the camera's tile; null: there is none.
    std::shared_ptr<AVCaptureSession> session() const { return m_session.lock(); }

    // Photos from outside.

    bool wantsPhotos() const override;
    /// Takes them into the library and chooses them, as taps would; `notice` tells of those for which there is no room
    /// and of what can't be taken.
    void receivePhotos(std::vector<PhotoSource> photos) override;
    /// Opens the system's chooser for a photo, which is then received.
    Q_INVOKABLE void chooseFiles();

    LibraryState libraryState() const { return m_libraryState; }
    /// False: `chooseFiles` is the way to photos, also to more of them.
    bool showsFolders() const;
    /// Where photos are expected, in the user's language.
    QString emptyLine() const;

signals:
    void albumChanged();
    void selectionChanged();
    void gridChanged();
    void barOffsetChanged();
    void barAlphaChanged();
    void libraryStateChanged();
    /// A short text for the user, already in their language.
    void notice(const QString& text);

private:
    class FileChoice;

    template <class Self = YMSPhotoPickerViewController>
    std::shared_ptr<Self> sharedSelf()
    {
        return std::static_pointer_cast<Self>(shared_from_this());
    }
    std::weak_ptr<YMSPhotoPickerViewController> weakSelf() { return sharedSelf(); }

    void fetchCollections();
    void refreshCollections();
    void albumChosen(const CollectionItem& item);

    void prepareCameraCell(YMSCameraCell& cell) override;
    void preparePhotoCell(YMSPhotoCell& cell, int item) override;
    void refreshPhotoCell(YMSPhotoCell& cell, int item) override;
    PHAsset assetOfItem(int item) const override;
    std::optional<int> itemOfAsset(const PHAsset& asset) const;
    CGSize thumbnailSize() const;
    int shownSide() const;
    void loadThumbnail(YMSPhotoCell& cell, const PHAsset& asset);
    void animateHighlight(int item, bool highlighted);

    bool shouldSelectItem(int item) override;
    void didSelectItem(int item) override;
    bool shouldDeselectItem(int item) override;
    void didDeselectItem(int item) override;
    SinglePhotoState stateOfPhoto(const PHAsset& asset) const;
    QString countText(std::size_t number) const;
    std::optional<std::size_t> selectionIndexOf(const PHAsset& asset) const;
    void choose(const PHAsset& asset);
    void chooseByHand(const PHAsset& asset);
    void addToSelection(const PHAsset& asset);
    void removeFromSelection(const PHAsset& asset);
    void tellSelection();
    void refreshPhotoSelection();

    void requestFullImage(const PHAsset& asset);
    void cancelFullImage();
    void giveUpFullImage();
    void fullImageArrived(const PHAsset& asset, const UIImage& image);
    void findFailure(const PHAsset& asset);
    void tellFailure(const Error& error);
    void deliver(const UIImage& image);

    void showChanges(const PHFetchResultChangeDetails& details);
    void followOtherAlbums();
    void selectPhotoJustTaken(const std::optional<PHAsset>& newest);
    void renewSelectedPhotos();
    void catchUpWithLibrary();
    void refreshTiles(const CollectionItem& item);

    YMSCameraCell* cameraTile() const;
    void startSession();
    void pauseCamera();
    void camerasChanged();
    void reloadCameraUnlessRunning();
    void savePhoto(const UIImage& image);
    void photoSaved(const UIImage& image, const std::string& identifier, const Outcome& outcome);

    void photosArrived(const PhotoArrivals& arrivals);
    void updateLibraryState();

    std::weak_ptr<YMSPhotoPickerViewControllerDelegate> m_delegate;
    std::shared_ptr<PHCachingImageManager> m_imageManager;
    QVariantMap m_themeValues;

    std::vector<CollectionItem> m_collectionItems;
    bool m_collectionsAreOld = false; ///< the library has changed since they were fetched
    std::optional<CollectionItem> m_currentCollectionItem;
    PhotoGrid m_grid{*this};
    NavigationBarHiding m_bar;
    PhotoGridPlace m_place;
    PhotoGridMeasures m_measures;
    double m_displayScale = 0;

    std::vector<PHAsset> m_selectedPhotos;
    PHImageRequestID m_fullImageRequest = PHInvalidImageRequestID;
    bool m_isReadingFullImage = false;
    unsigned m_fullImageCount = 0; ///< of choices for the full picture, and their ends
    bool m_hasLeft = false;        ///< its delegate has what was chosen and has dismissed it

    std::weak_ptr<AVCaptureSession> m_session;
    bool m_takesPhoto = false; ///< the camera's screen is over this one
    MainObserver m_camerasObserver;
    bool m_needToSelectFirstPhoto = false;
    std::string m_takenPhoto; ///< identifier of the photo that was saved last

    LibraryState m_libraryState = Loading;
    DispatchTimer m_loadingTimer;
    std::shared_ptr<FileChoice> m_fileChoice;
};

} // namespace lamina
