#include "platform/host/WindowPlacement.h"

#include "platform/files/PrivateFolder.h"

#include <QGuiApplication>
#include <QScreen>
#include <QSettings>
#include <QWindow>

#include <string>
#include <utility>

namespace lamina {

namespace {

constexpr QSize kWideWindow{1120, 760};
constexpr QSize kUprightWindow{400, 780};
constexpr QSize kSmallestWindow{320, 320};
/// From here on the layout has a panel at its side.
constexpr QSize kWideFrom{840, 480};
/// What a desktop's title bar and frame take, at most.
constexpr QSize kFrame{16, 56};
/// A display that is narrower than this, or lower, is a phone's.
constexpr QSize kPhoneBelow{720, 480};

QString fileName()
{
    const std::string folder = stateFolder();
    return folder.empty() ? QString() : QString::fromStdString(folder) + QStringLiteral("/window.ini");
}

std::optional<WindowSize> lastSize()
{
    if (fileName().isEmpty())
        return std::nullopt;
    const QSettings file(fileName(), QSettings::IniFormat);
    const WindowSize last{file.value(QStringLiteral("size")).toSize(),
                          file.value(QStringLiteral("maximized")).toBool()};
    return last.size.isEmpty() ? std::nullopt : std::optional(last);
}

void keep(const WindowSize& now)
{
    if (fileName().isEmpty() || !makePrivateFolder(stateFolder()))
        return;
    QSettings file(fileName(), QSettings::IniFormat);
    file.setValue(QStringLiteral("size"), now.size);
    file.setValue(QStringLiteral("maximized"), now.maximized);
}

QSize firstSize(QSize room)
{
    const QSize wide = kWideWindow.boundedTo(room);
    const bool fits = wide.width() >= kWideFrom.width() && wide.height() >= kWideFrom.height();
    return fits ? wide : kUprightWindow.boundedTo(room);
}

} // namespace

WindowSize openingSize(QSize available, const std::optional<WindowSize>& last)
{
    const bool phone = available.width() < kPhoneBelow.width() || available.height() < kPhoneBelow.height();
    const QSize room = phone ? available : available - kFrame;
    const QSize size = last ? last->size.boundedTo(room) : firstSize(room);
    return {size.expandedTo(kSmallestWindow), phone || (last && last->maximized)};
}

WindowPlacement::WindowPlacement(QWindow& window, QSize given)
    : m_window(window)
    , m_given(!given.isEmpty())
    , m_now{given}
{
    const QScreen* const display = QGuiApplication::primaryScreen();
    if (!m_given)
        m_now = openingSize(display ? display->availableSize() : kWideWindow + kFrame, lastSize());
    m_kept = m_now;
    m_window.setMinimumSize(kSmallestWindow);
    m_window.resize(m_now.size);
    m_window.installEventFilter(this);
}

WindowPlacement::~WindowPlacement()
{
    if (!m_given && m_now != m_kept)
        keep(m_now);
}

void WindowPlacement::show()
{
    if (m_now.maximized)
        m_window.showMaximized();
    else
        m_window.show();
}

/// A window that is hidden or minimized for now says nothing; one that is maximized keeps the size it goes back to.
bool WindowPlacement::eventFilter(QObject* object, QEvent* event)
{
    const bool tells = event->type() == QEvent::Resize || event->type() == QEvent::WindowStateChange;
    if (tells && m_window.isVisible() && !m_window.windowStates().testFlag(Qt::WindowMinimized)) {
        m_now.maximized = m_window.windowStates().testFlag(Qt::WindowMaximized) ||
                          m_window.windowStates().testFlag(Qt::WindowFullScreen);
        // Some platforms resize a window before they say that it is maximized.
        if (!m_now.maximized && m_window.size() != m_now.size)
            m_former = std::exchange(m_now.size, m_window.size());
        else if (m_now.maximized && m_window.size() == m_now.size && !m_former.isEmpty())
            m_now.size = m_former;
    }
    return QObject::eventFilter(object, event);
}

} // namespace lamina
