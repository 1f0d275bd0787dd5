#include "platform/view/UIAlertController.h"

#include "platform/base/Log.h"

#include <algorithm>
#include <memory>
#include <string>
#include <utility>

namespace lamina {

UIAlertController::UIAlertController(std::string title, std::string message, Style preferredStyle)
    : m_message(std::move(message))
    , m_preferredStyle(preferredStyle)
{
    setTitle(std::move(title));
    setModalPresentationStyle(preferredStyle == Style::ActionSheet ? UIModalPresentationStyle::OverCurrentContext
                                                                   : UIModalPresentationStyle::OverFullScreen);
}

std::shared_ptr<UIAlertController> UIAlertController::make(std::string title, std::string message,
                                                           std::vector<UIAlertAction> actions, Style preferredStyle)
{
    auto alert = std::make_shared<UIAlertController>(std::move(title), std::move(message), preferredStyle);
    alert->m_actions = std::move(actions);
    return alert;
}

void UIAlertController::addAction(UIAlertAction action)
{
    m_actions.push_back(std::move(action));
}

QVariantList UIAlertController::actionList() const
{
    QVariantList list;
    for (const UIAlertAction& action : m_actions)
        list.append(QVariantMap{{QStringLiteral("title"), QString::fromStdString(action.title)},
                                {QStringLiteral("style"), static_cast<int>(action.style)}});
    return list;
}

void UIAlertController::tap(int index)
{
    if (m_answered || index < 0 || static_cast<std::size_t>(index) >= m_actions.size()) {
        logWarning("the alert has no such button, or was answered already");
        return;
    }
    m_answered = true;
    dismiss(true, m_actions[static_cast<std::size_t>(index)].handler);
}

int UIAlertController::cancelIndex() const
{
    const auto cancel = std::find_if(m_actions.begin(), m_actions.end(), [](const UIAlertAction& action) {
        return action.style == UIAlertActionStyle::Cancel;
    });
    if (cancel != m_actions.end())
        return static_cast<int>(cancel - m_actions.begin());
    return m_actions.size() == 1 ? 0 : -1;
}

} // namespace lamina
