#pragma once

#include "picker/PhotoGridCell.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/DispatchTimer.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHImageManager.h"
#include "platform/view/AnimatedProperty.h"

#include <QObject>
#include <QString>
#include <QVariant>

#include <cstdint>
#include <memory>
#include <string>

namespace lamina {

/// A photo's tile. Its picture comes when the image manager has it, and is cleared when the tile shows another photo;
/// an answer for the one before is dropped.
///
/// A frame and a number (the veil) mark a chosen photo. They fade in and out where the user causes it, which is
/// announced by `setNeedsAnimateSelection` for one change, and stand at once where marks are restored. Main thread.
class YMSPhotoCell : public PhotoGridCell {
    Q_OBJECT
    Q_PROPERTY(QVariant thumbnailImage READ thumbnailVariant NOTIFY thumbnailImageChanged FINAL)
    Q_PROPERTY(bool unreadable READ isUnreadable NOTIFY thumbnailImageChanged FINAL)
    Q_PROPERTY(QString representedAssetIdentifier READ identifierText NOTIFY representedAssetChanged FINAL)
    Q_PROPERTY(int selectionOrder READ selectionOrder NOTIFY selectionOrderChanged FINAL)
    Q_PROPERTY(double veilAlpha READ veilAlphaValue NOTIFY veilAlphaChanged FINAL)
    Q_PROPERTY(QObject* veilMotion READ veilMotion CONSTANT FINAL)
    Q_PROPERTY(double pressScale READ pressScaleValue NOTIFY pressScaleChanged FINAL)
    Q_PROPERTY(QObject* pressMotion READ pressMotion CONSTANT FINAL)

public:
    YMSPhotoCell();
    /// Cancels the request.
    ~YMSPhotoCell() override;

    /// Empty until the first answer.
    const UIImage& thumbnailImage() const { return m_thumbnailImage; }
    /// The same for views.
    QVariant thumbnailVariant() const;
    /// The answer was no picture: the file can't be read.
    bool isUnreadable() const { return m_unreadable; }

    /// Of the photo that it shows; empty: none.
    const std::string& representedAssetIdentifier() const { return m_representedAsset.localIdentifier; }
    QString identifierText() const { return QString::fromStdString(representedAssetIdentifier()); }
    /// Whether it shows this photo as its file is now.
    bool represents(const PHAsset& asset) const;
    /// To be set before the photo's picture is asked for.
    void setRepresentedAsset(const PHAsset& asset);

    /// Asks for the asset's picture, so that it covers `targetSize` (pixels). The manager must outlive the request or
    /// be gone.
    void loadPhotoWithManager(const std::shared_ptr<PHImageManager>& manager, const PHAsset& asset, CGSize targetSize);
    /// That of the last request.
    CGSize targetSize() const { return m_targetSize; }
    /// The pixels that its view has for a side of the picture; 0, the default: not known. Of pictures that are much
    /// larger only the square in the middle is kept, at that size.
    int shownSide() const { return m_shownSide; }
    void setShownSide(int pixels) { m_shownSide = pixels; }
    /// Nothing where none is under way.
    void cancelImageRequest();
    /// `PHInvalidImageRequestID`: none.
    PHImageRequestID imageRequestID() const { return m_imageRequestID; }
    /// Shows what another tile of the same photo shows, until its own answer comes.
    void borrowThumbnail(const YMSPhotoCell& other);

    /// The number that a chosen photo shows, from 1.
    int selectionOrder() const { return m_selectionOrder; }
    void setSelectionOrder(int selectionOrder);

    /// The next change of the selection is to be seen moving.
    void setNeedsAnimateSelection() { m_animateSelection = true; }
    void setSelected(bool selected) override;
    /// The mark fades to its state in 0.2 s, or has it at once.
    void setSelected(bool selected, bool animated);
    /// Whether the mark is seen at all, while it comes and goes too.
    bool enableSelectionIndicatorViewVisibility() const { return m_enableSelectionIndicatorViewVisibility; }

    /// The tile yields to a finger (to 0.9 of its size in 0.15 s) and springs back when it is lifted.
    void animateHighlight(bool highlighted);

    /// Its view is gone: it rests with what it shows.
    void endDisplaying();
    void prepareForReuse() override;

    /// Of frame and number: 0 or 1, an `Animated<double>` for views.
    const Animated<double>& veilAlpha() const { return m_veilAlpha; }
    const Animated<double>& pressScale() const { return m_pressScale; }
    double veilAlphaValue() const { return m_veilAlpha.value(); }
    double pressScaleValue() const { return m_pressScale.value(); }
    QObject* veilMotion() { return &m_veilAlpha; }
    QObject* pressMotion() { return &m_pressScale; }

signals:
    void thumbnailImageChanged();
    void representedAssetChanged();
    void selectionOrderChanged();
    void veilAlphaChanged();
    void pressScaleChanged();

private:
    void show(const UIImage& picture, bool unreadable);
    void release();

    PHAsset m_representedAsset;
    CGSize m_targetSize;
    int m_shownSide = 0;
    std::weak_ptr<PHImageManager> m_imageManager;
    PHImageRequestID m_imageRequestID = PHInvalidImageRequestID;
    UIImage m_thumbnailImage;
    bool m_unreadable = false;
    int m_selectionOrder = 0;
    bool m_animateSelection = false;
    bool m_animateHighlight = false;
    bool m_enableSelectionIndicatorViewVisibility = false;
    Animated<double> m_veilAlpha{0};
    Animated<double> m_pressScale{1};
    DispatchTimer m_release; ///< while a press is to be seen to its end
};

} // namespace lamina
