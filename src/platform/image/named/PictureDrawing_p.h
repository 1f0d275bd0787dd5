#pragma once

#include "platform/image/drawing/CGContext.h"
#include "platform/image/named/PictureTable_p.h"

#include <string_view>

namespace lamina {

/// The drawing of a name; null when there is none.
const PictureRecord* findPicture(std::string_view name);

/// Draws it into user space with its top left at the origin, y down.
void drawPicture(const PictureRecord& record, CGContext& context);

} // namespace lamina
