#include "platform/host/HostBridge.h"

#include "hud/ProgressOverlay.h"
#include "platform/host/Application.h"

#include <QClipboard>
#include <QGuiApplication>

namespace lamina {

HostBridge::HostBridge(Application& application)
    : m_application(application)
{
    QObject::connect(&application.screens(), &ScreenHost::transitionStarted, this, [this](int duration) {
        if (m_transitionDuration == duration)
            return;
        m_transitionDuration = duration;
        emit transitionDurationChanged();
    });
    QObject::connect(&application.picker(), &PickerPresenter::folderPickerChanged, this,
                     &HostBridge::folderPickerChanged);
    QObject::connect(&application.documents(), &DocumentPresenter::folderPickerChanged, this,
                     &HostBridge::folderPickerChanged);
    QObject::connect(&application.pointer(), &PointerKind::changed, this, &HostBridge::mouseAtHandChanged);
    QObject::connect(&application.focus(), &FocusKeeper::focusVisibleChanged, this, &HostBridge::focusVisibleChanged);
}

HostBridge* HostBridge::create(QQmlEngine*, QJSEngine*)
{
    HostBridge* const bridge = &Application::current()->bridge();
    QQmlEngine::setObjectOwnership(bridge, QQmlEngine::CppOwnership);
    return bridge;
}

ScreenModel* HostBridge::screens() const
{
    return &m_application.screens().screens();
}

void HostBridge::setSlideDuration(int milliseconds)
{
    setDuration(m_slideDuration, milliseconds);
}

void HostBridge::setFadeDuration(int milliseconds)
{
    setDuration(m_fadeDuration, milliseconds);
}

void HostBridge::setSheetDuration(int milliseconds)
{
    setDuration(m_sheetDuration, milliseconds);
}

void HostBridge::setDuration(int& duration, int milliseconds)
{
    if (duration == milliseconds)
        return;
    duration = milliseconds;
    m_application.screens().setDurations({m_slideDuration / 1000.0, m_fadeDuration / 1000.0, m_sheetDuration / 1000.0});
    emit durationsChanged();
}

bool HostBridge::mouseAtHand() const
{
    return m_application.pointer().isMouse();
}

void HostBridge::giveFocusTo(QQuickItem* frame)
{
    m_application.focus().setFrame(frame);
}

bool HostBridge::isFocusVisible() const
{
    return m_application.focus().isFocusVisible();
}

QObject* HostBridge::folderPicker() const
{
    if (QObject* const picker = m_application.picker().folderPicker())
        return picker;
    return m_application.documents().folderPicker();
}

QObject* HostBridge::progress() const
{
    QQmlEngine::setObjectOwnership(&ProgressOverlay::shared(), QQmlEngine::CppOwnership);
    return &ProgressOverlay::shared();
}

QObject* HostBridge::folder() const
{
    QQmlEngine::setObjectOwnership(&m_application.folder(), QQmlEngine::CppOwnership);
    return &m_application.folder();
}

bool HostBridge::paste()
{
    const QMimeData* const held = QGuiApplication::clipboard()->mimeData();
    return held && m_application.receivePhotos(*held);
}

void HostBridge::showKeys()
{
    m_application.showKeys();
}

void HostBridge::toggleFullScreen()
{
    QQuickView& window = m_application.view();
    window.setWindowStates(window.windowStates() ^ Qt::WindowFullScreen);
}

void HostBridge::closeWindow()
{
    m_application.view().close();
}

void HostBridge::placeIn(const QString& folder)
{
    m_application.documents().placeIn(folder.toStdString());
}

void HostBridge::choose(const QString& path)
{
    m_application.picker().choose(path.toStdString());
}

} // namespace lamina
