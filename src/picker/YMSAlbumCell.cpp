#include "picker/YMSAlbumCell.h"

#include "picker/PickerTexts.h"
#include "platform/base/Localization.h"
#include "platform/view/UIImageMetaType.h"

#include <QCoreApplication>

namespace lamina {

YMSAlbumCell::YMSAlbumCell()
{
    connect(this, &YMSAlbumCell::albumChanged, this, &YMSAlbumCell::spokenChanged);
    connect(this, &YMSAlbumCell::checkedChanged, this, &YMSAlbumCell::spokenChanged);
}

void YMSAlbumCell::setRepresentedAssetIdentifier(const std::string& identifier)
{
    if (m_representedAssetIdentifier == identifier)
        return;
    m_representedAssetIdentifier = identifier;
    m_thumbnailImage = {};
    m_unreadable = false;
    emit thumbnailImageChanged();
}

QVariant YMSAlbumCell::thumbnailVariant() const
{
    return QVariant::fromValue(m_thumbnailImage);
}

void YMSAlbumCell::setThumbnailImage(const UIImage& image)
{
    m_thumbnailImage = image;
    m_unreadable = !image;
    emit thumbnailImageChanged();
}

void YMSAlbumCell::setAlbumName(const std::string& name)
{
    m_albumName = shownName(name);
    emit albumChanged();
}

QString YMSAlbumCell::photosCountText() const
{
    return m_photosCount == 0 ? QString() : QLatin1Char('(') + QString::number(m_photosCount) + QLatin1Char(')');
}

void YMSAlbumCell::setPhotosCount(std::size_t count)
{
    m_photosCount = count;
    emit albumChanged();
}

void YMSAlbumCell::setChecked(bool checked)
{
    if (m_checked == checked)
        return;
    m_checked = checked;
    emit checkedChanged();
}

QString YMSAlbumCell::spoken() const
{
    const char* const form =
        m_checked ? QT_TRANSLATE_NOOP("Lamina", "%1, %2, chosen") : QT_TRANSLATE_NOOP("Lamina", "%1, %2");
    return QString::fromStdString(
        localizedText(form, {m_albumName.toStdString(), photosText(m_photosCount).toStdString()}));
}

} // namespace lamina
