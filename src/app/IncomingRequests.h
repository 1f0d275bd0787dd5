#pragma once

#include "platform/application/ApplicationRequest.h"
#include "platform/base/Result.h"

#include <deque>
#include <functional>
#include <memory>
#include <string>
#include <vector>

namespace lamina {

class UIViewController;
class UIWindow;
class ViewController;

/// What other programs ask of the window, photos to be opened and entries of the home screen, done when and as the
/// screens allow it; nothing is lost by it:
/// - Photos go to the screen on top where it waits for photos (the home screen, the choice of a photo, the picker).
/// - Over screens without work (those without a photo chosen, the live screen, the card about the application) the home
///   screen comes back, and the work begins there as it does at a start.
/// - Over everything else an alert asks: into the editor on top, as if they had been dropped on it, or into a window of
///   their own.
/// - Photos that can't be read here are told in an alert, and the rest follows on it.
/// - Under an alert, a chooser of the system's or a panel that lets nothing through they wait for its end.
///
/// Main thread.
class IncomingRequests {
public:
    /// Opens a window of its own with what is asked.
    using WindowOpener = std::function<Outcome(const ApplicationRequest& request)>;

    /// The window outlives this, and its screens stand in it.
    IncomingRequests(UIWindow& window, WindowOpener opener);

    /// Takes the request for a later turn of the main queue. An error while too many wait already. What asks only for
    /// the front is done with that.
    Outcome take(ApplicationRequest request);
    /// Requests that wait. The end of a transition or of a panel, after which one may not have to wait any more, is
    /// told by `lookAgain`.
    bool isWaiting() const { return !m_waiting.empty(); }
    /// See isWaiting.
    void lookAgain();

private:
    class Question;

    void look();
    void putBack(ApplicationRequest request);
    bool heed(const ApplicationRequest& request);
    void beginAtHome(const ApplicationRequest& request);
    void ask(UIViewController& top, const ApplicationRequest& request);
    void useIn(const std::weak_ptr<UIViewController>& editor, const ApplicationRequest& request);
    void openWindow(const ApplicationRequest& request);
    std::shared_ptr<ViewController> home() const;

    UIWindow& m_window;
    WindowOpener m_opener;
    std::deque<ApplicationRequest> m_waiting; ///< the oldest first
    bool m_looksSoon = false;
    std::shared_ptr<void> m_alive; ///< blocks and answers that come later hold it weakly
};

} // namespace lamina
