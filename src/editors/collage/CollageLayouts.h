#pragma once

#include "platform/image/pixels/UIImage.h"
#include "platform/view/ListModel.h"

#include <cstddef>
#include <string>
#include <vector>

namespace lamina {

struct CollageComposition;

/// One thumbnail in the strip of layouts.
struct CollageLayout {
    int tag = 0;           ///< the layout's number
    std::string name;      ///< in the user's language
    UIImage picture;       ///< how it divides the canvas; of the main screen's scale, 75 points
    UIImage activePicture; ///< the same for the layout in force
};

/// The strip of all layouts for so many photos, drawn for the collage's canvas and screen. Made anew for each opening.
/// Main thread.
class CollageLayouts {
public:
    explicit CollageLayouts(const CollageComposition& composition);

    /// In the order of their numbers: `tag`, `name`, `picture` and `activePicture` (a `lamina::UIImage` each).
    ListModel<CollageLayout>& thumbnails() { return m_thumbnails; }
    const ListModel<CollageLayout>& thumbnails() const { return m_thumbnails; }

    /// What the thumbnails are called, in the same order: "layout2-1" and so on.
    std::vector<std::string> dataInArr() const;

private:
    std::size_t m_photos;
    ListModel<CollageLayout> m_thumbnails;
};

} // namespace lamina
