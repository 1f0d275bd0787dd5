#pragma once

#include "editors/blend/BlendToolBar.h"

#include <QVariantList>

namespace lamina {

/// The bar for the view that draws it: five maps, in the bar's order, of
///   name     label, translated
///   icon     name of the image
///   active   its label has the accent colour
///   gray     its cell is grey
///   enabled  false while there is nothing behind the tool yet
///   tag      of the cell; 0: none
QVariantList blendToolList(const BlendToolBar& bar);

} // namespace lamina
