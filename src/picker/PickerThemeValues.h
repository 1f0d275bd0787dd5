#pragma once

#include <QVariantMap>

namespace lamina {

struct YMSPhotoPickerTheme;

/// A theme as layouts read it: under the names of its fields the colours, as texts "#aarrggbb", and of each font the
/// size ("titleSize", "albumNameSize", "photosCountSize", "orderSize") and the weight ("titleWeight" ...).
QVariantMap themeValues(const YMSPhotoPickerTheme& theme);

} // namespace lamina
