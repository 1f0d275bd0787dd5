#pragma once

#include "platform/view/UIViewController.h"

#include <QVariantList>

#include <cstddef>
#include <vector>

namespace lamina {

/// Where an alert stands: at the foot of the screen, or in its middle.
enum class UIAlertControllerStyle { ActionSheet = 0, Alert = 1 };
/// What a button means: Cancel changes nothing, Destructive loses something.
enum class UIAlertActionStyle { Default = 0, Cancel = 1, Destructive = 2 };

/// One button of an alert.
struct UIAlertAction {
    std::string title;
    UIAlertActionStyle style = UIAlertActionStyle::Default;
    std::function<void()> handler; ///< may be empty
};

/// A question over the screen that presents it, in its middle or, as a sheet of choices, at its foot. The window draws
/// it; its answer comes through tap().
class UIAlertController : public UIViewController {
    Q_OBJECT
    Q_PROPERTY(QString message READ messageText CONSTANT FINAL)
    /// A number of UIAlertControllerStyle.
    Q_PROPERTY(int preferredStyle READ preferredStyleNumber CONSTANT FINAL)
    /// For each button {title, style}, the style as a number of UIAlertActionStyle.
    Q_PROPERTY(QVariantList actionList READ actionList CONSTANT FINAL)

public:
    using Style = UIAlertControllerStyle;

    UIAlertController(std::string title, std::string message, Style preferredStyle = Style::Alert);
    /// One with these buttons.
    static std::shared_ptr<UIAlertController> make(std::string title, std::string message,
                                                   std::vector<UIAlertAction> actions,
                                                   Style preferredStyle = Style::Alert);

    UISystemPresentation systemPresentation() const override { return UISystemPresentation::Alert; }
    const std::string& message() const { return m_message; }
    /// For views: the message, the style, and the buttons as `actionList` tells.
    QString messageText() const { return QString::fromStdString(m_message); }
    int preferredStyleNumber() const { return static_cast<int>(m_preferredStyle); }
    /// A map for each button in their order: "title", and "style" as the number of a UIAlertActionStyle.
    QVariantList actionList() const;
    Style preferredStyle() const { return m_preferredStyle; }
    /// In the order in which they were added.
    const std::vector<UIAlertAction>& actions() const { return m_actions; }
    /// One more button, below those there are.
    void addAction(UIAlertAction action);

    /// The choice of button `index`: the alert is dismissed, then the handler runs, on a later turn. An index that is
    /// out of range is logged and ignored, and so is a second choice.
    Q_INVOKABLE void tap(int index);
    /// What Esc and the back key choose: the cancel action, else the only action, else -1.
    Q_INVOKABLE int cancelIndex() const;

private:
    std::string m_message;
    Style m_preferredStyle;
    std::vector<UIAlertAction> m_actions;
    bool m_answered = false;
};

} // namespace lamina
