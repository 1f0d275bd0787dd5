#pragma once

namespace lamina {

struct CollageComposition;

/// The width that a slider of the panel "frame" sets, by its tag; null for any other tag.
double CollageComposition::*collageLine(int tag);

} // namespace lamina
