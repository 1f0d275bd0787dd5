#pragma once

#include "platform/host/system/Portal.h"
#include "platform/view/UIActivityViewController.h"
#include "platform/view/UIViewController.h"

#include <QObject>

#include <set>

class QWindow;

namespace lamina {

/// Serves presented `UIActivityViewController`s: tells them what this machine can do, and does what is chosen. Main
/// thread.
class ActivityPresenter : public QObject {
    Q_OBJECT

public:
    /// `parent` is the window over which dialogs of the system stand.
    explicit ActivityPresenter(QWindow& parent, BusConnector connector = sessionBus);

    /// Called as a screen is presented; others are left alone.
    void present(UIViewController* screen);

private:
    void perform(UIActivityViewController& sheet, UIActivityType type);

    QWindow& m_parent;
    BusConnector m_connector;
    std::set<UIActivityType> m_served; ///< as it was the last time
};

} // namespace lamina
