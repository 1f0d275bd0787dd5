#pragma once

#include "platform/base/CGGeometry.h"
#include "platform/base/Result.h"
#include "platform/view/UIView.h"

#include <QObject>
#include <QString>

#include <functional>
#include <memory>
#include <string>
#include <utility>
#include <vector>

namespace lamina {

class UIBarButtonItem;
class UINavigationController;
class UIStoryboard;
class UIViewController;
class UIWindow;
struct UIStoryboardScene;

/// How a presented screen lies over the one that presents it. The presenter of the first two leaves the window while it
/// is covered (it hears viewWillDisappear), that of the others stays visible.
enum class UIModalPresentationStyle { FullScreen = 0, CurrentContext = 3, OverFullScreen = 5, OverCurrentContext = 6 };

/// How a window stands. The values are the platform's; of the two ways to lie down windows here know one.
enum class UIInterfaceOrientation {
    Portrait = 1, ///< higher than wide, or square
    PortraitUpsideDown = 2,
    LandscapeRight = 3, ///< wider than high
    LandscapeLeft = 4,
};

/// Sets of the above are sums: bit n stands for the orientation of the number n.
struct UIInterfaceOrientationMask {
    using Set = unsigned;
    static constexpr Set Portrait = 1u << 1;
    static constexpr Set PortraitUpsideDown = 1u << 2;
    static constexpr Set LandscapeRight = 1u << 3;
    static constexpr Set LandscapeLeft = 1u << 4;
    static constexpr Set AllButUpsideDown = Portrait | LandscapeRight | LandscapeLeft;
    static constexpr Set All = AllButUpsideDown | PortraitUpsideDown;
};

/// What a screen is laid out for. The values are the platform's.
enum class UIUserInterfaceIdiom { Phone = 0, Pad = 1 };

/// Which of the system's own screens this is: it shows them in its own way, whoever presents them.
enum class UISystemPresentation {
    None,           ///< none: a screen of the application, drawn with the layout of its scene
    Alert,          ///< UIAlertController
    ImagePicker,    ///< UIImagePickerController; ours stay in sight behind it
    DocumentPicker, ///< UIDocumentPickerViewController; ours stay in sight behind it
    Activity,       ///< UIActivityViewController
};

/// A transition to another screen that a storyboard knows by name.
struct UIStoryboardSegue {
    std::string identifier;
    UIViewController& sourceViewController;
    UIViewController& destinationViewController;

    /// The destination as the class it is expected to be; null when it is another.
    template <class Controller>
    Controller* destination() const
    {
        return dynamic_cast<Controller*>(&destinationViewController);
    }
};

/// One screen: its state, its behaviour and its tree of views. Must be held by std::shared_ptr. Main thread.
///
/// Transitions (present, dismiss, push, pop) change who presents whom and who is on the stack at once; what is told to
/// the screens (appearance calls) and to the caller (the completion) comes on later turns of the main queue, one
/// transition after another. All screens that take part are kept alive until the completion has run. What can't be done
/// (presenting over what is presented already, dismissing with nothing presented, popping the last screen) is logged,
/// changes nothing, and its completion is still called on a later turn.
class UIViewController : public QObject, public std::enable_shared_from_this<UIViewController> {
    Q_OBJECT
    Q_PROPERTY(QString title READ titleText NOTIFY titleChanged FINAL)
    Q_PROPERTY(QString className READ className CONSTANT FINAL)
    Q_PROPERTY(QObject* rightBarButtonItem READ rightBarButtonObject NOTIFY rightBarButtonItemChanged FINAL)

public:
    using Completion = std::function<void()>;

    UIViewController();
    ~UIViewController() override;

    /// The root of the screen's views, made at the first call: loadView, then viewDidLoad.
    UIView& view();
    /// The same view, to be shared.
    std::shared_ptr<UIView> sharedView();
    bool isViewLoaded() const { return m_view != nullptr; }

    /// The part of this screen that a window shows and hit-tests as a canvas; null, the default: none. Loads the view.
    virtual std::shared_ptr<UIView> canvasView() { return nullptr; }
    /// The name of this screen's class, without its namespace; for messages.
    QString className() const;

    /// Default empty.
    const std::string& title() const { return m_title; }
    void setTitle(std::string title);
    QString titleText() const { return QString::fromStdString(m_title); }

    /// The button at the right end of the screen's bar; null, the default: none.
    const std::shared_ptr<UIBarButtonItem>& rightBarButtonItem() const { return m_rightBarButtonItem; }
    void setRightBarButtonItem(std::shared_ptr<UIBarButtonItem> item);
    /// It as a layout sees it.
    QObject* rightBarButtonObject() const;

    /// Default FullScreen. Read when the screen is presented.
    UIModalPresentationStyle modalPresentationStyle() const { return m_modalPresentationStyle; }
    void setModalPresentationStyle(UIModalPresentationStyle style) { m_modalPresentationStyle = style; }

