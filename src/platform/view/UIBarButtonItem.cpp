#include "platform/view/UIBarButtonItem.h"

#include "platform/base/Localization.h"

#include <QCoreApplication>

#include <utility>

namespace lamina {

namespace {

const char* englishTitle(UIBarButtonSystemItem item)
{
    switch (item) {
    case UIBarButtonSystemItem::Done:
        return QT_TRANSLATE_NOOP("Lamina", "Done");
    case UIBarButtonSystemItem::Cancel:
        return QT_TRANSLATE_NOOP("Lamina", "Cancel");
    case UIBarButtonSystemItem::Add:
        break;
    }
    return QT_TRANSLATE_NOOP("Lamina", "Add");
}

} // namespace

UIBarButtonItem::UIBarButtonItem(UIBarButtonSystemItem systemItem, std::function<void()> action)
    : m_systemItem(systemItem)
    , m_action(std::move(action))
{
}

QString UIBarButtonItem::title() const
{
    return QString::fromStdString(localizedString(englishTitle(m_systemItem)));
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
