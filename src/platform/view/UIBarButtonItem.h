#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace lamina {

/// A button that every system knows, and names itself. The values are the platform's.
enum class UIBarButtonSystemItem { Done = 0, Cancel = 1, Add = 4 };

/// A button in the bar over a screen. Main thread.
class UIBarButtonItem : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT FINAL)
    Q_PROPERTY(bool enabled READ isEnabled NOTIFY enabledChanged FINAL)

public:
    /// `action` is called at each press; it may be empty, and may destroy the item.
    UIBarButtonItem(UIBarButtonSystemItem systemItem, std::function<void()> action);

    UIBarButtonSystemItem systemItem() const { return m_systemItem; }
    /// In the user's language.
    QString title() const;
    /// Default true. A press of one that isn't does nothing.
    bool isEnabled() const { return m_enabled; }
    void setEnabled(bool enabled);
    /// What a press does.
    Q_INVOKABLE void press();

signals:
    void enabledChanged();

private:
    UIBarButtonSystemItem m_systemItem;
    std::function<void()> m_action;
    bool m_enabled = true;
};

} // namespace lamina