    /// Presents from the outermost container of this screen. Order: presenter viewWillDisappear, presented
    /// viewWillAppear, the animation, presented viewDidAppear, presenter viewDidDisappear, completion.
    void present(std::shared_ptr<UIViewController> controller, bool animated, Completion completion = {});
    /// Dismisses what this screen or a container of it presents, with everything above that; if there is nothing, the
    /// presented screen (or container) that this one belongs to. Order: those that leave viewWillDisappear from the top
    /// down, the presenter viewWillAppear, the animation, presenter viewDidAppear, the others viewDidDisappear,
    /// completion.
    void dismiss(bool animated, Completion completion = {});
    /// Presented by this screen or by a container of it; null: nothing.
    std::shared_ptr<UIViewController> presentedViewController() const;
    /// Who presents this screen or a container of it; null: nobody.
    std::shared_ptr<UIViewController> presentingViewController() const;

    /// The container this screen stands in; null: none.
    std::shared_ptr<UIViewController> parentViewController() const { return m_parent.lock(); }
    /// The nearest container that is a navigation stack; null: none.
    std::shared_ptr<UINavigationController> navigationController() const;

    /// The storyboard that made this screen, and the scene it was made from; null: none.
    std::shared_ptr<UIStoryboard> storyboard() const { return m_storyboard; }
    const UIStoryboardScene* scene() const { return m_scene.get(); }
    /// Default: None.
    virtual UISystemPresentation systemPresentation() const { return UISystemPresentation::None; }
    /// Makes the destination, hands it to prepareForSegue, then shows it (pushed, or presented without a navigation
    /// stack) or presents it, animated. An unknown identifier is logged, and nothing happens.
    void performSegue(const std::string& identifier, QObject* sender = nullptr);
    /// The place to hand over data. Default: nothing.
    virtual void prepareForSegue(UIStoryboardSegue& segue, QObject* sender);

    /// Once, after the view was made.
    virtual void viewDidLoad() {}
    /// Called by the transitions; an override calls its base class.
    virtual void viewWillAppear(bool animated);
    virtual void viewDidAppear(bool animated);
    virtual void viewWillDisappear(bool animated);
    virtual void viewDidDisappear(bool animated);

    /// Of the window this screen stands in, in points; without a window that of the main screen. Within
    /// viewWillTransitionToSize still the former one.
    CGSize windowSize() const;
    /// How that window stands.
    UIInterfaceOrientation interfaceOrientation() const;
    /// A tablet's where the window's shorter side has `kPadSide` points at least.
    UIUserInterfaceIdiom userInterfaceIdiom() const;
    static constexpr double kPadSide = 600;
    /// Whether the screen goes along when the device is turned, and how it may stand, for a system that turns screens
    /// by what they say; a desktop turns its windows as it likes. Default: it goes along,
    virtual bool shouldAutorotate() const { return true; }
    /// to what the next one names,
    virtual bool shouldAutorotateToInterfaceOrientation(UIInterfaceOrientation orientation) const;
    /// which is all of them, on a phone all but upside down.
    virtual UIInterfaceOrientationMask::Set supportedInterfaceOrientations() const;
    /// The window is about to have another size, or to be turned. Told to screens with a loaded view, visible or not,
    /// on a turn of its own; of sizes that follow each other quickly only the last. Default: nothing.
    virtual void viewWillTransitionToSize(CGSize) {}
    /// The root view has taken the window's size: while the screen appears, after viewWillAppear, and whenever the
    /// window has another one. Only where viewFollowsWindow. Default: nothing.
    virtual void viewDidLayoutSubviews() {}

    /// True from viewWillAppear until viewWillDisappear.
    bool isAppearing() const { return m_appearance == Appearance::Appearing || m_appearance == Appearance::Appeared; }

signals:
    void titleChanged();
    void rightBarButtonItemChanged();

protected:
    /// Makes the view and hands it to setView, without asking for view(). Default: an empty view of the main screen's
    /// size.
    virtual void loadView();
    void setView(std::shared_ptr<UIView> view) { m_view = std::move(view); }
    /// Whether the root view is kept as large as the window, and its children with it by their autoresizing masks.
    /// Default false: it keeps the size with which it was loaded.
    virtual bool viewFollowsWindow() const { return false; }

private:
    friend class UINavigationController;
    friend class UIStoryboard;
    friend class UIWindow;
    friend class ScreenTransition;
    enum class Appearance { Disappeared, Appearing, Appeared, Disappearing };

    const UIWindow* window() const;
    void layoutInWindow();
    std::shared_ptr<UIViewController> outermostContainer();
    Outcome canPresent(const UIViewController* controller) const;
    std::vector<std::shared_ptr<UIViewController>> visibleScreens();
    std::vector<std::shared_ptr<UIViewController>> unlinkPresented();
    void dismissPresented(bool animated, Completion completion);

    std::shared_ptr<UIView> m_view;
    std::string m_title;
    std::shared_ptr<UIBarButtonItem> m_rightBarButtonItem;
    UIModalPresentationStyle m_modalPresentationStyle = UIModalPresentationStyle::FullScreen;
    std::shared_ptr<UIViewController> m_presented;
    std::weak_ptr<UIViewController> m_presenting;
    std::weak_ptr<UIViewController> m_parent;
    UIWindow* m_window = nullptr; ///< of which this is the first screen
    std::shared_ptr<UIStoryboard> m_storyboard;
    std::shared_ptr<const UIStoryboardScene> m_scene;
    Appearance m_appearance = Appearance::Disappeared;
    bool m_laidOut = false;
};

} // namespace lamina
