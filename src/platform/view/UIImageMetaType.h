#pragma once

#include "platform/image/pixels/UIImage.h"

#include <QMetaType>

// Lets a picture travel in a QVariant, as a property that views read.
Q_DECLARE_METATYPE(lamina::UIImage)
