#include "editors/colorpicker/InfColorPickerController.h"

#include "editors/colorpicker/ColorHexText.h"
#include "editors/colorpicker/ColorTrack.h"
#include "editors/colorpicker/InfColorBarPicker.h"
#include "editors/colorpicker/InfColorBarView.h"
#include "editors/colorpicker/InfColorPickerNavigationController.h"
#include "editors/colorpicker/InfColorSquarePicker.h"
#include "editors/colorpicker/InfColorSquareView.h"
#include "editors/colorpicker/InfSourceColorView.h"
#include "platform/base/Localization.h"
#include "platform/view/UIBarButtonItem.h"
#include "platform/view/UIControl.h"
#include "platform/view/UIStoryboard.h"
#include "platform/view/UIView.h"

#include <QCoreApplication>

#include <cmath>
#include <cstddef>
#include <string>

namespace lamina {

namespace {

constexpr CGSize kIdealSize{298, 420};

/// The layout on the ideal size.
constexpr CGRect kIdealSquare{20, 20, 258, 258};
constexpr CGRect kIdealBar{20, 298, 258, 40};
constexpr CGRect kIdealSwatches{20, 358, 258, 44};

CGRect rectOf(const QRectF& rect)
{
    return {rect.x(), rect.y(), rect.width(), rect.height()};
}

QRectF qRectOf(const CGRect& rect)
{
    return {rect.origin.x, rect.origin.y, rect.size.width, rect.size.height};
}

UIColor colorOfComponents(std::span<const double> components)
{
    const std::size_t alphaPlace = components.size() < 3 ? 1 : 3;
    const double alpha = components.size() > alphaPlace ? components[alphaPlace] : 1;
    return alphaPlace == 1 ? UIColor::fromWhite(components[0], alpha)
                           : UIColor{components[0], components[1], components[2], alpha};
}

RGBComponents componentsOf(const UIColor& color)
{
    return {static_cast<float>(color.red), static_cast<float>(color.green), static_cast<float>(color.blue)};
}

/// Whether the two name one hue: 0 and 1 are the same red.
bool isSameHue(float a, float b)
{
    return a == b || (a == 0 && b == 1) || (a == 1 && b == 0);
}

} // namespace

InfColorPickerController::InfColorPickerController()
{
    setTitle(localizedString(QT_TRANSLATE_NOOP("Lamina", "Set Color")));
}

std::shared_ptr<InfColorPickerController> InfColorPickerController::colorPickerViewController()
{
    const auto storyboard = UIStoryboard::named(kMainStoryboard);
    if (storyboard->scenes().contains(kViewFile))
        if (auto picker = storyboard->instantiate<InfColorPickerController>(kViewFile))
            return picker;
    return std::make_shared<InfColorPickerController>();
}

CGSize InfColorPickerController::idealSizeForViewInPopover()
{
    return kIdealSize;
}

// ---- coming and going ----

void InfColorPickerController::presentModallyOverViewController(UIViewController& controller)
{
    const auto stack = InfColorPickerNavigationController::make(shared_from_this());
    m_navController = stack;
    stack->setBarStyle(UIBarStyle::Black);
    setRightBarButtonItem(std::make_shared<UIBarButtonItem>(UIBarButtonSystemItem::Done, [this] { done(); }));
    controller.present(stack, true);
}

std::shared_ptr<InfColorPickerNavigationController> InfColorPickerController::navController() const
{
    return m_navController.lock();
}

void InfColorPickerController::done()
{
    const bool gone = navController() && !presentingViewController();
    if (const auto heard = gone ? nullptr : delegate())
        heard->colorPickerControllerDidFinish(*this);
}

void InfColorPickerController::cancel()
{
    if (presentingViewController())
        dismiss(true);
}

bool InfColorPickerController::shouldAutorotateToInterfaceOrientation(UIInterfaceOrientation orientation) const
{
    return orientation == UIInterfaceOrientation::Portrait || orientation == UIInterfaceOrientation::PortraitUpsideDown;
}

UIInterfaceOrientationMask::Set InfColorPickerController::supportedInterfaceOrientations() const
{
    using Mask = UIInterfaceOrientationMask;
    return userInterfaceIdiom() == UIUserInterfaceIdiom::Pad ? Mask::All : Mask::Portrait | Mask::PortraitUpsideDown;
}

// ---- the views ----

void InfColorPickerController::loadView()
{
    const auto root = std::make_shared<UIView>(CGRect({}, kIdealSize));
    root->setOpaque(false);
    makeViews(*root);
    setView(root);
}

/// What is worked first stands first, for those who go by keys.
void InfColorPickerController::makeViews(UIView& root)
{
    constexpr double kRadius = 12;
    constexpr double kSwatchRadius = 16;
    constexpr UIColor kEdge = UIColor::fromWhite(1, 0.12);
    const auto addRounded = [&](const std::shared_ptr<UIView>& view, double radius) {
        view->layer().setCornerRadius(radius);
        view->layer().setBorderColor(kEdge);
        view->layer().setBorderWidth(1);
        view->setClipsToBounds(true);
        root.addSubview(view);
    };
    addRounded(m_squareView = std::make_shared<InfColorSquareView>(), kRadius);
    root.addSubview(m_squarePicker = std::make_shared<InfColorSquarePicker>());
    addRounded(m_barView = std::make_shared<InfColorBarView>(), kRadius);
    root.addSubview(m_barPicker = std::make_shared<InfColorBarPicker>());
    addRounded(m_swatches = std::make_shared<UIView>(), kSwatchRadius);
    m_swatches->addSubview(m_sourceColorView = std::make_shared<InfSourceColorView>());
    m_swatches->addSubview(m_resultColorView = std::make_shared<UIView>());
    m_squarePicker->layer().setCornerRadius(kRadius);
    m_barPicker->layer().setCornerRadius(kRadius);
}

void InfColorPickerController::wireControls()
{
    m_squarePicker->setTag(SquareTag);
    m_barPicker->setTag(BarTag);
    m_sourceColorView->setTag(SourceTag);
    m_sourceColorView->setAccessibilityTraits(UIAccessibilityTraits::Button);
    m_sourceColorView->setAccessibilityLabel(localizedString(QT_TRANSLATE_NOOP("Lamina", "Before")));
    m_sourceColorView->setAccessibilityHint(localizedString(QT_TRANSLATE_NOOP("Lamina", "Takes this color again")));
    m_barPicker->addTarget([this](UIControl&) { takeBarValue(*m_barPicker); }, UIControlEvents::ValueChanged);
    m_squarePicker->addTarget([this](UIControl&) { takeSquareValue(*m_squarePicker); }, UIControlEvents::ValueChanged);
    m_sourceColorView->addTarget([this](UIControl& sender) { takeBackgroundColor(sender); },
                                 UIControlEvents::TouchUpInside);
}

void InfColorPickerController::viewDidLoad()
{
    wireControls();
    showHue();
    showSquareValue();
    showSourceColor();
    showResultColor();
    placeViews({kIdealSize.width, kIdealSize.height}, qRectOf(kIdealSquare), qRectOf(kIdealBar),
               qRectOf(kIdealSwatches));
}

void InfColorPickerController::placeViews(const QSizeF& canvas, const QRectF& square, const QRectF& bar,
                                          const QRectF& swatches)
{
    view().setFrame({0, 0, canvas.width(), canvas.height()});
    const CGRect field = rectOf(square);
    const CGRect range = rectOf(bar);
    m_squareView->setFrame(field);
    m_squarePicker->setFrame(field.insetBy(-colortrack::kMargin, -colortrack::kMargin));
    m_barView->setFrame(range);
    m_barPicker->setFrame(range.insetBy(-colortrack::kMargin, 0));
    m_swatches->setFrame(rectOf(swatches));
    const CGSize half{std::round(swatches.width() / 2), swatches.height()};
    m_sourceColorView->setFrame({0, 0, half.width, half.height});
    m_resultColorView->setFrame({half.width, 0, swatches.width() - half.width, half.height});
}

/// Tells bar and square of the hue.
void InfColorPickerController::showHue()
{
    if (!isViewLoaded())
        return;
    m_settingControls = true;
    m_barPicker->setValue(m_values.hue);
    m_settingControls = false;
    m_squareView->setHue(m_values.hue);
    m_squarePicker->setHue(m_values.hue);
}

void InfColorPickerController::showSquareValue()
{
    if (!isViewLoaded())
        return;
    m_settingControls = true;
    m_squarePicker->setValue({m_values.saturation, m_values.brightness});
    m_settingControls = false;
}

void InfColorPickerController::showSourceColor()
{
    if (!isViewLoaded() || !m_sourceColor)
        return;
    m_sourceColorView->setBackgroundColor(m_sourceColor);
    m_sourceColorView->setAccessibilityValue(hexText(*m_sourceColor));
}

void InfColorPickerController::showResultColor()
{
    if (isViewLoaded() && m_resultColor)
        m_resultColorView->setBackgroundColor(m_resultColor);
    emit shownColorChanged();
}

// ---- from a colour to the controls ----

void InfColorPickerController::setSourceColor(const UIColor& color)
{
    if (m_sourceColor == color)
        return;
    m_sourceColor = color;
    showSourceColor();
    setResultColor(color);
}

void InfColorPickerController::setResultColor(const UIColor& color)
{
    if (m_resultColor == color)
        return;
    storeResultColor(color);
    const float formerHue = m_values.hue;
    m_values = hsbFromRGB(componentsOf(color), m_values, HSBPreservation::Keep);
    if (isSameHue(m_values.hue, formerHue))
        m_values.hue = formerHue;
    else
        showHue();
    showSquareValue();
    showResultColor();
    informDelegateDidChangeColor();
}

void InfColorPickerController::setResultColor(std::span<const double> components)
{
    if (!components.empty())
        setResultColor(colorOfComponents(components));
}

bool InfColorPickerController::takeHexText(const QString& text)
{
    const auto color = colorFromHexText(text.toStdString());
    if (color)
        setResultColor(*color);
    return color.has_value();
}

// ---- from the controls to a colour ----

void InfColorPickerController::takeBarValue(const InfColorBarPicker& sender)
{
    if (m_settingControls)
        return;
    m_movedLast = BarTag;
    m_values.hue = sender.value();
    if (isViewLoaded()) {
        m_squareView->setHue(m_values.hue);
        m_squarePicker->setHue(m_values.hue);
    }
    updateResultColor();
}

void InfColorPickerController::takeSquareValue(const InfColorSquarePicker& sender)
{
    if (m_settingControls)
        return;
    m_movedLast = SquareTag;
    m_values.saturation = static_cast<float>(sender.value().x);
    m_values.brightness = static_cast<float>(sender.value().y);
    updateResultColor();
}

void InfColorPickerController::takeBackgroundColor(const UIView& sender)
{
    if (const auto color = sender.backgroundColor())
        setResultColor(*color);
}

bool InfColorPickerController::stepBy(int tag, double right, double up)
{
    const int stepped = tag == 0 ? m_movedLast : tag;
    if (stepped == SquareTag && isViewLoaded())
        m_squarePicker->stepBy(right, up);
    else if (stepped == BarTag && isViewLoaded())
        m_barPicker->stepBy(static_cast<float>(right + up));
    else
        return false;
    return true;
}

void InfColorPickerController::updateResultColor()
{
    storeResultColor(colorFromHSB(m_values));
    showResultColor();
    informDelegateDidChangeColor();
}

void InfColorPickerController::storeResultColor(const UIColor& color)
{
    emit resultColorWillChange();
    m_resultColor = color;
    emit resultColorDidChange();
}

void InfColorPickerController::informDelegateDidChangeColor()
{
    const auto heard = delegate();
    if (heard && heard->hearsColorChanges())
        heard->colorPickerControllerDidChangeColor(*this);
}

// ---- the colour in words ----

QString InfColorPickerController::shownHexText() const
{
    return QString::fromStdString(hexText(m_resultColor.value_or(colorFromHSB(m_values))));
}

/// Saturation and brightness as the square tells them, in double precision; the same number has to be shown and spoken.
CGPoint InfColorPickerController::squareValue() const
{
    return isViewLoaded() ? m_squarePicker->value() : CGPoint{m_values.saturation, m_values.brightness};
}

int InfColorPickerController::hueDegrees() const
{
    return wholeDegrees(m_values.hue);
}

int InfColorPickerController::saturationPercent() const
{
    return wholePercent(squareValue().x);
}

int InfColorPickerController::brightnessPercent() const
{
    return wholePercent(squareValue().y);
}

} // namespace lamina
