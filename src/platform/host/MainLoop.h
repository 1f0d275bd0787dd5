#pragma once

#include <QBasicTimer>
#include <QObject>

namespace lamina {

/// Lets Qt's event loop pump the main queue: blocks run in turns, with the window's own events in between. One a
/// process, made on the main thread before anything is submitted from others.
class MainLoop : public QObject {
    Q_OBJECT

public:
    MainLoop();
    ~MainLoop() override;

    /// Null: there is none.
    static MainLoop* current();

protected:
    bool event(QEvent* event) override;

private:
    void lookWhileSilent();

    QBasicTimer m_look;
};

} // namespace lamina
