#pragma once

#include "editors/common/RecordValue.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"

#include <string>
#include <vector>

namespace lamina {

/// A sticker of a canvas as a value, from which its view can be built again. Points of the canvas.
struct Sticker {
    int tag = 0;
    std::string name; ///< of its drawing in the catalogue
    CGSize size;      ///< of the view's bounds, which begin at (0, 0)
    CGPoint center;
    CGAffineTransform transform; ///< a turn
    bool border = true;          ///< brown; else clear
    bool handles = false;        ///< are shown
    bool active = false;         ///< it is the one that loses its handles when another is selected

    friend bool operator==(const Sticker&, const Sticker&) = default;
};

/// Stickers of a canvas, the lowest first.
using Stickers = std::vector<Sticker>;

/// Whether both give the same picture. Handles and borders don't count, since whoever takes the picture takes them away
/// first, nor do tags.
bool looksAlike(const Stickers& some, const Stickers& others);

/// The stickers as a value of a record.
RecordValue recordOf(const Stickers& stickers);
/// The stickers of such a value; those after the 500th, which nobody lays on a canvas by hand, are left out. False, and
/// nothing is changed, when it is none, or one of them could not be shown: a name that is not in the catalogue, sides
/// that no sticker can have, a transform that is no turn, a tag that isn't positive or is another one's too.
bool readStickers(const RecordValue& record, Stickers& stickers);

} // namespace lamina
