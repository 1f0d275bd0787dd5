#pragma once

#include "editors/collage/CollageEffects.h"
#include "editors/collage/CollageTools.h"
#include "editors/common/KeptPictures.h"
#include "editors/common/KeptWork.h"
#include "editors/common/PictureMemory.h"
#include "editors/common/RecordValue.h"
#include "editors/stickers/Sticker.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/image/pixels/UIImage.h"

#include <array>
#include <cstddef>
#include <optional>
#include <string>

namespace lamina {

/// As many photos as a collage can have; it has at least one less.
inline constexpr std::size_t kMostCollageSlots = 3;

/// The layouts that a collage of two and of three photos opens with.
inline constexpr int kFirstLayoutOfTwo = 2000;
/// See kFirstLayoutOfTwo.
inline constexpr int kFirstLayoutOfThree = 3000;

/// One slot of a collage: what its photo is, and how it lies in its layer.
struct CollageSlot {
    UIImage master; ///< what a new layout and a reset go back to
    UIImage image;  ///< as it is shown now, after turns, flips, filters and effects
    CGPoint center; ///< of the photo's view, points of the slot's layer
    CGAffineTransform transform;
    double alpha = 1;
    std::optional<UIColor> background; ///< of the slot's layer, which shows where the photo doesn't; none: clear
};

/// All that the user has done to a collage: a small value (pictures share their pixels) from which the view tree can be
/// built again at any time.
struct CollageComposition {
    /// W: of the canvas, points.
    double side = 0;
    /// Of the main screen, points: some layouts are measured by it.
    double screenHeight = 0;
    /// Of photos, 2 or 3. Slots beyond are empty.
    std::size_t count = 2;
    /// The layout applied last, 2000 to 2007 or 3000 to 3009 by the count; a number that is none stands for slots
    /// without masks.
    int layout = kFirstLayoutOfTwo;
    std::array<CollageSlot, kMostCollageSlots> photoSlots;
    /// Index of the slot that all tools act on, and that takes touches.
    std::size_t current = 0;

    /// The lowest first.
    Stickers stickers;
    /// So many of the lowest stickers lie below the slots: those that were there before the last change of layout.
    std::size_t stickersBelow = 0;

    /// In the order of the sliders, tags 50 to 58: this slider has taken the effect base.
    std::array<bool, kCollageEffectCount> effectFlags{};
    /// The effect base: what all sliders work from. One for all slots.
    UIImage applyFxOnImg;
    /// Where the effect sliders stand. They follow neither slot nor picture.
    std::array<double, kCollageEffectCount> sliders = kCollageSliderStarts;
    /// The filter base: what filters work from.
    UIImage beforeApplyFilterImage;
    /// Tag of the filter that was chosen last on this base; 0: none. It is shown alone.
    int filter = 0;

    /// Of the line around the canvas, points; 0: there is none.
    double borderWidth = 0;
    /// Of the lines along the layout's edges, points; 0: there are none.
    double gap = 0;
    /// Of both.
    UIColor borderColor = UIColor::white();

    /// Identifier of the tool that is active; see collagetool.
    std::string tool{collagetool::kTools};
};

/// Whether both give the same picture. What is selected, tools, sliders, bases and flags don't count, nor what shows
/// that a sticker is selected.
bool looksAlike(const CollageComposition& one, const CollageComposition& other);

/// How a collage is kept.
KeptKind keptKind(const CollageComposition& composition);
/// Writes the composition as a value, its pictures beside it.
void writeRecord(const CollageComposition& composition, KeptPictures& pictures, RecordValue& record);
/// The composition of such a value. False, and nothing is changed, when it is none, can't be shown, or a picture is
/// missing.
bool readRecord(const RecordValue& record, KeptPictures& pictures, CollageComposition& composition);

/// Bytes of the composition's pictures, bases included, which are not `counted` yet.
std::size_t byteCount(const CollageComposition& composition, PictureMemory& counted);

} // namespace lamina
