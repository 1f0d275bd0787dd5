#pragma once

#include "platform/image/pixels/CGImage.h"

namespace lamina {

/// A square of square tiles, `perSide` in a row, 16 pixels each: the first black, the last white, and between them
/// white discs on black whose areas grow evenly from tile to tile. Opaque grey; empty where memory is short.
CGImage discTiles(int perSide);

} // namespace lamina
