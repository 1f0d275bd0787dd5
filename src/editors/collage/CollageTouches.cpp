// What touches do to a collage: moving, zooming and turning its photos, taps on it.

#include "editors/collage/CreateCollageViewController.h"
#include "editors/frames/Frames.h"
#include "editors/stickers/IQStickerView.h"
#include "platform/base/CGAffineTransform.h"
#include "platform/image/drawing/UIBezierPath.h"

#include <algorithm>

namespace lamina {

namespace {

bool isOnSticker(const UIView* tapped)
{
    while (tapped != nullptr && dynamic_cast<const IQStickerView*>(tapped) == nullptr)
        tapped = tapped->superview();
    return tapped != nullptr;
}

} // namespace

/// Where slots are seen, in points of the canvas.
class CreateCollageViewController::SlotSight {
public:
    explicit SlotSight(const CreateCollageViewController& editor)
        : m_square(frameSlot(editor.composition().side, editor.composition().screenHeight))
    {
        const CollageComposition& composition = editor.composition();
        if (isFrame(composition.layout))
            m_outlines = frameShape(composition.layout, composition.side, composition.screenHeight).outlines;
        else
            m_outlines.assign(composition.count, UIBezierPath::withRect(m_square));
        for (const auto& view : editor.saveTheImg().subviews()) {
            if (const auto slot = editor.slotOfLayer(*view))
                m_order.push_back(*slot);
        }
    }

    /// The slot of which the point shows a part; none: no slot covers it.
    std::optional<std::size_t> slotAt(CGPoint point) const
    {
        if (m_square.intersection({point.x, point.y, 1, 1}).isEmpty())
            return std::nullopt;
        const auto found = std::find_if(m_order.rbegin(), m_order.rend(),
                                        [&](std::size_t slot) { return m_outlines[slot].contains(point); });
        return found == m_order.rend() ? std::nullopt : std::optional(*found);
    }

private:
    CGRect m_square;
    std::vector<UIBezierPath> m_outlines;
    std::vector<std::size_t> m_order; ///< the lowest first
};

UIView* CreateCollageViewController::gestureView() const
{
    return slotImageView(composition().current);
}

void CreateCollageViewController::panPhoto(UIView& view, CGPoint by)
{
    const std::optional<std::size_t> slot = slotOf(&view);
    const CGPoint center = {view.center().x + by.x, view.center().y + by.y};
    if (!slot || !isFinite(center))
        return;
    editedComposition().photoSlots[*slot].center = center;
    view.setCenter(center);
    tellGesture();
}

void CreateCollageViewController::transformPhoto(UIView& view, const CGAffineTransform& transform)
{
    const std::optional<std::size_t> slot = slotOf(&view);
    // A photo of no size could not be zoomed or even touched again.
    if (!slot || !transform.inverted())
        return;
    editedComposition().photoSlots[*slot].transform = transform;
    view.setTransform(transform);
    tellGesture();
}

void CreateCollageViewController::tapCanvas(double x, double y)
{
    const bool sticker = isOnSticker(m_baseView->hitTest({x, y}));
    StickerEditor::tapCanvas(x, y);
    const std::optional<std::size_t> slot = SlotSight(*this).slotAt({x, y});
    if (!sticker && slot && slot != composition().current)
        emit pointedOut(currentSlot());
}

void CreateCollageViewController::doubleTapCanvas(double x, double y)
{
    if (!isOnSticker(m_baseView->hitTest({x, y})) && SlotSight(*this).slotAt({x, y}) == composition().current)
        fitPhoto();
}

void CreateCollageViewController::fitPhoto()
{
    act([this] {
        CollageSlot& slot = editedComposition().photoSlots[composition().current];
        slot.center = photoCenter();
        slot.transform = {};
        showPhoto(m_slots[composition().current], slot);
    });
}

} // namespace lamina
