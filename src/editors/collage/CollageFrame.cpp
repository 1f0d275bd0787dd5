// The lines of a collage: its border, and those along its layout's edges; the reset that stands beside them.

#include "editors/collage/CollageFrame.h"

#include "editors/collage/CollageBorderView.h"
#include "editors/collage/CollageEffects.h"
#include "editors/collage/CreateCollageViewController.h"
#include "editors/colorpicker/ColorPicking.h"
#include "editors/common/PictureTools.h"
#include "platform/base/UIColor.h"

#include <cstddef>
#include <memory>

namespace lamina {

double CollageComposition::*collageLine(int tag)
{
    if (tag == collageslider::kBorderWidth)
        return &CollageComposition::borderWidth;
    return tag == collageslider::kGap ? &CollageComposition::gap : nullptr;
}

void CreateCollageViewController::addFrame()
{
    for (std::size_t slot = 0; slot < composition().count; ++slot)
        setSlotPicture(slot, composition().photoSlots[slot].master);
    editedComposition().filter = 0;
}

void CreateCollageViewController::photosBack()
{
    act([this] { addFrame(); });
}

void CreateCollageViewController::adjustBorderColor()
{
    if (m_frameBool)
        pickColor(*this, composition().borderColor, sharedSelf());
}

void CreateCollageViewController::setBorderColor(const UIColor& color)
{
    act([&] {
        editedComposition().borderColor = color;
        showFrame();
    });
}

void CreateCollageViewController::setLine(int tag, double width)
{
    editedComposition().*collageLine(tag) = width;
    showFrame();
}

/// Stickers and slots that came meanwhile lie below it again.
void CreateCollageViewController::showFrame()
{
    if (!m_saveTheImg)
        return;
    const CollageComposition& shown = composition();
    if (!m_borderView || m_borderView->superview() != m_saveTheImg.get()) {
        m_borderView = std::make_shared<CollageBorderView>(shown.side, shown.screenHeight);
        m_saveTheImg->addSubview(m_borderView);
    }
    m_saveTheImg->bringSubviewToFront(*m_borderView);
    m_borderView->layer().setBorderWidth(shown.borderWidth);
    m_borderView->layer().setBorderColor(shown.borderColor);
    m_borderView->showGap(shown.layout, shown.gap, shown.borderColor);
}

UIView& CreateCollageViewController::borderView() const
{
    return *m_borderView;
}

QString CreateCollageViewController::borderColor() const
{
    return colorText(composition().borderColor);
}

} // namespace lamina
