#include "platform/view/UIStoryboard.h"

#include "platform/base/Log.h"
#include "platform/view/UIViewController.h"

#include <utility>

namespace lamina {

std::shared_ptr<UIStoryboard> UIStoryboard::named(const std::string& name)
{
    static auto* const storyboards = new std::map<std::string, std::shared_ptr<UIStoryboard>>;
    auto& storyboard = (*storyboards)[name];
    if (!storyboard)
        storyboard = std::make_shared<UIStoryboard>(name);
    return storyboard;
}

UIStoryboard::UIStoryboard(std::string name)
    : m_name(std::move(name))
{
}

void UIStoryboard::addScene(const std::string& identifier, UIStoryboardScene scene)
{
    m_scenes[identifier] = std::make_shared<const UIStoryboardScene>(std::move(scene));
}

void UIStoryboard::addSegue(const std::string& identifier, const std::string& destinationIdentifier, SegueKind kind)
{
    m_segues[identifier] = {destinationIdentifier, kind};
}

std::optional<UIStoryboard::Segue> UIStoryboard::segue(const std::string& identifier) const
{
    const auto found = m_segues.find(identifier);
    return found == m_segues.end() ? std::nullopt : std::optional(found->second);
}

std::shared_ptr<UIViewController> UIStoryboard::instantiateViewController(const std::string& identifier)
{
    const auto found = m_scenes.find(identifier);
    auto screen = found == m_scenes.end() || !found->second->factory ? nullptr : found->second->factory();
    if (!screen) {
        logError("storyboard " + m_name + " has no screen called " + identifier);
        return nullptr;
    }
    screen->m_storyboard = shared_from_this();
    screen->m_scene = found->second;
    return screen;
}

} // namespace lamina
