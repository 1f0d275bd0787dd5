#pragma once

#include "picker/CollectionItem.h"
#include "picker/NavigationBarHiding.h"
#include "picker/YMSAlbumCell.h"
#include "platform/photos/PHAsset.h"
#include "platform/photos/PHCachingImageManager.h"
#include "platform/photos/PHImageManager.h"
#include "platform/view/TypeAhead.h"
#include "platform/view/UIViewController.h"

#include <QString>
#include <QVariantMap>

#include <cstddef>
#include <functional>
#include <memory>
#include <optional>
#include <vector>

namespace lamina {

/// The list of albums over the photo picker, in the order given, the one in use checked. A tap chooses and leaves.
/// Main thread.
class YMSAlbumPickerViewController : public UIViewController {
    Q_OBJECT
    /// See themeValues.
    Q_PROPERTY(QVariantMap theme READ theme CONSTANT FINAL)
    /// Of the checks: a colour as a text.
    Q_PROPERTY(QString tableTint READ tableTint CONSTANT FINAL)
    Q_PROPERTY(int rowCount READ rowCount CONSTANT FINAL)
    /// The row of the album in use; −1: none of them.
    Q_PROPERTY(int selectedRow READ selectedRow CONSTANT FINAL)
    Q_PROPERTY(double headerViewHeight READ headerViewHeight CONSTANT FINAL)
    Q_PROPERTY(double footerViewHeight READ footerViewHeight CONSTANT FINAL)
    Q_PROPERTY(double bottomContentInset READ bottomContentInset CONSTANT FINAL)
    /// See NavigationBarHiding; `AnimatedProperty`s.
    Q_PROPERTY(QObject* barOffset READ barOffset CONSTANT FINAL)
    Q_PROPERTY(QObject* barAlpha READ barAlpha CONSTANT FINAL)

public:
    /// Hears the album that is marked on leaving; nothing when none was.
    using DismissalHandler = std::function<void(const std::optional<CollectionItem>& selected)>;

    static constexpr double kThumbnailSide = 40; ///< points that a thumbnail is asked for

    /// `selectedCollectionItem` is checked where it is equal to one of the items, photos included; nothing: no album
    /// is in use. `dismissalHandler` may be empty, and is called once.
    YMSAlbumPickerViewController(std::vector<CollectionItem> collectionItems,
                                 std::optional<CollectionItem> selectedCollectionItem,
                                 DismissalHandler dismissalHandler);
    ~YMSAlbumPickerViewController() override;

    /// The rows.
    const std::vector<CollectionItem>& collectionItems() const { return m_collectionItems; }
    /// The album that is marked: the one given, until another is tapped.
    const std::optional<CollectionItem>& selectedCollectionItem() const { return m_selectedCollectionItem; }

    void viewDidLoad() override;

    /// As it is now.
    QVariantMap theme() const;
    /// The bar's colour, or the theme's tint where the bar is white.
    QString tableTint() const;
    int rowCount() const { return static_cast<int>(m_collectionItems.size()); }
    /// The first row that is checked; −1: none.
    int selectedRow() const;

    // The list begins under a white header and ends in a white footer that is much higher than the window, so that
    // there is always room to scroll in; the inset takes as much away again, so that nothing of it is seen at rest.
    // Points; the footer has its height once the view is loaded.
    double headerViewHeight() const { return 6; }
    double footerViewHeight() const { return m_footerViewHeight; }
    double bottomContentInset() const { return -m_footerViewHeight; }

    /// The cell for a row that comes into sight; it is the list's, and shows that row until `endDisplaying`. Null for a
    /// row that there is not.
    Q_INVOKABLE QObject* cellForRow(int row);
    /// The row has gone out of sight: its cell may serve another one. Anything else is ignored.
    Q_INVOKABLE void endDisplaying(QObject* cell);
    /// A tap: the row's album becomes the marked one, and the list leaves. Nothing for a row that there is not, and for
    /// a second choice.
    Q_INVOKABLE void selectRow(int row);
    /// The bar's left button: leaves with what is marked.
    Q_INVOKABLE void cancel();
    /// See TypeAhead.
    Q_INVOKABLE int rowForTyping(const QString& text, int current);

    /// The list stands so far down, in a view of that height; `contentHeight` holds header and footer.
    Q_INVOKABLE void scrollViewDidScroll(double y, double viewHeight, double contentHeight);
    /// See NavigationBarHiding.
    Q_INVOKABLE void scrollViewDidEndDragging() { m_barHiding.scrollViewDidEndDragging(); }
    Q_INVOKABLE void scrollViewDidComeToRest() { m_barHiding.scrollViewDidComeToRest(); }
    QObject* barOffset() { return &m_barHiding.topConstraint(); }
    QObject* barAlpha() { return &m_barHiding.alpha(); }
    const NavigationBarHiding& barHiding() const { return m_barHiding; }

private:
    struct Row;
    bool isChecked(std::size_t row) const;
    Row& dequeuedRow(int row);
    void loadThumbnail(Row& place, const std::optional<PHAsset>& asset);

    std::vector<CollectionItem> m_collectionItems;
    std::optional<CollectionItem> m_selectedCollectionItem;
    DismissalHandler m_dismissalHandler;
    std::shared_ptr<PHCachingImageManager> m_imageManager;
    std::vector<Row> m_rows; ///< with their cells, those out of use too
    NavigationBarHiding m_barHiding;
    TypeAhead m_typeAhead;
    double m_footerViewHeight = 0;
    bool m_leaving = false;
};

} // namespace lamina
