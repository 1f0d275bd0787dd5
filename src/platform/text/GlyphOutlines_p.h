#pragma once

#include "platform/image/drawing/UIBezierPath.h"
#include "platform/text/TextLibrary_p.h"

namespace lamina {

/// Adds the letters of a run that begins at (x, baseline), in the layout's units, y down.
void addGlyphs(const TextLibrary& library, const PangoGlyphItem& run, double x, double baseline, UIBezierPath& path);

} // namespace lamina
