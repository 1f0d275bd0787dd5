#pragma once

#include "platform/view/AnimatedProperty.h"
#include "platform/view/UIViewController.h"

#include <QObject>

namespace lamina {

/// A sheet that comes up from the foot of the screen over the one that presents it: the area above it is dimmed, and
/// a tap there, a pull of the sheet downwards, or going back closes it. Main thread.
///
/// A layout shows the sheet `sheetTranslation` points below its place, and tells of a pull by `handlePanGesture`.
class SheetViewController : public UIViewController {
    Q_OBJECT
    Q_PROPERTY(double sheetHeight READ sheetHeight NOTIFY sheetChanged FINAL)
    Q_PROPERTY(double cornerRadius READ cornerRadius CONSTANT FINAL)
    Q_PROPERTY(bool pullable READ isPullable CONSTANT FINAL)
    Q_PROPERTY(bool dimmed READ isDimmed NOTIFY sheetChanged FINAL)
    Q_PROPERTY(bool closable READ isClosable NOTIFY closableChanged FINAL)
    Q_PROPERTY(QObject* sheetTranslation READ sheetTranslationObject CONSTANT FINAL)

public:
    static constexpr double kSpringBack = 0.3;     ///< seconds
    static constexpr double kPartThatCloses = 3.5; ///< a pull by more than the screen's height by this closes
    static constexpr double kChooserRadius = 40;   ///< of the upper corners, points
    static constexpr double kSheetRadius = 30;     ///< see kChooserRadius

    /// Points, as long as there is room; 0: as high as what it holds.
    double sheetHeight() const { return m_sheetHeight; }
    double cornerRadius() const { return m_cornerRadius; }
    /// Whether a pull moves it; otherwise only a tap above it, or going back, closes it.
    bool isPullable() const { return m_pullable; }
    /// Whether what lies above the sheet is dimmed: from loading until the sheet leaves.
    bool isDimmed() const { return m_dimmed; }
    /// Whether it can be closed now. Default: until it leaves.
    virtual bool isClosable() const { return !m_leaving; }
    /// Points below its place, an `Animated<double>`.
    const Animated<double>& sheetTranslation() const { return m_sheetTranslation; }
    QObject* sheetTranslationObject() { return &m_sheetTranslation; }

    /// A tap above the sheet: closes it, and nobody hears of it.
    Q_INVOKABLE void handleTopTapWithSender();
    /// The same for the key, the button and the gesture that go back.
    Q_INVOKABLE void backAction();
    /// A pull by `translation` points downwards. `state` is a number of UIGestureRecognizerState: a change (2) moves
    /// the sheet with the finger, downwards only; the end (3) closes it, or takes it back to its place. Any other does
    /// nothing.
    Q_INVOKABLE void handlePanGesture(int state, double translation);

    void viewDidLoad() override;

signals:
    void sheetChanged();
    void closableChanged();

protected:
    enum class Pull { Moves, Nothing };
    explicit SheetViewController(double cornerRadius, Pull pull = Pull::Moves);

    /// Whatever its view's size: that of the window.
    bool viewFollowsWindow() const override { return true; }
    void setSheetHeight(double height);
    /// What lies above the sheet is not dimmed any more: a veil would linger while it leaves.
    void clearBackground();
    /// Dismisses the sheet, and what it presents, animated; once. The completion runs when it has gone.
    void leave(Completion completion = {});

private:
    void close();

    double m_cornerRadius;
    bool m_pullable;
    double m_sheetHeight = 0;
    bool m_dimmed = false;
    bool m_leaving = false;
    Animated<double> m_sheetTranslation;
};

} // namespace lamina
