#include "platform/view/UIBarButtonItem.h"

#include "platform/base/Localization.h"

#include <QCoreApplication>

#include <utility>

namespace lamina {

UIBarButtonItem::UIBarButtonItem(UIBarButtonSystemItem systemItem, std::function<void()> action)
    : m_systemItem(systemItem)
    , m_action(std::move(action))
{
}

QString UIBarButtonItem::title() const
{
    const char* const text = m_systemItem == UIBarButtonSystemItem::Done ? QT_TRANSLATE_NOOP("Lamina", "Done")
                                                                         : QT_TRANSLATE_NOOP("Lamina", "Cancel");
    return QString::fromStdString(localizedString(text));
}

void UIBarButtonItem::setEnabled(bool enabled)
{
    if (m_enabled == enabled)
        return;
    m_enabled = enabled;
    emit enabledChanged();
}

void UIBarButtonItem::press()
{
    if (const auto action = m_action; action && m_enabled)
        action();
}

} // namespace lamina
