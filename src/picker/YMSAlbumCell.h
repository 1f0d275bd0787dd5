#pragma once

#include "platform/image/pixels/UIImage.h"

#include <QObject>
#include <QString>
#include <QVariant>

#include <cstddef>
#include <string>

namespace lamina {

/// A row of the list of albums: the newest photo, the name, how many there are, and a check where it is the album in
/// use. The list makes and keeps it, and it shows another album when it is used again. Main thread.
class YMSAlbumCell : public QObject {
    Q_OBJECT
    /// A `lamina::UIImage`, as the picture items take it.
    Q_PROPERTY(QVariant thumbnailImage READ thumbnailVariant NOTIFY thumbnailImageChanged FINAL)
    /// The photo's file can't be read.
    Q_PROPERTY(bool unreadable READ isUnreadable NOTIFY thumbnailImageChanged FINAL)
    Q_PROPERTY(QString albumName READ albumName NOTIFY albumChanged FINAL)
    Q_PROPERTY(QString photosCount READ photosCountText NOTIFY albumChanged FINAL)
    Q_PROPERTY(bool checked READ isChecked NOTIFY checkedChanged FINAL)
    /// All of it for those who can't see it: "Garden, 31 photos, chosen".
    Q_PROPERTY(QString spoken READ spoken NOTIFY spokenChanged FINAL)

public:
    YMSAlbumCell();

    /// Whose picture it shows or waits for; empty: none.
    const std::string& representedAssetIdentifier() const { return m_representedAssetIdentifier; }
    /// Another photo than before clears the picture.
    void setRepresentedAssetIdentifier(const std::string& identifier);

    /// Empty until an answer has come.
    const UIImage& thumbnailImage() const { return m_thumbnailImage; }
    /// For views.
    QVariant thumbnailVariant() const;
    /// The empty picture: there is none to be had.
    void setThumbnailImage(const UIImage& image);
    bool isUnreadable() const { return m_unreadable; }

    /// As it is shown, on one line.
    QString albumName() const { return m_albumName; }
    void setAlbumName(const std::string& name);
    /// "(12)"; empty for none.
    QString photosCountText() const;
    /// Of the album.
    void setPhotosCount(std::size_t count);
    /// Whether the check is there.
    bool isChecked() const { return m_checked; }
    void setChecked(bool checked);
    /// See the property.
    QString spoken() const;

signals:
    void thumbnailImageChanged();
    void albumChanged();
    void checkedChanged();
    void spokenChanged();

private:
    std::string m_representedAssetIdentifier;
    UIImage m_thumbnailImage;
    bool m_unreadable = false;
    QString m_albumName;
    std::size_t m_photosCount = 0;
    bool m_checked = false;
};

} // namespace lamina
