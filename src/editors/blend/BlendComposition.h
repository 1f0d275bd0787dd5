#pragma once

#include "editors/blend/BlendTools.h"
#include "editors/blend/PickedImages.h"
#include "editors/common/KeptPictures.h"
#include "editors/common/KeptWork.h"
#include "editors/common/PictureMemory.h"
#include "editors/common/RecordValue.h"
#include "editors/stickers/Sticker.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/UIColor.h"
#include "platform/image/pixels/UIImage.h"
#include "platform/photos/PhotoSource.h"

#include <array>
#include <cstddef>
#include <optional>

namespace lamina {

/// Alpha of a photo that nobody has changed: with both at a half, both show through alike.
inline constexpr double kBlendPhotoAlpha = 0.5;

/// What the editor does: which tool has taken over the bar. In move mode the current photo takes gestures; in the
/// others it takes none. The numbers stand in records.
enum class BlendMode { Move = 0, Tools = 1, Effects = 2, AddStickers = 3 };

/// One photo of a blend.
struct BlendPhoto {
    UIImage actualImage; ///< as it came in, square, one pixel a point; what a reset goes back to
    PhotoCrop crop;      ///< how it was cut from the original
    PhotoSource source;  ///< the original, as far as it is known
    UIImage image;       ///< as it is shown now, after turns and tone changes
    CGAffineTransform transform;
    double alpha = kBlendPhotoAlpha;
};

/// The places of the two photos among those of a composition.
inline constexpr std::size_t kFirst = 0;
/// See kFirst.
inline constexpr std::size_t kSecond = 1;

/// All that the user has done to a blend: a small value (pictures share their pixels) from which the view tree can be
/// built again at any time.
struct BlendComposition {
    /// W: of the canvas, points. What the transforms count in.
    double side = 0;
    /// `photos[0]` is the first photo.
    std::array<BlendPhoto, 2> photos;
    /// Indices into `photos`, the lower one first.
    std::array<std::size_t, 2> order = {1, 0};
    /// None: clear.
    std::optional<UIColor> backdrop;
    /// All of them lie above the photos.
    Stickers stickers;

    /// The two selection buttons.
    bool photo1Selected = false;
    bool photo2Selected = false;
    bool bothSelected() const { return photo1Selected && photo2Selected; }
    /// Index of the photo that gestures act on, and the tools while no button is selected.
    std::size_t current = 1;

    BlendMode mode = BlendMode::Move;
    /// The tool strip was opened.
    bool toolBool = false;
    /// The snapshot for this slider is taken.
    bool contrastBool = false;
    bool brightBool = false;
    bool opacityBool = false;
    /// The snapshots that the contrast and brightness sliders work from; the second serves while both photos are
    /// selected.
    UIImage applyFxOnImage1;
    UIImage applyFxOnImage2;
    /// Where the sliders stand. They start anew at each opening of their panel, while the photos keep their look.
    std::array<double, kBlendSliders.size()> sliders = kBlendSliderStarts;

    /// Takes photo `index` to the top of the stack.
    void bringToFront(std::size_t index) { order = {1 - index, index}; }
};

/// Whether both give the same picture: the same photos (in memory), transforms, alphas, order, backdrop and stickers. A
/// clear backdrop shows the white paper, so it counts as white. Selection, modes, sliders, snapshots and what shows
/// that a sticker is selected don't count.
bool looksAlike(const BlendComposition& one, const BlendComposition& other);

/// How a blend is kept.
KeptKind keptKind(const BlendComposition& composition);
/// Writes the composition as a value, its pictures beside it.
void writeRecord(const BlendComposition& composition, KeptPictures& pictures, RecordValue& record);
/// The composition of such a value. False, and nothing is changed, when it is none, can't be shown, or a picture is
/// missing.
bool readRecord(const RecordValue& record, KeptPictures& pictures, BlendComposition& composition);

/// Bytes of the composition's pictures, snapshots included, and of originals that are no files, which are not `counted`
/// yet.
std::size_t byteCount(const BlendComposition& composition, PictureMemory& counted);

} // namespace lamina
