#include "picker/PickerThemeValues.h"

#include "picker/YMSPhotoPickerTheme.h"
#include "platform/base/UIColor.h"
#include "platform/text/UIFont.h"

#include <QLatin1Char>
#include <QString>

#include <algorithm>
#include <cmath>

namespace lamina {

namespace {

constexpr int kHexadecimal = 16;

QString component(double value)
{
    const int byte = static_cast<int>(std::lround(std::clamp(value, 0.0, 1.0) * 255));
    return QString::number(byte, kHexadecimal).rightJustified(2, QLatin1Char('0'));
}

QString colorText(const UIColor& color)
{
    return QLatin1Char('#') + component(color.alpha) + component(color.red) + component(color.green) +
           component(color.blue);
}

struct ThemeColor {
    const char* name;
    UIColor YMSPhotoPickerTheme::*color;
};

constexpr ThemeColor kColors[] = {
    {"tintColor", &YMSPhotoPickerTheme::tintColor},
    {"titleLabelTextColor", &YMSPhotoPickerTheme::titleLabelTextColor},
    {"navigationBarBackgroundColor", &YMSPhotoPickerTheme::navigationBarBackgroundColor},
    {"orderTintColor", &YMSPhotoPickerTheme::orderTintColor},
    {"orderLabelTextColor", &YMSPhotoPickerTheme::orderLabelTextColor},
    {"cameraVeilColor", &YMSPhotoPickerTheme::cameraVeilColor},
    {"cameraIconColor", &YMSPhotoPickerTheme::cameraIconColor},
};

struct ThemeFont {
    const char* name;
    UIFont YMSPhotoPickerTheme::*font;
};

constexpr ThemeFont kFonts[] = {
    {"title", &YMSPhotoPickerTheme::titleLabelFont},
    {"albumName", &YMSPhotoPickerTheme::albumNameLabelFont},
    {"photosCount", &YMSPhotoPickerTheme::photosCountLabelFont},
    {"order", &YMSPhotoPickerTheme::selectionOrderLabelFont},
};

} // namespace

QVariantMap themeValues(const YMSPhotoPickerTheme& theme)
{
    QVariantMap values;
    for (const auto& [name, color] : kColors)
        values.insert(QLatin1String(name), colorText(theme.*color));
    for (const auto& [name, font] : kFonts) {
        values.insert(QLatin1String(name) + QLatin1String("Size"), (theme.*font).size);
        values.insert(QLatin1String(name) + QLatin1String("Weight"), static_cast<int>((theme.*font).weight));
    }
    return values;
}

} // namespace lamina
