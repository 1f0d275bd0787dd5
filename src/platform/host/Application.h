#pragma once

#include "app/IncomingRequests.h"
#include "platform/application/ApplicationRequest.h"
#include "platform/base/Result.h"
#include "platform/host/ApplicationLife.h"
#include "platform/host/FocusKeeper.h"
#include "platform/host/HostBridge.h"
#include "platform/host/MainLoop.h"
#include "platform/host/PickerPresenter.h"
#include "platform/host/PointerKind.h"
#include "platform/host/ScreenHost.h"
#include "platform/host/ScreenMetrics.h"
#include "platform/host/Translations.h"
#include "platform/host/WindowPlacement.h"
#include "platform/host/system/ActivityPresenter.h"
#include "platform/host/system/CameraPortal.h"
#include "platform/host/system/DocumentPresenter.h"
#include "platform/host/system/FolderModel.h"
#include "platform/host/system/MemoryMonitor.h"
#include "platform/host/system/SystemSettings.h"

#include <QQuickView>

#include <memory>
#include <optional>
#include <string>
#include <vector>

class QMimeData;

namespace lamina {

/// With what the window opens.
struct LaunchOptions {
    /// "home", "two", "three", "blend" or "picker".
    std::string screen = "home";
    /// Folders of the photo library beside the user's own. Choosing a single photo starts in the first; without any in
    /// the user's pictures, or the samples while those are empty.
    std::vector<std::string> photosFolders;
    /// Photos to begin the screen's work with, the first one first; over "home" and "picker" three or more begin a
    /// collage, fewer a blend.
    std::vector<std::string> files;
    /// Of the window, which then is not remembered; empty: the last one, or as the display allows.
    QSize size;
    /// What has begun before there was a window; null: the window begins it.
    std::shared_ptr<ApplicationLife> life;
};

/// The window of Lamina and all that stands around it: the screens, the system's services, the language. One a process,
/// after the QGuiApplication and gone before it. Main thread.
class Application {
public:
    explicit Application(const LaunchOptions& options = {});
    ~Application();
    Application(const Application&) = delete;
    Application& operator=(const Application&) = delete;

    /// Null before one is made.
    static Application* current();

    QQuickView& view() { return m_view; }
    ScreenHost& screens() { return *m_screens; }
    PickerPresenter& picker() { return m_picker; }
    DocumentPresenter& documents() { return m_documents; }
    SystemSettings& settings() { return m_settings; }
    FolderModel& folder() { return m_folder; }
    HostBridge& bridge() { return m_bridge; }
    FocusKeeper& focus() { return m_focus; }
    PointerKind& pointer() { return m_pointer; }

    /// Shows the window; the first screen stands in it already.
    void show();
    /// Brings the window to the front, as far as the window system lets it. With a token, see `ApplicationRequest`,
    /// that is far.
    void bringToFront(const QString& activationToken);
    /// Comes to the front and does what another program asks; see `IncomingRequests`. An error once the window is
    /// closed, or too much waits.
    Outcome perform(const ApplicationRequest& request);

    /// Shows the list of keys over the screen on top; nothing while that is an alert, a picker or this list.
    void showKeys();

    /// Whether the screen on top would take what is offered.
    bool wantsPhotos(const QMimeData& offered) const;
    /// Hands it over; false when it holds no picture or nobody takes it. What can't be taken is told in an alert.
    bool receivePhotos(const QMimeData& offered);

private:
    void beginLife();
    void openHome(const LaunchOptions& options);
    void listenToRequests();

    std::optional<MainLoop> m_loop; ///< where nobody has made one before
    Translations m_translations;
    QQuickView m_view;
    ScreenMetrics m_metrics;
    WindowPlacement m_placement;
    FocusKeeper m_focus;
    PointerKind m_pointer;
    SystemSettings m_settings;
    MemoryMonitor m_memory;
    CameraPortal m_cameras;
    FolderModel m_folder;
    PickerPresenter m_picker;
    ActivityPresenter m_activities;
    DocumentPresenter m_documents;
    std::shared_ptr<ScreenHost> m_screens;
    std::shared_ptr<ApplicationLife> m_life;
    HostBridge m_bridge;
    IncomingRequests m_requests;
};

} // namespace lamina
