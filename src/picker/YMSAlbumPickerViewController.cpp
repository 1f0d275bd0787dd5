#include "picker/YMSAlbumPickerViewController.h"

#include "picker/PickerTexts.h"
#include "picker/PickerThemeValues.h"
#include "picker/YMSPhotoPickerTheme.h"
#include "platform/base/Localization.h"
#include "platform/base/UIScreen.h"
#include "platform/image/pixels/UIImage.h"

#include <QCoreApplication>

#include <algorithm>
#include <cstddef>
#include <string>
#include <utility>

namespace lamina {

/// A cell and the row that it stands in.
struct YMSAlbumPickerViewController::Row {
    static constexpr int kNone = -1;

    std::shared_ptr<YMSAlbumCell> cell;
    int row = kNone;
    PHImageRequestID request = PHInvalidImageRequestID;
};

YMSAlbumPickerViewController::YMSAlbumPickerViewController(std::vector<CollectionItem> collectionItems,
                                                           std::optional<CollectionItem> selectedCollectionItem,
                                                           DismissalHandler dismissalHandler)
    : m_collectionItems(std::move(collectionItems))
    , m_selectedCollectionItem(std::move(selectedCollectionItem))
    , m_dismissalHandler(std::move(dismissalHandler))
    , m_imageManager(std::make_shared<PHCachingImageManager>())
{
    setTitle(localizedString(QT_TRANSLATE_NOOP("Lamina", "Albums")));
}

YMSAlbumPickerViewController::~YMSAlbumPickerViewController() = default;

void YMSAlbumPickerViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    m_footerViewHeight = 2 * view().bounds().size.height;
}

QVariantMap YMSAlbumPickerViewController::theme() const
{
    return themeValues(YMSPhotoPickerTheme::sharedInstance());
}

QString YMSAlbumPickerViewController::tableTint() const
{
    const bool white = YMSPhotoPickerTheme::sharedInstance().navigationBarBackgroundColor == UIColor::white();
    return theme()[white ? QStringLiteral("tintColor") : QStringLiteral("navigationBarBackgroundColor")].toString();
}

bool YMSAlbumPickerViewController::isChecked(std::size_t row) const
{
    return m_selectedCollectionItem && *m_selectedCollectionItem == m_collectionItems[row];
}

int YMSAlbumPickerViewController::selectedRow() const
{
    for (std::size_t row = 0; row < m_collectionItems.size(); ++row)
        if (isChecked(row))
            return static_cast<int>(row);
    return -1;
}

YMSAlbumPickerViewController::Row& YMSAlbumPickerViewController::dequeuedRow(int row)
{
    auto found = std::ranges::find(m_rows, Row::kNone, &Row::row);
    if (found == m_rows.end()) {
        found = m_rows.insert(found, {std::make_shared<YMSAlbumCell>()});
        found->cell->setParent(this); // or views would think that it was theirs to destroy
    }
    found->row = row;
    return *found;
}

QObject* YMSAlbumPickerViewController::cellForRow(int row)
{
    if (row < 0 || row >= rowCount())
        return nullptr;
    Row& place = dequeuedRow(row);
    const CollectionItem& item = m_collectionItems[static_cast<std::size_t>(row)];
    place.cell->setAlbumName(item.collection.localizedTitle);
    place.cell->setPhotosCount(item.assets.count());
    place.cell->setChecked(isChecked(static_cast<std::size_t>(row)));
    loadThumbnail(place, item.assets.firstObject());
    return place.cell.get();
}

void YMSAlbumPickerViewController::loadThumbnail(Row& place, const std::optional<PHAsset>& asset)
{
    place.cell->setRepresentedAssetIdentifier(asset ? asset->localIdentifier : std::string());
    if (!asset)
        return;
    const double side = kThumbnailSide * UIScreen::main().scale;
    // The answer may come when the cell shows another album's photo.
    place.request = m_imageManager->requestImageForAsset(
        *asset, {side, side}, PHImageContentMode::AspectFill, {},
        [weak = std::weak_ptr(place.cell), identifier = asset->localIdentifier](const UIImage& result) {
            const auto cell = weak.lock();
            if (cell && cell->representedAssetIdentifier() == identifier)
                cell->setThumbnailImage(result);
        });
}

void YMSAlbumPickerViewController::endDisplaying(QObject* cell)
{
    const auto found = std::ranges::find(m_rows, cell, [](const Row& row) -> QObject* { return row.cell.get(); });
    if (found == m_rows.end())
        return;
    found->row = Row::kNone;
    m_imageManager->cancelImageRequest(std::exchange(found->request, PHInvalidImageRequestID));
}

void YMSAlbumPickerViewController::selectRow(int row)
{
    if (m_leaving || row < 0 || row >= rowCount())
        return;
    m_selectedCollectionItem = m_collectionItems[static_cast<std::size_t>(row)];
    for (const Row& place : m_rows)
        if (place.row != Row::kNone)
            place.cell->setChecked(isChecked(static_cast<std::size_t>(place.row)));
    cancel();
}

void YMSAlbumPickerViewController::cancel()
{
    if (std::exchange(m_leaving, true))
        return;
    const auto self = shared_from_this();
    if (m_dismissalHandler)
        m_dismissalHandler(m_selectedCollectionItem);
    dismiss(true);
}

int YMSAlbumPickerViewController::rowForTyping(const QString& text, int current)
{
    return m_typeAhead.rowForTyping(text, current, rowCount(), [this](int row) {
        return shownName(m_collectionItems[static_cast<std::size_t>(row)].collection.localizedTitle);
    });
}

void YMSAlbumPickerViewController::scrollViewDidScroll(double y, double viewHeight, double contentHeight)
{
    m_barHiding.scrollViewDidScroll({0, y}, viewHeight, contentHeight - m_footerViewHeight);
}

} // namespace lamina
