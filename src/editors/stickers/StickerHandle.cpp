#include "editors/stickers/StickerHandle_p.h"

#include "platform/base/Localization.h"
#include "platform/base/UIColor.h"
#include "platform/image/named/NamedPictures.h"
#include "platform/view/UIPointerShape.h"
#include "platform/view/UIViewAutoresizing.h"

#include <QtGlobal>

#include <array>
#include <cstddef>
#include <utility>

namespace lamina {

namespace {

constexpr double kPictureSide = 26;

struct HandleLook {
    const char* picture;
    const char* label;
    UIViewAutoresizing mask; ///< keeps it in its corner
    UIPointerShape pointer;
    UIAccessibilityTraits::Set traits;
};

constexpr std::array<HandleLook, 3> kLooks = {{
    {"close", QT_TRANSLATE_NOOP("Lamina", "Delete sticker"),
     UIViewAutoresizing::FlexibleRightMargin | UIViewAutoresizing::FlexibleBottomMargin, UIPointerShape::Arrow,
     UIAccessibilityTraits::Button},
    {"rotate_scale", QT_TRANSLATE_NOOP("Lamina", "Turn and scale sticker"),
     UIViewAutoresizing::FlexibleLeftMargin | UIViewAutoresizing::FlexibleTopMargin, UIPointerShape::Cross,
     UIAccessibilityTraits::Adjustable},
    {"resize", QT_TRANSLATE_NOOP("Lamina", "Resize sticker"),
     UIViewAutoresizing::FlexibleRightMargin | UIViewAutoresizing::FlexibleTopMargin, UIPointerShape::ResizeDiagonally,
     UIAccessibilityTraits::Adjustable},
}};

class StickerHandle : public UIImageView {
public:
    StickerHandle(const HandleLook& look, const CGRect& frame, std::function<void(int)> use)
        : UIImageView(frame)
        , m_use(std::move(use))
    {
        setBackgroundColor(UIColor::clear());
        setUserInteractionEnabled(true);
        setAutoresizingMask(look.mask);
        setContentMode(UIViewContentMode::Center);
        setImage(imageNamed(look.picture, {kPictureSide, kPictureSide}));
        setPointerShape(look.pointer);
        setAccessibilityElement(true);
        setAccessibilityLabel(localizedString(look.label));
        setAccessibilityTraits(look.traits);
    }

    bool accessibilityActivate() override
    {
        if (isButton())
            m_use(0);
        return isButton();
    }
    void accessibilityIncrement() override { step(1); }
    void accessibilityDecrement() override { step(-1); }

private:
    bool isButton() const { return accessibilityTraits() == UIAccessibilityTraits::Button; }
    void step(int steps)
    {
        if (!isButton())
            m_use(steps);
    }

    std::function<void(int)> m_use;
};

} // namespace

std::shared_ptr<UIImageView> makeStickerHandle(StickerHandleKind kind, const CGRect& frame,
                                               std::function<void(int steps)> use)
{
    return std::make_shared<StickerHandle>(kLooks[static_cast<std::size_t>(kind)], frame, std::move(use));
}

} // namespace lamina
