#pragma once

#include <QObject>
#include <QString>

#include <functional>

namespace lamina {

/// A button that every system knows, and names itself. The values are the platform's.
enum class UIBarButtonSystemItem { Done = 0, Cancel = 1 };

/// A button in the bar over a screen. Main thread.
class UIBarButtonItem : public QObject {
    Q_OBJECT
    Q_PROPERTY(QString title READ title CONSTANT FINAL)

public:
    /// `action` is called at each press; it may be empty, and may destroy the item.
    UIBarButtonItem(UIBarButtonSystemItem systemItem, std::function<void()> action);

    UIBarButtonSystemItem systemItem() const { return m_systemItem; }
    /// In the user's language.
    QString title() const;
    /// What a press does.
    Q_INVOKABLE void press();

private:
    UIBarButtonSystemItem m_systemItem;
    std::function<void()> m_action;
};

} // namespace lamina
