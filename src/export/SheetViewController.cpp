#include "export/SheetViewController.h"

#include "platform/base/UIColor.h"
#include "platform/view/UIGestureRecognizer.h"
#include "platform/view/UIView.h"
#include "platform/view/UIViewAnimation.h"

#include <memory>
#include <utility>

namespace lamina {

namespace {

constexpr UIColor kVeil = UIColor::fromWhite(0.01, 0.6);

} // namespace

SheetViewController::SheetViewController(double cornerRadius, Pull pull)
    : m_cornerRadius(cornerRadius)
    , m_pullable(pull == Pull::Moves)
{
}

void SheetViewController::viewDidLoad()
{
    UIViewController::viewDidLoad();
    view().setBackgroundColor(kVeil);
    m_dimmed = true;
    emit sheetChanged();
}

void SheetViewController::handleTopTapWithSender()
{
    close();
}

void SheetViewController::backAction()
{
    close();
}

void SheetViewController::handlePanGesture(int state, double translation)
{
    if (!m_pullable || !isClosable())
        return;
    if (state == static_cast<int>(UIGestureRecognizerState::Changed)) {
        if (translation > 0)
            m_sheetTranslation = translation;
    } else if (state == static_cast<int>(UIGestureRecognizerState::Ended)) {
        if (view().bounds().size.height / kPartThatCloses < translation)
            close();
        else
            animate(kSpringBack, 0, {}, [this] { m_sheetTranslation = 0; });
    }
}

void SheetViewController::setSheetHeight(double height)
{
    m_sheetHeight = height;
    emit sheetChanged();
}

void SheetViewController::clearBackground()
{
    view().setBackgroundColor(UIColor::clear());
    m_dimmed = false;
    emit sheetChanged();
}

void SheetViewController::close()
{
    if (!isClosable())
        return;
    clearBackground();
    leave();
}

void SheetViewController::leave(Completion completion)
{
    if (std::exchange(m_leaving, true))
        return;
    emit closableChanged();
    // Asked of the screen below, so that an alert over the sheet goes with it.
    const std::shared_ptr<UIViewController> presenter = presentingViewController();
    (presenter ? *presenter : *this).dismiss(true, std::move(completion));
}

} // namespace lamina
