#pragma once

#include "picker/YMSPhotoPickerTheme.h"
#include "picker/YMSPhotoPickerViewControllerDelegate.h"
#include "platform/view/UIViewController.h"

#include <memory>

namespace lamina {

/// The screen on which photos of the library are chosen. Presented by `yms_presentCustomAlbumPhotoView`. Main thread
/// only.
///
/// Here stands what a caller sets before it is shown and what its delegate hears. It has no content yet, neither grid
/// nor buttons: nothing in it makes the delegate's finish calls.
class YMSPhotoPickerViewController : public UIViewController {
    Q_OBJECT

public:
    YMSPhotoPickerViewController();
    ~YMSPhotoPickerViewController() override;

    /// Default none.
    std::shared_ptr<YMSPhotoPickerViewControllerDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(std::weak_ptr<YMSPhotoPickerViewControllerDelegate> delegate) { m_delegate = std::move(delegate); }

    /// The most photos that can be chosen; 0: any number.
    unsigned numberOfPhotoToSelect = 1;
    /// With one photo to choose: whether the delegate gets its picture, at full size, or the asset as with several.
    bool shouldReturnImageForSingleSelection = true;

    bool allowsMultipleSelection() const { return numberOfPhotoToSelect != 1; }

    /// The one that all pickers share.
    YMSPhotoPickerTheme& theme() const { return YMSPhotoPickerTheme::sharedInstance(); }
    int preferredStatusBarStyle() const { return theme().statusBarStyle; }

private:
    std::weak_ptr<YMSPhotoPickerViewControllerDelegate> m_delegate;
};

} // namespace lamina
