#pragma once

#include "platform/base/UIColor.h"
#include "platform/text/UIFont.h"

namespace lamina {

/// The blue in which controls are tinted that nobody has given a colour.
constexpr UIColor systemBlueColor()
{
    return {0, 0.47843137254901963, 1, 1};
}

/// Colours and fonts of the photo picker and of the screens that it opens. There is one for all pickers: what is set
/// for one stays for every later one until it is set again. Read when a picker loads. Main thread only.
struct YMSPhotoPickerTheme {
    UIColor tintColor = systemBlueColor();
    UIColor titleLabelTextColor = UIColor::black();
    /// With white the bar keeps its usual look.
    UIColor navigationBarBackgroundColor = UIColor::white();
    /// The frame of a chosen photo, and the ground of its number.
    UIColor orderTintColor = systemBlueColor();
    UIColor orderLabelTextColor = UIColor::white();
    UIColor cameraVeilColor = systemBlueColor();
    UIColor cameraIconColor = UIColor::white();
    int statusBarStyle = 0; ///< 0: dark text
    UIFont titleLabelFont = UIFont::systemFontOfSize(18);
    UIFont albumNameLabelFont = UIFont::systemFontOfSize(18, UIFontWeight::Light);
    UIFont photosCountLabelFont = UIFont::systemFontOfSize(18, UIFontWeight::Light);
    UIFont selectionOrderLabelFont = UIFont::systemFontOfSize(17);

    /// The one that pickers go by. Never destroyed.
    static YMSPhotoPickerTheme& sharedInstance();
    /// Back to the values above.
    void reset() { *this = YMSPhotoPickerTheme(); }

    friend bool operator==(const YMSPhotoPickerTheme&, const YMSPhotoPickerTheme&) = default;
};

} // namespace lamina
