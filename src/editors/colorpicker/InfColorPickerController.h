#pragma once

#include "editors/colorpicker/HSBColor.h"
#include "editors/colorpicker/InfColorPickerControllerDelegate.h"

#include "platform/base/CGGeometry.h"
#include "platform/base/UIColor.h"
#include "platform/view/UIViewController.h"

#include <QObject>
#include <QRectF>
#include <QSizeF>
#include <QString>

#include <memory>
#include <optional>
#include <span>

namespace lamina {

class InfColorBarPicker;
class InfColorBarView;
class InfColorPickerNavigationController;
class InfColorSquarePicker;
class InfColorSquareView;
class InfSourceColorView;

/// Lets the user make a colour: hue on a bar, saturation and brightness on a square, or as hexadecimal digits. Beside
/// it stands the colour that it began with, and a tap on that brings it back.
///
/// Values are kept by hue, saturation and brightness, so that a way over grey or black doesn't lose the hue. Colours
/// that controls make are opaque; one that is set stays as it is, alpha included. Main thread.
class InfColorPickerController : public UIViewController {
    Q_OBJECT
    Q_PROPERTY(QString hexText READ shownHexText NOTIFY shownColorChanged FINAL)
    Q_PROPERTY(int hueDegrees READ hueDegrees NOTIFY shownColorChanged FINAL)
    Q_PROPERTY(int saturationPercent READ saturationPercent NOTIFY shownColorChanged FINAL)
    Q_PROPERTY(int brightnessPercent READ brightnessPercent NOTIFY shownColorChanged FINAL)

public:
    /// The picker's scene in the application's storyboard.
    static constexpr const char* kViewFile = "InfColorPickerView";

    /// Of the views that are worked by keys.
    enum ViewTag { SquareTag = 1, BarTag = 2, SourceTag = 3 };
    Q_ENUM(ViewTag)

    InfColorPickerController();

    /// A new one, from the storyboard's scene where that is there.
    static std::shared_ptr<InfColorPickerController> colorPickerViewController();
    /// Points.
    static CGSize idealSizeForViewInPopover();
    CGSize contentSizeForViewInPopover() const { return idealSizeForViewInPopover(); }

    /// Presents it over the screen, animated, in a stack of its own with Done at the right of its bar.
    void presentModallyOverViewController(UIViewController& controller);
    /// That stack; null: it was not presented, or is gone.
    std::shared_ptr<InfColorPickerNavigationController> navController() const;

    std::shared_ptr<InfColorPickerControllerDelegate> delegate() const { return m_delegate.lock(); }
    void setDelegate(std::weak_ptr<InfColorPickerControllerDelegate> delegate) { m_delegate = std::move(delegate); }

    /// The colour that it began with; none until it is set.
    const std::optional<UIColor>& sourceColor() const { return m_sourceColor; }
    /// Sets the result too. Nothing where it is the same.
    void setSourceColor(const UIColor& color);
    /// The present colour; none until it or the source is set.
    const std::optional<UIColor>& resultColor() const { return m_resultColor; }
    /// Takes the controls there. A grey leaves the hue where it was, and black the saturation too. The delegate hears
    /// of it once, when all is as it will be. Nothing where the colour is the same.
    void setResultColor(const UIColor& color);
    /// The same by components: red, green, blue, or with fewer than three the first as a grey. What stands after them
    /// is alpha, else 1. Nothing without components.
    void setResultColor(std::span<const double> components);

    float hue() const { return m_values.hue; }
    float saturation() const { return m_values.saturation; }
    float brightness() const { return m_values.brightness; }

    // What the controls act on.

    /// The bar's value becomes the hue.
    void takeBarValue(const InfColorBarPicker& sender);
    /// The square's value becomes saturation and brightness.
    void takeSquareValue(const InfColorSquarePicker& sender);
    /// The sender's background becomes the result. Nothing without one.
    void takeBackgroundColor(const UIView& sender);
    /// Tells the delegate that the user is done. Nothing once it has been dismissed.
    Q_INVOKABLE void done();
    /// Leaves; the delegate hears nothing. Nothing where it is not presented.
    Q_INVOKABLE void cancel();
    /// The colour of 3 or 6 hexadecimal digits, with "#" or without, becomes the result. False, and nothing changes,
    /// for any other text.
    Q_INVOKABLE bool takeHexText(const QString& text);
    /// Steps by keys on the view of a tag, or of 0, the one of these that was moved last: on the square to the right
    /// and upwards, on the bar along the hues, round its ends. False: no steps there.
    Q_INVOKABLE bool stepBy(int tag, double right, double up);

    /// Places the views on a canvas of that size: the square's field, the bar's range, and both swatches side by side.
    /// What takes touches reaches beyond these as far as an indicator needs. Loads the view. For the layout; until it
    /// has spoken they fill the ideal size.
    Q_INVOKABLE void placeViews(const QSizeF& canvas, const QRectF& square, const QRectF& bar, const QRectF& swatches);

    /// The present colour as "#RRGGBB".
    QString shownHexText() const;
    /// The hue, 0 to 360; what is no whole degree is cut off.
    int hueDegrees() const;
    /// 0 to 100, cut off likewise, as the next.
    int saturationPercent() const;
    /// Of the present colour.
    int brightnessPercent() const;

    // The views; null until they are loaded.
    const std::shared_ptr<InfColorBarView>& barView() const { return m_barView; }
    const std::shared_ptr<InfColorSquareView>& squareView() const { return m_squareView; }
    const std::shared_ptr<InfColorBarPicker>& barPicker() const { return m_barPicker; }
    const std::shared_ptr<InfColorSquarePicker>& squarePicker() const { return m_squarePicker; }
    const std::shared_ptr<InfSourceColorView>& sourceColorView() const { return m_sourceColorView; }
    const std::shared_ptr<UIView>& resultColorView() const { return m_resultColorView; }

    std::shared_ptr<UIView> canvasView() override { return sharedView(); }
    void viewDidLoad() override;
    /// The two upright ones.
    bool shouldAutorotateToInterfaceOrientation(UIInterfaceOrientation orientation) const override;
    /// All of them on a tablet, else the two upright ones.
    UIInterfaceOrientationMask::Set supportedInterfaceOrientations() const override;

signals:
    /// The result is about to be another colour, and
    void resultColorWillChange();
    /// is another one.
    void resultColorDidChange();
    /// All that is shown of the colour is up to date.
    void shownColorChanged();

protected:
    void loadView() override;

private:
    void makeViews(UIView& root);
    void wireControls();
    void showHue();
    void showSquareValue();
    void showSourceColor();
    void storeResultColor(const UIColor& color);
    void updateResultColor();
    void showResultColor();
    void informDelegateDidChangeColor();
    CGPoint squareValue() const;

    HSBColor m_values;
    std::optional<UIColor> m_sourceColor;
    std::optional<UIColor> m_resultColor;
    std::weak_ptr<InfColorPickerControllerDelegate> m_delegate;
    std::weak_ptr<InfColorPickerNavigationController> m_navController;
    int m_movedLast = SquareTag;
    bool m_settingControls = false; ///< what they tell meanwhile is known

    std::shared_ptr<InfColorBarView> m_barView;
    std::shared_ptr<InfColorSquareView> m_squareView;
    std::shared_ptr<InfColorBarPicker> m_barPicker;
    std::shared_ptr<InfColorSquarePicker> m_squarePicker;
    std::shared_ptr<UIView> m_swatches;
    std::shared_ptr<InfSourceColorView> m_sourceColorView;
    std::shared_ptr<UIView> m_resultColorView;
};

} // namespace lamina
