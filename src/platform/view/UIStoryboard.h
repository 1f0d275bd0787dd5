#pragma once

#include <functional>
#include <map>
#include <memory>
#include <optional>
#include <string>

namespace lamina {

class UIViewController;

/// The name of the application's own storyboard.
inline constexpr const char* kMainStoryboard = "Main";

/// A screen as a storyboard knows it.
struct UIStoryboardScene {
    /// Makes a new screen at each call.
    std::function<std::shared_ptr<UIViewController>()> factory;
    /// The layout that a window draws it with, a file of the window's QML module ("HomeScreen.qml"). Empty for what the
    /// system shows (`UIViewController::systemPresentation`).
    std::string qmlFile;
};

/// The screens of the application by name, and the named transitions between them. Filled once at the start, main
/// thread.
class UIStoryboard : public std::enable_shared_from_this<UIStoryboard> {
public:
    /// How the destination comes.
    enum class SegueKind {
        Show,    ///< pushed on the navigation stack of the source; presented where it has none
        Present, ///< presented by the source
    };
    /// A named transition.
    struct Segue {
        std::string destinationIdentifier;
        SegueKind kind = SegueKind::Show;
    };
    using Scenes = std::map<std::string, std::shared_ptr<const UIStoryboardScene>>;

    /// The storyboard of that name, the same one at every call; made empty at the first.
    static std::shared_ptr<UIStoryboard> named(const std::string& name);

    explicit UIStoryboard(std::string name);
    const std::string& name() const { return m_name; }

    /// Adds a screen. A name given again replaces it.
    void addScene(const std::string& identifier, UIStoryboardScene scene);
    /// By their identifiers.
    const Scenes& scenes() const { return m_scenes; }
    /// Adds a transition to the screen of that identifier, which may be added later.
    void addSegue(const std::string& identifier, const std::string& destinationIdentifier, SegueKind kind);
    /// Nothing when the name is unknown.
    std::optional<Segue> segue(const std::string& identifier) const;

    /// A new screen that knows this storyboard and its scene. Null, and logged, when the name is unknown.
    std::shared_ptr<UIViewController> instantiateViewController(const std::string& identifier);
    /// The same as the class it is expected to be; null when it is another.
    template <class Controller>
    std::shared_ptr<Controller> instantiate(const std::string& identifier)
    {
        return std::dynamic_pointer_cast<Controller>(instantiateViewController(identifier));
    }

private:
    std::string m_name;
    Scenes m_scenes;
    std::map<std::string, Segue> m_segues;
};

} // namespace lamina
