#pragma once

namespace lamina {

/// Where the panels of the collage editor stand now, for the view that draws them.
struct CollagePanels {};

} // namespace lamina
